// Declares the card with which a user rates a feature.
#ifndef ORNWHATSNEWQT_SRC_RATINGCARD_H_
#define ORNWHATSNEWQT_SRC_RATINGCARD_H_

#include <QtCore/QString>
#include <QtWidgets/QFrame>

#include <ornwhatsnew/PanelLayout.h>

QT_BEGIN_NAMESPACE
class QButtonGroup;
class QLabel;
class QLineEdit;
class QPushButton;
QT_END_NAMESPACE

namespace ornwhatsnewqt {

/// A card with the question of a rating request, five choices, a line for a comment, and a button
/// that sends the rating. After the user has sent the rating, the card shows only its title and a
/// message that thanks the user.
class RatingCard : public QFrame {
  Q_OBJECT
 public:
  RatingCard(const ornwhatsnew::RatingRequest& request, QWidget* parent);

  /// Shows `request`, and shows the labels of the card in the current language. Keeps the user's
  /// choice.
  void setRequest(const ornwhatsnew::RatingRequest& request);

  /// Sets the labels of the card to the strings of the current language.
  void retranslate();

  /// Returns the key of the feature.
  const QString& itemKey() const { return itemKey_; }

  /// Returns whether the user has sent the rating.
  bool isRated() const { return isRated_; }

  /// Moves the focus to the user's choice or, if there is none, to the first choice.
  void focusChoice();

 Q_SIGNALS:
  /// The user has sent the rating. Emitted once.
  void rated(int stars, const QString& comment);

 protected:
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QLabel* addLabel(const char* name);
  void addChoices();
  void addComment();
  void applyStyle();
  void send();

  QString itemKey_;
  QLabel* title_ = nullptr;
  QLabel* question_ = nullptr;
  QLabel* description_ = nullptr;
  QWidget* choices_ = nullptr;
  QButtonGroup* stars_ = nullptr;
  QLineEdit* comment_ = nullptr;
  QPushButton* sendButton_ = nullptr;
  QLabel* thanks_ = nullptr;
  bool hasOwnQuestion_ = false;
  bool isRated_ = false;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_RATINGCARD_H_
