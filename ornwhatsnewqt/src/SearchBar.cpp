#include "ornwhatsnewqt/src/SearchBar.h"

#include <algorithm>

#include <QtCore/QLocale>
#include <QtGui/QAccessible>
#include <QtGui/QKeyEvent>
#include <QtGui/QTextCursor>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTextEdit>

#include <ornwhatsnew/WhatsNewTypes.h>

#include "ornwhatsnewqt/src/GlyphButton.h"
#include "ornwhatsnewqt/src/LocalizedText.h"
#include "ornwhatsnewqt/src/PanelStrings.h"
#include "ornwhatsnewqt/src/PanelStyle.h"
#include "ornwhatsnewqt/src/PillButton.h"

namespace ornwhatsnewqt {

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
  connect(field_, &QLineEdit::textChanged, this, &SearchBar::searchFromSelection);
  connect(previousButton_, &QAbstractButton::clicked, this, &SearchBar::selectPrevious);
  connect(nextButton_, &QAbstractButton::clicked, this, &SearchBar::selectNext);
  connect(closeButton_, &QAbstractButton::clicked, this, &SearchBar::endSearch);
  hide();
}

void SearchBar::startSearch() {
  refresh();
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
  showResult();
}

void SearchBar::findMatches() {
  matches_.clear();
  current_ = 0;
  const QString pattern = field_->text();
  if (pattern.isEmpty()) return;
  // An offset in the plain text is a position in the document.
  const QString text = view_->toPlainText();
  qsizetype found = text.indexOf(pattern, 0, Qt::CaseInsensitive);
  while (found >= 0) {
    matches_.push_back(static_cast<int>(found));
    found = text.indexOf(pattern, found + pattern.size(), Qt::CaseInsensitive);
  }
}

void SearchBar::searchFromSelection() {
  findMatches();
  QTextCursor cursor = view_->textCursor();
  const auto next = std::ranges::lower_bound(matches_, cursor.selectionStart());
  if (matches_.empty()) {
    cursor.setPosition(cursor.selectionStart());
    view_->setTextCursor(cursor);
    showResult();
  } else {
    select(next == matches_.end() ? 0 : static_cast<std::size_t>(next - matches_.begin()));
  }
}

void SearchBar::selectNext() {
  if (!matches_.empty()) select((current_ + 1) % matches_.size());
}

void SearchBar::selectPrevious() {
  if (!matches_.empty()) select((current_ + matches_.size() - 1) % matches_.size());
}

void SearchBar::select(std::size_t match) {
  current_ = match;
  QTextCursor cursor = view_->textCursor();
  cursor.setPosition(matches_[match]);
  cursor.setPosition(matches_[match] + static_cast<int>(field_->text().size()),
                     QTextCursor::KeepAnchor);
  view_->setTextCursor(cursor);
  showResult();
}

void SearchBar::showResult() {
  const bool hasMatch = !matches_.empty();
  const bool hasNoMatch = !hasMatch && !field_->text().isEmpty();
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
