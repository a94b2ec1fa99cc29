// Declares the bar that reports errors above the pages of a panel.
#ifndef ORNWHATSNEWQT_SRC_MESSAGEBAR_H_
#define ORNWHATSNEWQT_SRC_MESSAGEBAR_H_

#include <QtWidgets/QFrame>

QT_BEGIN_NAMESPACE
class QLabel;
QT_END_NAMESPACE

namespace ornwhatsnewqt {

class GlyphButton;

/// A bar with a message and a button that hides the bar.
class MessageBar : public QFrame {
  Q_OBJECT
 public:
  /// Creates a hidden bar.
  explicit MessageBar(QWidget* parent);

  /// Shows `message` and announces it to assistive technologies. Hides the bar if `message` is
  /// empty. If `message` is the current message, does nothing, so that a message that the user has
  /// hidden remains hidden.
  void setMessage(const QString& message);

  /// Sets the strings of the bar in the current language. `message` is the current message in this
  /// language. Unlike `setMessage`, does not show a hidden bar and does not announce the message.
  void retranslate(const QString& message);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void setText(const QString& message);

  QLabel* text_;
  GlyphButton* dismissButton_;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_MESSAGEBAR_H_
