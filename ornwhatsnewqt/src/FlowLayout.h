// Declares a layout that arranges widgets in rows.
#ifndef ORNWHATSNEWQT_SRC_FLOWLAYOUT_H_
#define ORNWHATSNEWQT_SRC_FLOWLAYOUT_H_

#include <memory>
#include <vector>

#include <QtWidgets/QLayout>

namespace ornwhatsnewqt {

/// Arranges widgets in the reading direction and begins a new row if the width is not sufficient.
/// Rows are aligned with the leading edge.
class FlowLayout : public QLayout {
  Q_OBJECT
 public:
  /// Creates a layout without margins. `spacing` is the distance between widgets and between rows.
  explicit FlowLayout(int spacing);
  ~FlowLayout() override;

  void addItem(QLayoutItem* item) override;
  int count() const override;
  QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;
  Qt::Orientations expandingDirections() const override { return {}; }
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize minimumSize() const override;
  QSize sizeHint() const override;
  void setGeometry(const QRect& rect) override;

 private:
  /// Returns the rectangles of the widgets, arranged in rows from left to right. A row with several
  /// widgets is at most `width` pixels wide.
  std::vector<QRect> arrange(int width) const;

  std::vector<std::unique_ptr<QLayoutItem>> items_;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_FLOWLAYOUT_H_
