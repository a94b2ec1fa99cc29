#include "ornwhatsnewqt/src/PanelHeader.h"

#include <QtCore/QEvent>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QRadioButton>

#include <ornwhatsnew/WhatsNewTypes.h>

#include "ornwhatsnewqt/src/FlowLayout.h"
#include "ornwhatsnewqt/src/GlyphButton.h"
#include "ornwhatsnewqt/src/LocalizedText.h"
#include "ornwhatsnewqt/src/PanelStrings.h"
#include "ornwhatsnewqt/src/PanelStyle.h"
#include "ornwhatsnewqt/src/PillButton.h"

namespace ornwhatsnewqt {

PanelHeader::PanelHeader(QWidget* parent) : QWidget(parent) {
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  pages_ = new FlowLayout(14);
  row->addLayout(pages_, 1);
  title_ = new QLabel(this);
  title_->setObjectName(QStringLiteral("title"));
  title_->setContentsMargins(kRingSpace, 0, 0, 0);
  pages_->addWidget(title_);
  newsButton_ = addPageButton("news");
  ratingsButton_ = addPageButton("ratings");

  searchButton_ = new GlyphButton(Glyph::Search, this);
  searchButton_->setObjectName(QStringLiteral("search"));
  printButton_ = new GlyphButton(Glyph::Print, this);
  printButton_->setObjectName(QStringLiteral("print"));
  auto* const buttons = new QHBoxLayout;
  buttons->setSpacing(2);
  buttons->addWidget(searchButton_);
  buttons->addWidget(printButton_);
  // Align these buttons with the first row of page buttons, because the page buttons can need two
  // rows.
  buttons->setAlignment(Qt::AlignTop);
  buttons->setContentsMargins(0, 4, 0, 0);
  row->addLayout(buttons);
  connect(newsButton_, &QRadioButton::clicked, this, &PanelHeader::newsRequested);
  connect(ratingsButton_, &QRadioButton::clicked, this, &PanelHeader::ratingsRequested);
  connect(searchButton_, &QAbstractButton::clicked, this, &PanelHeader::searchRequested);
  connect(printButton_, &QAbstractButton::clicked, this, &PanelHeader::printRequested);
  applyStyle();
  retranslate();
}

QRadioButton* PanelHeader::addPageButton(const char* name) {
  auto* const button = new Pill<QRadioButton>(PillLook::Tab, this);
  button->setObjectName(QLatin1String(name));
  pages_->addWidget(button);
  return button;
}

void PanelHeader::setPage(PanelPage page, bool hasRatings) {
  const bool hasChoice = hasRatings || page == PanelPage::Ratings;
  title_->setVisible(!hasChoice);
  newsButton_->setVisible(hasChoice);
  ratingsButton_->setVisible(hasChoice);
  (page == PanelPage::News ? newsButton_ : ratingsButton_)->setChecked(true);
  // There is nothing to search or to print on the rating page.
  searchButton_->setVisible(page == PanelPage::News);
  printButton_->setVisible(page == PanelPage::News);
}

void PanelHeader::retranslate() {
  title_->setText(localizedText(strings::kNews));
  newsButton_->setText(localizedText(strings::kNews));
  newsButton_->setAccessibleDescription(localizedText(strings::kNewsDescription));
  ratingsButton_->setText(localizedText(strings::kRatings));
  ratingsButton_->setAccessibleDescription(localizedText(strings::kRatingsDescription));
  searchButton_->setNames(localizedText(strings::kSearch),
                          localizedText(strings::kSearchDescription), QKeySequence::Find);
  printButton_->setNames(localizedText(strings::kPrint), localizedText(strings::kPrintDescription),
                         QKeySequence::Print);
}

void PanelHeader::focusPage() {
  (newsButton_->isChecked() ? newsButton_ : ratingsButton_)->setFocus(Qt::OtherFocusReason);
}

void PanelHeader::applyStyle() {
  const PanelStyle style(palette(), font());
  title_->setFont(style.font(ornwhatsnew::kFontSize_Buttons, QFont::DemiBold));
  // The title has the height of the page buttons, so that it is level with the buttons for
  // searching and printing.
  title_->setMinimumHeight(newsButton_->sizeHint().height());
}

void PanelHeader::changeEvent(QEvent* event) {
  // The header can receive a change event before its constructor has created `newsButton_`, the
  // last widget that `applyStyle` uses.
  if (event->type() == QEvent::FontChange && newsButton_ != nullptr) applyStyle();
  QWidget::changeEvent(event);
}

}  // namespace ornwhatsnewqt
