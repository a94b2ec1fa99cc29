// Placeholder until the panel is merged.
#ifndef ORNWHATSNEWQT_PANELWIDGET_H_
#define ORNWHATSNEWQT_PANELWIDGET_H_

#include <QtWidgets/QWidget>

#include <ornwhatsnewqt/Export.h>

namespace ornwhatsnewqt {

class WhatsNew;

class ORNWHATSNEWQT_EXPORT PanelWidget : public QWidget {
  Q_OBJECT
 public:
  explicit PanelWidget(WhatsNew* whatsNew, QWidget* parent = nullptr);
  ~PanelWidget() override;

  void showNews();
  void showRatings();

 private:
  WhatsNew* whatsNew_;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_PANELWIDGET_H_
