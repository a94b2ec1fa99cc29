// Converts strings of the data file and of the feature table to display text.
#ifndef ORNWHATSNEW_SRC_PANEL_LOCALIZATION_H_
#define ORNWHATSNEW_SRC_PANEL_LOCALIZATION_H_

#include <orncore/config/Localizer.h>
#include <orncore/string/Conversion.h>
#include <ornwhatsnew/utility/SharedTypes.h>
#include <ornwhatsnew/utility/TextHelpers.h>

namespace ornwhatsnew {

/// Returns the localised text if `text` is a key text. Otherwise returns `text` in UTF-16.
inline UTF16String Localize(const UTF8String& text) {
  return IsZString(text) ? orncore::config::Localizer::Get().ZString(text)
                         : orncore::string::UTF8to16(text);
}

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_PANEL_LOCALIZATION_H_
