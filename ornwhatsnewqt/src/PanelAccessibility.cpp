#include "ornwhatsnewqt/src/PanelAccessibility.h"

#include <algorithm>

#include <QtCore/QHash>
#include <QtCore/QPointer>
#include <QtCore/QUrl>
#include <QtGui/QAccessible>
#include <QtGui/QTextBlock>
#include <QtGui/QTextCursor>
#include <QtWidgets/QAccessibleWidget>
#include <QtWidgets/QScrollBar>

#include "ornwhatsnewqt/src/FilterBar.h"
#include "ornwhatsnewqt/src/NewsPage.h"
#include "ornwhatsnewqt/src/RatingCard.h"

namespace ornwhatsnewqt {
namespace {

/// Returns a cursor that selects the text of `page` from `begin` to `end`. Replaces a position
/// outside of the text with the nearest position in the text.
QTextCursor selectionOf(const NewsPage& page, int begin, int end) {
  const int last = page.document()->characterCount() - 1;
  QTextCursor cursor(page.document());
  cursor.setPosition(std::clamp(begin, 0, last));
  cursor.setPosition(std::clamp(end, 0, last), QTextCursor::KeepAnchor);
  return cursor;
}

/// The accessible interface of the element with a given index. After the layout has changed, the
/// interface describes the element that now has this index. If there is no such element, the
/// interface is invalid.
class ElementInterface final : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  ElementInterface(NewsPage* page, int index) : page_(page), index_(index) {}

  bool isValid() const override { return element() != nullptr; }
  QObject* object() const override { return nullptr; }
  QWindow* window() const override { return isValid() ? page_->window()->windowHandle() : nullptr; }
  QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(page_);
  }
  QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
  QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
  void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
  QRect rect() const override;
  QAccessible::Role role() const override;
  QAccessible::State state() const override;
  QString text(QAccessible::Text kind) const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  QStringList actionNames() const override { return {pressAction()}; }
  void doAction(const QString& actionName) override;
  QStringList keyBindingsForAction(const QString& /*actionName*/) const override { return {}; }

  int index() const { return index_; }

 private:
  const NewsElement* element() const;
  bool isLink() const { return isValid() && element()->kind == NewsElement::Kind::Link; }

  QPointer<NewsPage> page_;
  int index_;
};

const NewsElement* ElementInterface::element() const {
  const auto index = static_cast<std::size_t>(index_);
  return page_ && index < page_->elements().size() ? &page_->elements()[index] : nullptr;
}

QRect ElementInterface::rect() const {
  if (!isValid()) return {};
  const QRect rect = page_->elementRect(*element());
  return QRect(page_->viewport()->mapToGlobal(rect.topLeft()), rect.size());
}

QAccessible::Role ElementInterface::role() const {
  if (!isValid()) return QAccessible::NoRole;
  switch (element()->kind) {
    case NewsElement::Kind::Heading:
      return QAccessible::Heading;
    case NewsElement::Kind::ListItem:
      return QAccessible::ListItem;
    case NewsElement::Kind::Link:
      return QAccessible::Link;
    case NewsElement::Kind::Paragraph:
      break;
  }
  return QAccessible::Paragraph;
}

QAccessible::State ElementInterface::state() const {
  QAccessible::State state;
  if (!isValid()) {
    state.invalid = true;
    return state;
  }
  state.readOnly = true;
  state.invisible = !page_->isVisible();
  state.offscreen = !page_->viewport()->rect().intersects(page_->elementRect(*element()));
  if (isLink()) {
    state.linked = true;
    state.focusable = true;
    state.focused = page_->focusedLink() == index_;
  }
  return state;
}

QString ElementInterface::text(QAccessible::Text kind) const {
  if (!isValid()) return {};
  if (kind == QAccessible::Name) {
    const int begin = element()->position;
    return NewsDocument::plainText(selectionOf(*page_, begin, begin + element()->length));
  }
  return kind == QAccessible::Description ? element()->href : QString();
}

