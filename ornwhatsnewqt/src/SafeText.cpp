#include "ornwhatsnewqt/src/SafeText.h"

#include <orncore/string/SafeText.h>

namespace ornwhatsnewqt {

QString safeText(std::u16string_view text) {
  QString safe = QString::fromStdU16String(orncore::string::SafeForDocument(text));
  // Replace U+FFFC, because a QTextDocument would treat it as an image or another inline object.
  return safe.replace(QChar::ObjectReplacementCharacter, QChar::ReplacementCharacter);
}

}  // namespace ornwhatsnewqt
