// Declares the bar with the filters of the news.
#ifndef ORNWHATSNEWQT_SRC_FILTERBAR_H_
#define ORNWHATSNEWQT_SRC_FILTERBAR_H_

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

QT_BEGIN_NAMESPACE
class QCheckBox;
QT_END_NAMESPACE

namespace ornwhatsnewqt {

class PanelController;

/// Shows the filters of a controller. When the user changes a filter, the controller stores it.
class FilterBar : public QWidget {
  Q_OBJECT
 public:
  FilterBar(PanelController* controller, QWidget* parent);

  /// Shows the current filters in the current language.
  void refresh();

 private:
  QCheckBox* addFilter(const char* name);
  void applyFilters();

  QPointer<PanelController> controller_;
  QCheckBox* onlyNew_;
  QCheckBox* thisPlatform_;
  QCheckBox* myVersions_;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_FILTERBAR_H_