void* ElementInterface::interface_cast(QAccessible::InterfaceType type) {
  const bool hasActions = type == QAccessible::ActionInterface && isLink();
  return hasActions ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

void ElementInterface::doAction(const QString& actionName) {
  if (isLink() && actionName == pressAction()) {
    Q_EMIT page_->anchorClicked(QUrl(element()->href));
  }
}

/// The accessible interface of the page. Creates the interfaces of the elements when an assistive
/// technology queries them.
class PageInterface final : public QAccessibleWidget, public QAccessibleTextInterface {
 public:
  explicit PageInterface(NewsPage* page) : QAccessibleWidget(page, QAccessible::Document) {}
  ~PageInterface() override {
    for (const QAccessible::Id id : elements_) QAccessible::deleteAccessibleInterface(id);
  }

  int childCount() const override { return static_cast<int>(page().elements().size()); }
  QAccessibleInterface* child(int index) const override;
  QAccessibleInterface* childAt(int x, int y) const override;
  QAccessibleInterface* focusChild() const override;
  int indexOfChild(const QAccessibleInterface* child) const override;
  QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  void selection(int selectionIndex, int* startOffset, int* endOffset) const override;
  int selectionCount() const override { return page().textCursor().hasSelection() ? 1 : 0; }
  void addSelection(int startOffset, int endOffset) override;
  void removeSelection(int selectionIndex) override;
  void setSelection(int selectionIndex, int startOffset, int endOffset) override;
  int cursorPosition() const override { return page().textCursor().position(); }
  void setCursorPosition(int position) override { addSelection(position, position); }
  QString text(int startOffset, int endOffset) const override {
    return NewsDocument::textWithPositions(selectionOf(page(), startOffset, endOffset));
  }
  using QAccessibleWidget::text;
  int characterCount() const override { return page().document()->characterCount() - 1; }
  QRect characterRect(int offset) const override;
  int offsetAtPoint(const QPoint& point) const override;
  void scrollToSubstring(int startIndex, int endIndex) override;
  QString attributes(int offset, int* startOffset, int* endOffset) const override;

 private:
  NewsPage& page() const { return *static_cast<NewsPage*>(widget()); }

  mutable QHash<int, QAccessible::Id> elements_;
};

QAccessibleInterface* PageInterface::child(int index) const {
  if (index < 0 || index >= childCount()) return nullptr;
  const auto found = elements_.constFind(index);
  if (found != elements_.cend()) return QAccessible::accessibleInterface(*found);
  auto* const element = new ElementInterface(&page(), index);
  // The cache of QAccessible owns the interface.
  elements_.insert(index, QAccessible::registerAccessibleInterface(element));
  return element;
}

QAccessibleInterface* PageInterface::childAt(int x, int y) const {
  const int offset = offsetAtPoint(QPoint(x, y));
  const std::vector<NewsElement>& elements = page().elements();
  // Search from the end, so that the search finds a link before the paragraph that contains it.
  for (int i = childCount() - 1; offset >= 0 && i >= 0; --i) {
    if (elements[static_cast<std::size_t>(i)].contains(offset)) return child(i);
  }
  return nullptr;
}

QAccessibleInterface* PageInterface::focusChild() const {
  const int link = page().focusedLink();
  if (link >= 0) return child(link);
  return page().hasFocus() ? QAccessible::queryAccessibleInterface(&page()) : nullptr;
}

int PageInterface::indexOfChild(const QAccessibleInterface* child) const {
  const auto* element = dynamic_cast<const ElementInterface*>(child);
  return element != nullptr && element->parent() == this ? element->index() : -1;
}

QAccessible::State PageInterface::state() const {
  QAccessible::State state = QAccessibleWidget::state();
  state.readOnly = true;
  state.selectableText = true;
  state.multiLine = true;
  return state;
}

void* PageInterface::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
  return QAccessibleWidget::interface_cast(type);
}

