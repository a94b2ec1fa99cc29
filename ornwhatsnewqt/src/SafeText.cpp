#include "ornwhatsnewqt/src/SafeText.h"

#include <orncore/string/SafeText.h>

namespace ornwhatsnewqt {

QString safeText(std::u16string_view text) {
  QString safe = QString::fromStdU16String(orncore::string::SafeForDocument(text));
  // A QTextDocument uses U+FFFC for images and other inline objects.
  return safe.replace(QChar::ObjectReplacementCharacter, QChar::ReplacementCharacter);
}

}  // namespace ornwhatsnewqt
