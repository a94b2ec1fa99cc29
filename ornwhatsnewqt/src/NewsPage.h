// Shows a layout as the news page.
#ifndef ORNWHATSNEWQT_SRC_NEWSPAGE_H_
#define ORNWHATSNEWQT_SRC_NEWSPAGE_H_

#include <cstddef>
#include <memory>
#include <vector>

#include <QtWidgets/QTextBrowser>

#include <ornwhatsnew/PanelLayout.h>
#include "ornwhatsnewqt/src/NewsDocument.h"
#include "ornwhatsnewqt/src/PanelStyle.h"

QT_BEGIN_NAMESPACE
class QPrinter;
QT_END_NAMESPACE

namespace ornwhatsnewqt {

/// The news page. Tab moves the focus from link to link, and Enter activates the focused link. The
/// page then emits `anchorClicked`. It does not open the link itself.
class NewsPage : public QTextBrowser {
  Q_OBJECT
 public:
  explicit NewsPage(QWidget* parent = nullptr);
  ~NewsPage() override;

  /// Shows `layout`. Does not refer to `layout` after the call. If the new layout has enough
  /// paragraphs, the paragraph at the top of the view has the same index as before. The link with
  /// the focus keeps the focus if it has the same index and target in the new layout.
  void showLayout(const ornwhatsnew::PanelLayout& layout, const PanelStyle& style);

  /// Returns the elements of the page, which are valid until the next call to `showLayout`.
  const std::vector<NewsElement>& elements() const { return document_->elements(); }

  /// Returns the rectangle of `element` in the coordinates of the viewport.
  QRect elementRect(const NewsElement& element) const;

  /// Returns the index in `elements()` of the link that has the focus, or -1 if no link has it.
  int focusedLink() const;

 protected:
  QMimeData* createMimeDataFromSelection() const override;
  bool focusNextPrevChild(bool next) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool viewportEvent(QEvent* event) override;

 private:
  /// Returns the index in `elements()` of the link that the text cursor selects, or -1. A link that
  /// has the focus remains selected while the window is inactive.
  int selectedLink() const;
  /// Moves the focus in the page to the link with `index` if its target is `href`.
  void restoreLinkFocus(std::size_t index, const QString& href);
  QPointF scrollOffset() const;
  void centerColumn();

  PanelStyle style_;
  std::unique_ptr<NewsDocument> document_;
  bool isPainted_ = false;  // whether `document_` was painted
};

/// Prints `layout`. `PanelStyle` derives the colours from black text on white, and the fonts from
/// `font`.
void printNews(const ornwhatsnew::PanelLayout& layout, const QFont& font, QPrinter& printer);

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_NEWSPAGE_H_
