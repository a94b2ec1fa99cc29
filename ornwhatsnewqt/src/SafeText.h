// Makes strings of a layout safe for widgets.
#ifndef ORNWHATSNEWQT_SRC_SAFETEXT_H_
#define ORNWHATSNEWQT_SRC_SAFETEXT_H_

#include <string_view>

#include <QtCore/QString>

namespace ornwhatsnewqt {

/// Returns a copy of `text` that cannot add a block or an object to a `QTextDocument`, and cannot
/// change the order of other text. Replaces and removes the same characters as
/// `orncore::string::SafeForDocument`, and replaces U+FFFC, too.
QString safeText(std::u16string_view text);

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_SAFETEXT_H_
