#include "ornwhatsnewqt/src/SafeText.h"

#include <orncore/string/SafeText.h>

namespace ornwhatsnewqt {

QString safeText(std::u16string_view text) {
  QString safe = QString::fromStdU16String(orncore::string::SafeForDocument(text));
  // In a document, this character stands for an image or a table.
  return safe.replace(QChar::ObjectReplacementCharacter, QChar::ReplacementCharacter);
}

}  // namespace ornwhatsnewqt
