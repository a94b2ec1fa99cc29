#include "ornwhatsnewqt/src/SearchBar.h"

#include <algorithm>

#include <QtCore/QLocale>
#include <QtGui/QAccessible>
#include <QtGui/QKeyEvent>
#include <QtGui/QTextBlock>
#include <QtGui/QTextCursor>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QTextEdit>

#include <ornwhatsnew/WhatsNewTypes.h>

#include "ornwhatsnewqt/src/GlyphButton.h"
#include "ornwhatsnewqt/src/LocalizedText.h"
#include "ornwhatsnewqt/src/PanelStrings.h"
#include "ornwhatsnewqt/src/PanelStyle.h"
#include "ornwhatsnewqt/src/PillButton.h"

namespace ornwhatsnewqt {
namespace {

/// Returns whether `character` is an invisible format character, such as a direction mark or the
/// word joiner before the labels of a `NewsDocument`.
bool isInvisible(QChar character) {
  return character.category() == QChar::Other_Format;
}

}  // namespace

SearchBar::SearchBar(QTextEdit* view, QWidget* parent)
    : QWidget(parent),
      view_(view),
      field_(new QLineEdit(this)),
      result_(new QLabel(this)),
      previousButton_(new GlyphButton(Glyph::Up, this)),
      nextButton_(new GlyphButton(Glyph::Down, this)),
      closeButton_(new GlyphButton(Glyph::Close, this)) {
  field_->setObjectName(QStringLiteral("searchField"));
  field_->setClearButtonEnabled(true);

  result_->setObjectName(QStringLiteral("searchResult"));
  previousButton_->setObjectName(QStringLiteral("previousMatch"));
  nextButton_->setObjectName(QStringLiteral("nextMatch"));
  closeButton_->setObjectName(QStringLiteral("closeSearch"));
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(kRingSpace, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(field_, 1);
  layout->addSpacing(4);
  for (QWidget* widget : {static_cast<QWidget*>(result_), static_cast<QWidget*>(previousButton_),
                          static_cast<QWidget*>(nextButton_), static_cast<QWidget*>(closeButton_)})
    layout->addWidget(widget);
  connect(field_, &QLineEdit::textChanged, this, &SearchBar::searchWhileTyping);
  connect(previousButton_, &QAbstractButton::clicked, this, &SearchBar::selectPrevious);
  connect(nextButton_, &QAbstractButton::clicked, this, &SearchBar::selectNext);
  connect(closeButton_, &QAbstractButton::clicked, this, &SearchBar::endSearch);
  hide();
}

void SearchBar::startSearch() {
  refresh();
  start_.reset();
  search();
  show();
  field_->selectAll();
  field_->setFocus(Qt::ShortcutFocusReason);
}

void SearchBar::endSearch() {
  hide();
  view_->setFocus();
}

void SearchBar::refresh() {
  const QString name = localizedText(strings::kSearch);
  field_->setPlaceholderText(name);
  field_->setAccessibleName(name);
  field_->setAccessibleDescription(localizedText(strings::kSearchDescription));
  previousButton_->setNames(localizedText(strings::kPrevious),
                            localizedText(strings::kPreviousDescription),
                            QKeySequence(Qt::SHIFT | Qt::Key_Return));
  nextButton_->setNames(localizedText(strings::kNext), localizedText(strings::kNextDescription),
                        QKeySequence(Qt::Key_Return));
  closeButton_->setNames(localizedText(strings::kCloseSearch),
                         localizedText(strings::kCloseSearchDescription),
                         QKeySequence(Qt::Key_Escape));
  findMatches();
  if (matches_.empty()) {
    current_ = 0;
    start_.reset();
  } else {
    current_ = std::min(current_, matches_.size() - 1);
    start_ = matches_[current_].begin;
    // If the view has the focus, do not select a match. The selection could remove the focus from a
    // link in the view.
    if (!view_->hasFocus()) selectWithoutScrolling();
  }
  showResult();
}

QString SearchBar::pattern() const {
  QString text = field_->text();
  text.removeIf(isInvisible);
  return text;
}

void SearchBar::findMatches() {
  matches_.clear();
  const QString searched = pattern();
  if (searched.isEmpty()) return;
  // Offsets in the plain text are equal to positions in the document.
  const QString text = view_->toPlainText();
  QString visible;
  std::vector<int> positions;  // the position in the document of each character in `visible`
  visible.reserve(text.size());
  positions.reserve(static_cast<std::size_t>(text.size()));
  for (int position = 0; position < text.size(); ++position) {
    if (isInvisible(text[position])) continue;
    visible.append(text[position]);
    positions.push_back(position);
  }
  qsizetype found = visible.indexOf(searched, 0, Qt::CaseInsensitive);
  while (found >= 0) {
    const qsizetype end = found + searched.size();
    matches_.push_back({positions[static_cast<std::size_t>(found)],
                        positions[static_cast<std::size_t>(end - 1)] + 1});
    found = visible.indexOf(searched, end, Qt::CaseInsensitive);
  }
}

// Without a selection, the search begins at the top of the view. Does not use the position of the
// text cursor, because the cursor of each new document is at the beginning.
int SearchBar::startOfSearch() const {
  const QTextCursor cursor = view_->textCursor();
  return cursor.hasSelection() ? cursor.selectionStart()
                               : view_->cursorForPosition(QPoint(0, 0)).block().position();
}

void SearchBar::search() {
  findMatches();
  if (matches_.empty()) {
    if (pattern().isEmpty()) start_.reset();
    showResult();
    return;
  }
  if (!start_) start_ = startOfSearch();
  const auto next = std::ranges::lower_bound(matches_, *start_, {}, &Match::begin);
  select(next == matches_.end() ? 0 : static_cast<std::size_t>(next - matches_.begin()));
}

void SearchBar::searchWhileTyping() {
  search();
  if (!matches_.empty()) return;
  QTextCursor cursor = view_->textCursor();
  cursor.setPosition(cursor.selectionStart());
  view_->setTextCursor(cursor);
}

void SearchBar::selectNext() {
  step(1);
}

void SearchBar::selectPrevious() {
  step(matches_.size() - 1);
}

void SearchBar::step(std::size_t matches) {
  if (matches_.empty()) return;
  select((current_ + matches) % matches_.size());
  start_ = matches_[current_].begin;
}

void SearchBar::select(std::size_t match) {
  current_ = match;
  QTextCursor cursor = view_->textCursor();
  cursor.setPosition(matches_[match].begin);
  cursor.setPosition(matches_[match].end, QTextCursor::KeepAnchor);
  view_->setTextCursor(cursor);
  showResult();
}

void SearchBar::selectWithoutScrolling() {
  QScrollBar* const bar = view_->verticalScrollBar();
  const int position = bar->value();
  select(current_);
  bar->setValue(position);
}

void SearchBar::showResult() {
  const bool hasMatch = !matches_.empty();
  const bool hasNoMatch = !hasMatch && !pattern().isEmpty();
  previousButton_->setEnabled(hasMatch);
  nextButton_->setEnabled(hasMatch);
  const auto number = [](std::size_t value) {
    return QLocale().toString(static_cast<qulonglong>(value));
  };
  QString result;
  if (hasMatch) {
    result = localizedText(strings::kMatchNumber, {number(current_ + 1), number(matches_.size())});
  }
  if (hasNoMatch) result = localizedText(strings::kNoMatch);
  const PanelStyle style(palette(), font());
  setFieldStyle(*field_, style);
  QPalette colors;
  colors.setColor(QPalette::WindowText, hasNoMatch ? style.warning : style.secondary);
  result_->setPalette(colors);
  result_->setFont(style.font(ornwhatsnew::kFontSize_NormalSmall));
  result_->setText(result);
  if (!hasNoMatch) return;
  QAccessibleEvent event(result_, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

void SearchBar::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!isEnter) {
    QWidget::keyPressEvent(event);
  } else if (event->modifiers().testFlag(Qt::ShiftModifier)) {
    selectPrevious();
  } else {
    selectNext();
  }
}

}  // namespace ornwhatsnewqt
