#include "ornwhatsnewqt/src/NewsPage.h"

#include <algorithm>
#include <utility>

#include <QtCore/QMimeData>
#include <QtGui/QAbstractTextDocumentLayout>
#include <QtGui/QAccessible>
#include <QtGui/QHelpEvent>
#include <QtGui/QPainter>
#include <QtGui/QTextBlock>
#include <QtPrintSupport/QPrinter>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QToolTip>

#include "ornwhatsnewqt/src/NewsDecoration.h"
#include "ornwhatsnewqt/src/NewsFormats.h"
#include "ornwhatsnewqt/src/PanelAccessibility.h"

namespace ornwhatsnewqt {
NewsPage::NewsPage(QWidget* parent)
    : QTextBrowser(parent),
      style_(palette(), font()),
      document_(std::make_unique<NewsDocument>(ornwhatsnew::PanelLayout(), style_)) {
  installPanelAccessibility();
  setDocument(document_.get());
  setFrameShape(QFrame::NoFrame);
  setOpenLinks(false);
  setTextInteractionFlags(Qt::TextBrowserInteraction | Qt::TextSelectableByKeyboard);
  setCursorWidth(0);
  // The page must not scroll horizontally, because its text is as wide as the view. Qt would scroll
  // into empty space: it adds the hanging indents of right-to-left paragraphs to the width of the
  // document.
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  connect(horizontalScrollBar(), &QScrollBar::rangeChanged, this, [this](int, int maximum) {
    horizontalScrollBar()->setValue(isRightToLeft() ? maximum : 0);
  });
  setBackgroundRole(QPalette::Window);
  viewport()->setBackgroundRole(QPalette::Window);
  setAutoFillBackground(true);
}

NewsPage::~NewsPage() {
  // The member `document_` is destroyed before the base class, whose destructor must not use the
  // document.
  setDocument(nullptr);
}

void NewsPage::showLayout(const ornwhatsnew::PanelLayout& layout, const PanelStyle& style) {
  style_ = style;
  QPalette colors;
  // Keep the selected search match visible while the search field has the focus.
  colors.setColor(QPalette::Inactive, QPalette::Highlight, style.selection);
  colors.setColor(QPalette::Inactive, QPalette::HighlightedText, style.selectionText);
  setPalette(colors);

  const QTextBlock top = NewsDecoration::blockAt(*document_, scrollOffset().y());
  const qreal distance =
      scrollOffset().y() - document_->documentLayout()->blockBoundingRect(top).top();
  const int topNumber = top.blockNumber();
  const int scroll = verticalScrollBar()->value();
  const int link = selectedLink();
  const QString href = link < 0 ? QString() : elements()[static_cast<std::size_t>(link)].href;
  auto document = std::make_unique<NewsDocument>(layout, style);
  setDocument(document.get());
  document_ = std::move(document);
  isPainted_ = false;
  // Hide the text cursor again, because Qt stores the width of the text cursor in each document.
  setCursorWidth(0);
  // The text cursor of the new document is at the start of the text. Move it before scrolling,
  // because Qt scrolls to the text cursor.
  if (link >= 0) restoreLinkFocus(static_cast<std::size_t>(link), href);
  const QTextBlock block = document_->findBlockByNumber(topNumber);
  if (block.isValid() && topNumber > 0) {
    const QRectF rect = document_->documentLayout()->blockBoundingRect(block);
    verticalScrollBar()->setValue(qRound(rect.top() + distance));
  } else {
    verticalScrollBar()->setValue(scroll);
  }
  QAccessibleEvent event(this, QAccessible::ObjectReorder);
  QAccessible::updateAccessibility(&event);
}

void NewsPage::restoreLinkFocus(std::size_t index, const QString& href) {
  if (index >= elements().size() || elements()[index].href != href) return;
  const int position = elements()[index].position;
  // Select the character before the link, so that focusNextPrevChild moves the focus to the link. A
  // link that setTextCursor selects would look like selected text.
  QTextCursor before(document_.get());
  before.setPosition(std::max(0, position - 1));
  before.setPosition(position, QTextCursor::KeepAnchor);
  setTextCursor(before);
  QTextBrowser::focusNextPrevChild(true);
}

QPointF NewsPage::scrollOffset() const {
  // In a right-to-left view, the horizontal scroll bar has the value 0 at its right end.
  const QScrollBar& bar = *horizontalScrollBar();
  const int x = isRightToLeft() ? bar.maximum() - bar.value() : bar.value();
  return QPointF(x, verticalScrollBar()->value());
}

QRect NewsPage::elementRect(const NewsElement& element) const {
  QRectF rect;
  const int end = element.position + element.length;
  for (const QRectF& line : NewsDecoration::textRects(*document_, element.position, end))
    rect |= line;
  return rect.translated(-scrollOffset()).toAlignedRect();
}

int NewsPage::focusedLink() const {
  return hasFocus() ? selectedLink() : -1;
}

int NewsPage::selectedLink() const {
  const QTextCursor cursor = textCursor();
  if (!cursor.hasSelection()) return -1;
  const auto isSelected = [&cursor](const NewsElement& element) {
    return element.kind == NewsElement::Kind::Link && element.position == cursor.selectionStart() &&
           element.position + element.length == cursor.selectionEnd();
  };
  const auto found = std::ranges::find_if(elements(), isSelected);
  return found == elements().end() ? -1 : static_cast<int>(found - elements().begin());
}

QMimeData* NewsPage::createMimeDataFromSelection() const {
  auto copied = std::make_unique<QMimeData>();
  copied->setText(NewsDocument::plainText(textCursor()));
  return copied.release();
}

bool NewsPage::focusNextPrevChild(bool next) {
  const bool isHandled = QTextBrowser::focusNextPrevChild(next);
  const int link = focusedLink();
  if (link >= 0) {
    setCursorWidth(0);
    viewport()->update();
    QAccessibleEvent event(this, QAccessible::Focus);
    event.setChild(link);
    QAccessible::updateAccessibility(&event);
  }
  return isHandled;
}

void NewsPage::keyPressEvent(QKeyEvent* event) {
  const QTextCursor before = textCursor();
  QTextBrowser::keyPressEvent(event);
  const QTextCursor after = textCursor();
  const bool isMoved = before.position() != after.position() || before.anchor() != after.anchor();
  // The page is read-only, so the text cursor is invisible until the user moves it.
  if (isMoved) setCursorWidth(1);
}

void NewsPage::paintEvent(QPaintEvent* event) {
  const QPointF offset = scrollOffset();
  const QRectF visible(offset, QSizeF(viewport()->size()));
  const NewsDecoration decoration(*document_, style_, visible);
  {
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-offset);
    decoration.drawCards(painter);
    decoration.drawLabelBoxes(painter);
  }
  QTextBrowser::paintEvent(event);
  if (!std::exchange(isPainted_, true)) {
    // Qt lays out the end of a long document while the user scrolls, in steps that take several
    // frames. Lay out the whole document after the first paint instead.
    QMetaObject::invokeMethod(
        document_.get(), [this] { document_->documentLayout()->documentSize(); },
        Qt::QueuedConnection);
  }
  const int link = focusedLink();
  if (link < 0) return;
  QPainter painter(viewport());
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(-offset);
  const NewsElement& element = elements()[static_cast<std::size_t>(link)];
  decoration.drawFocusRing(painter, element.position, element.position + element.length);
}

void NewsPage::resizeEvent(QResizeEvent* event) {
  centerColumn();
  QTextBrowser::resizeEvent(event);
}

void NewsPage::centerColumn() {
  const int margin = std::max(0, (width() - kMaximumColumnWidth) / 2);
  if (viewportMargins().left() != margin) setViewportMargins(margin, 0, margin, 0);
}

bool NewsPage::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QTextBrowser::viewportEvent(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const QString href = anchorAt(help->pos());
  if (href.isEmpty()) {
    QToolTip::hideText();
  } else {
    QToolTip::showText(help->globalPos(), href, viewport());
  }
  return true;
}

void printNews(const ornwhatsnew::PanelLayout& layout, const QFont& font, QPrinter& printer) {
  QPalette palette(Qt::white);
  palette.setColor(QPalette::Text, Qt::black);
  palette.setColor(QPalette::Base, Qt::white);
  NewsDocument document(layout, PanelStyle(palette, font));
  document.print(&printer);
}

}  // namespace ornwhatsnewqt
