// Localises the strings of the companion, and makes the translators of the application available to
// the library.
#ifndef ORNWHATSNEWQT_SRC_LOCALIZEDTEXT_H_
#define ORNWHATSNEWQT_SRC_LOCALIZEDTEXT_H_

#include <initializer_list>
#include <optional>
#include <string_view>

#include <QtCore/QString>

#include <orncore/config/Localizer.h>

namespace ornwhatsnewqt {

/// Returns the display text for a key text, such as "$$$/ornwhatsnewqt/Panel/Search=Search", in the
/// user's language. Replaces `@0` to `@9` with the arguments.
QString localizedText(std::string_view keyText, std::initializer_list<QString> arguments = {});

/// A dictionary that queries the translators of the application. The context is "ornwhatsnew", and
/// the source text is the key.
class TranslatorDictionary final : public orncore::config::DictionarySource {
 public:
  ~TranslatorDictionary() override;

  std::optional<orncore::config::UTF8String> Find(std::string_view key) const override;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_LOCALIZEDTEXT_H_
