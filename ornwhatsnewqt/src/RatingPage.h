// Declares the page with the rating requests.
#ifndef ORNWHATSNEWQT_SRC_RATINGPAGE_H_
#define ORNWHATSNEWQT_SRC_RATINGPAGE_H_

#include <vector>

#include <QtWidgets/QScrollArea>

#include <ornwhatsnew/PanelLayout.h>

QT_BEGIN_NAMESPACE
class QVBoxLayout;
QT_END_NAMESPACE

namespace ornwhatsnewqt {

class RatingCard;

/// A column of cards, one for each rating request. After the user sends a rating, the page moves
/// the focus to the next card that is not rated.
class RatingPage : public QScrollArea {
  Q_OBJECT
 public:
  explicit RatingPage(QWidget* parent);

  /// Shows `requests`. Removes each card that is not rated and whose request is not in `requests`.
  /// Keeps the other cards and the user's choices in these cards.
  void showRequests(const std::vector<ornwhatsnew::RatingRequest>& requests);

  /// Removes all cards.
  void clear();

  /// Returns whether there are no cards.
  bool isEmpty() const { return cards_.empty(); }

  /// Moves the focus to the next card that is not rated. The search begins at `previous`, or at the
  /// top if `previous` is null, and continues at the top after the last card. Returns whether there
  /// is such a card.
  bool focusNextCard(const RatingCard* previous = nullptr);

 Q_SIGNALS:
  /// The user has rated a feature.
  void rated(const QString& featureKey, int stars, const QString& comment);

  /// The user has rated the last unrated feature on the page.
  void finished();

 private:
  void removeCard(RatingCard* card);
  void addCard(const ornwhatsnew::RatingRequest& request);
  RatingCard* findCard(const std::string& itemKey) const;

  std::vector<RatingCard*> cards_;
  QVBoxLayout* column_;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_RATINGPAGE_H_