void PageInterface::selection(int selectionIndex, int* startOffset, int* endOffset) const {
  const QTextCursor cursor = page().textCursor();
  const bool hasSelection = selectionIndex == 0 && cursor.hasSelection();
  *startOffset = hasSelection ? cursor.selectionStart() : 0;
  *endOffset = hasSelection ? cursor.selectionEnd() : 0;
}

void PageInterface::addSelection(int startOffset, int endOffset) {
  setSelection(0, startOffset, endOffset);
}

void PageInterface::removeSelection(int selectionIndex) {
  if (selectionIndex == 0) setCursorPosition(cursorPosition());
}

void PageInterface::setSelection(int selectionIndex, int startOffset, int endOffset) {
  if (selectionIndex != 0) return;
  QTextCursor cursor = page().textCursor();
  cursor.setPosition(std::clamp(startOffset, 0, characterCount()));
  cursor.setPosition(std::clamp(endOffset, 0, characterCount()), QTextCursor::KeepAnchor);
  page().setTextCursor(cursor);
}

QRect PageInterface::characterRect(int offset) const {
  if (offset < 0 || offset >= characterCount()) return {};
  const QRect rect = page().elementRect({NewsElement::Kind::Paragraph, offset, 1, {}});
  return QRect(page().viewport()->mapToGlobal(rect.topLeft()), rect.size());
}

int PageInterface::offsetAtPoint(const QPoint& point) const {
  const QPoint position = page().viewport()->mapFromGlobal(point);
  if (!page().viewport()->rect().contains(position)) return -1;
  // cursorForPosition returns a position directly before or directly after the character at the
  // point. Check the characters on both sides of this position.
  QTextCursor cursor = page().cursorForPosition(position);
  const int after = cursor.position();
  cursor.movePosition(QTextCursor::PreviousCharacter);
  for (const int offset : {cursor.position(), after}) {
    if (characterRect(offset).contains(point)) return offset;
  }
  return -1;
}

void PageInterface::scrollToSubstring(int startIndex, int endIndex) {
  const QRect first = characterRect(startIndex);
  const QRect last = characterRect(std::max(startIndex, endIndex - 1));
  const QRect rect = (first | last).translated(-page().viewport()->mapToGlobal(QPoint()));
  QScrollBar& bar = *page().verticalScrollBar();
  const int height = page().viewport()->height();
  if (rect.bottom() > height) bar.setValue(bar.value() + rect.bottom() - height);
  if (rect.top() < 0) bar.setValue(bar.value() + rect.top());
}

QString PageInterface::attributes(int offset, int* startOffset, int* endOffset) const {
  const QTextBlock block = page().document()->findBlock(offset);
  *startOffset = block.isValid() ? block.position() : 0;
  *endOffset = block.isValid() ? block.position() + block.length() - 1 : 0;
  return QStringLiteral("text-align:left;");
}

/// Returns whether `object` is a group of controls: a `FilterBar` or the choices of a `RatingCard`.
bool isGroup(const QObject& object) {
  const bool isChoices = object.objectName() == QStringLiteral("choices") &&
                         qobject_cast<const RatingCard*>(object.parent()) != nullptr;
  return isChoices || qobject_cast<const FilterBar*>(&object) != nullptr;
}

QAccessibleInterface* createInterface(const QString& /*className*/, QObject* object) {
  if (auto* const page = qobject_cast<NewsPage*>(object)) return new PageInterface(page);
  // Screen readers skip the name of a widget whose role is Client, the default.
  if (isGroup(*object))
    return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Grouping);
  return nullptr;
}

}  // namespace

void installPanelAccessibility() {
  // This function can be called several times, because QAccessible adds the same factory only once.
  QAccessible::installFactory(createInterface);
}

}  // namespace ornwhatsnewqt
