// Declares a tool button that shows whether something is new.
#ifndef ORNWHATSNEWQT_WHATSNEWBADGE_H_
#define ORNWHATSNEWQT_WHATSNEWBADGE_H_

#include <QtWidgets/QToolButton>

#include <ornwhatsnewqt/Export.h>

namespace ornwhatsnewqt {

class WhatsNew;

/// A tool button for `WhatsNew::showAction`. It shows the text of the action, with the number of
/// new changes. Assistive technologies read the name of the action and this number separately.
class ORNWHATSNEWQT_EXPORT WhatsNewBadge : public QToolButton {
  Q_OBJECT
 public:
  /// Creates a button for `whatsNew`. When `whatsNew` is destroyed, the button becomes disabled.
  explicit WhatsNewBadge(const WhatsNew* whatsNew, QWidget* parent = nullptr);
  ~WhatsNewBadge() override;

 private:
  void updateName();
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_WHATSNEWBADGE_H_
