#include "ornwhatsnewqt/src/RatingPage.h"

#include <algorithm>

#include <QtWidgets/QVBoxLayout>

#include "ornwhatsnewqt/src/NewsFormats.h"
#include "ornwhatsnewqt/src/RatingCard.h"

namespace ornwhatsnewqt {

RatingPage::RatingPage(QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setWidgetResizable(true);
  auto* const content = new QWidget(this);
  auto* const row = new QHBoxLayout(content);
  row->setContentsMargins(kPageMargin, kPageMargin / 2, kPageMargin, kPageMargin);
  column_ = new QVBoxLayout;
  column_->setSpacing(kCardSpacing);
  column_->addStretch();
  auto* const centered = new QWidget(content);
  centered->setMaximumWidth(kMaximumColumnWidth - 2 * kPageMargin);
  centered->setLayout(column_);
  column_->setContentsMargins(0, 0, 0, 0);
  row->addWidget(centered);
  setWidget(content);
}

RatingCard* RatingPage::findCard(const std::string& itemKey) const {
  const QString key = QString::fromStdString(itemKey);
  const auto found = std::ranges::find(cards_, key, &RatingCard::itemKey);
  return found == cards_.end() ? nullptr : *found;
}

void RatingPage::showRequests(const std::vector<ornwhatsnew::RatingRequest>& requests) {
  const auto isObsolete = [&requests](const RatingCard* card) {
    const auto isRequestOfCard = [card](const ornwhatsnew::RatingRequest& request) {
      return QString::fromStdString(request.itemKey) == card->itemKey();
    };
    return !card->isRated() && std::ranges::none_of(requests, isRequestOfCard);
  };
  std::erase_if(cards_, [this, isObsolete](RatingCard* card) {
    if (!isObsolete(card)) return false;
    removeCard(card);
    return true;
  });

  for (RatingCard* card : cards_) card->retranslate();
  for (const ornwhatsnew::RatingRequest& request : requests) {
    RatingCard* const card = findCard(request.itemKey);
    if (card == nullptr) {
      addCard(request);
    } else if (!card->isRated()) {
      card->setRequest(request);
    }
  }
}

void RatingPage::addCard(const ornwhatsnew::RatingRequest& request) {
  auto* const card = new RatingCard(request, widget());
  // Insert the card before the stretch, which is the last element of the column.
  column_->insertWidget(column_->count() - 1, card);
  cards_.push_back(card);
  connect(card, &RatingCard::rated, this, [this, card](int stars, const QString& comment) {
    Q_EMIT rated(card->itemKey(), stars, comment);
    if (!focusNextCard(card)) Q_EMIT finished();
  });
}

// An application may close the panel when it receives a rating. The card that emits the signal must
// exist until all receivers have returned.
void RatingPage::removeCard(RatingCard* card) {
  column_->removeWidget(card);
  card->hide();
  card->deleteLater();
}

void RatingPage::clear() {
  for (RatingCard* card : cards_) removeCard(card);
  cards_.clear();
}

bool RatingPage::focusNextCard(const RatingCard* previous) {
  std::vector<RatingCard*> cards = cards_;
  // Use std::rotate, because clang 14 cannot compile a call to std::ranges::rotate.
  std::rotate(cards.begin(), std::ranges::find(cards, previous), cards.end());
  const auto next = std::ranges::find_if_not(cards, &RatingCard::isRated);
  if (next == cards.end()) return false;
  (*next)->focusChoice();
  ensureWidgetVisible(*next);
  return true;
}

}  // namespace ornwhatsnewqt
