// How a text of the data or the feature table becomes display text.
#ifndef ORNWHATSNEW_SRC_PANEL_LOCALIZATION_H_
#define ORNWHATSNEW_SRC_PANEL_LOCALIZATION_H_

#include <orncore/config/Localizer.h>
#include <orncore/string/Conversion.h>
#include <ornwhatsnew/utility/SharedTypes.h>
#include <ornwhatsnew/utility/TextHelpers.h>

namespace ornwhatsnew {

/// Overwrites `out`: a localisation key goes through the host's localiser, any other text is
/// converted as it is.
inline void Localize(const UTF8String& text, UTF16String& out) {
  if (IsZString(text)) {
    out = orncore::config::Localizer::Get().ZString(text);
  } else {
    orncore::string::UTF8to16(text, out);
  }
}

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_PANEL_LOCALIZATION_H_
