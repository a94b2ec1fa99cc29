// Localises strings. The translations are in a dictionary that the host supplies. The default texts
// are part of the key texts. Translations and default texts can contain markup.
//
// A host sets the dictionary at startup, and again when the user changes the language:
//
//   orncore::config::Localizer::Get().SetDictionary(
//       std::make_shared<orncore::config::MapDictionary>(std::move(texts)));
//
// A host can also implement DictionarySource itself. Without a dictionary, the localiser returns
// the default texts.
#ifndef ORNCORE_CONFIG_LOCALIZER_H_
#define ORNCORE_CONFIG_LOCALIZER_H_

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <orncore/Export.h>
#include <orncore/string/Conversion.h>

namespace orncore::config {

using string::UTF16String;
using string::UTF8String;

/// The interface that a host implements to supply translations.
///
/// Threads: the localiser calls `Find` on the thread of its own caller. If a host uses lists on
/// several threads, `Find` must be safe to call from all of them at the same time.
class ORN_EXPORT DictionarySource {
 public:
  DictionarySource() = default;
  DictionarySource(const DictionarySource&) = delete;
  DictionarySource& operator=(const DictionarySource&) = delete;
  virtual ~DictionarySource();

  /// Returns the translation for `key` in UTF-8, with unexpanded markup. Returns `std::nullopt` if
  /// the dictionary does not contain the key. An empty string is a valid translation and replaces
  /// the default text.
  ///
  /// `key` is the part of the key text before the first `=`, or the whole key text if it contains
  /// no `=`. The view is valid only during the call. Exceptions propagate to the caller of the
  /// localiser.
  virtual std::optional<UTF8String> Find(std::string_view key) const = 0;
};

/// Stores a dictionary in memory. `DictionarySource` documents the overridden method.
///
/// Threads: safe to use from any thread, because the translations never change.
class ORN_EXPORT MapDictionary final : public DictionarySource {
 public:
  /// The translations by key. Keys and translations are UTF-8.
  using Texts = std::map<std::string, std::string, std::less<>>;

  /// Stores `texts`. The translations may contain markup. Each key is the part of a key text before
  /// the first `=`.
  explicit MapDictionary(Texts texts);
  ~MapDictionary() override;

  std::optional<UTF8String> Find(std::string_view key) const override;

 private:
  Texts texts_;
};

/// Converts key texts to display text in the user's language.
///
/// A key text has the form `key=default text` in UTF-8. The first `=` separates the key and the
/// default text. The localiser returns the first of these strings that exists:
///
/// 1. the translation of the key in the dictionary, with its markup expanded;
/// 2. the default text, with its markup expanded;
/// 3. the whole key text, if it contains no `=`. Its markup is not expanded.
///
/// Threads: safe to use from any thread if the dictionary is safe to use from any thread.
class ORN_EXPORT Localizer {
 public:
  /// Returns the localiser of the process. It is never destroyed, so static destructors may use it.
  static Localizer& Get();

  Localizer(const Localizer&) = delete;
  Localizer& operator=(const Localizer&) = delete;

  /// Returns the display text for `keyText`. Expands the markup of a translation or default text:
  ///
  ///   #{endl} newline        ^B  U+2022 bullet           ^[  U+201C left double quote
  ///   #{tab}  tab            ^{  U+2018 left quote       ^]  U+201D right double quote
  ///   #{mdash} U+2014        ^}  U+2019 right quote      ^^  a caret
  ///   #{ndash} U+2013        #{comment} ends the text; the rest is dropped
  ///
  /// Keeps all other text, such as `^x` and `#{foo}`. A caret that does not begin markup has no
  /// effect on the characters after it: `^#{endl}` becomes a caret and a newline. Replaces
  /// ill-formed UTF-8 with U+FFFD.
  ///
  /// Queries the dictionary at every call and caches nothing. Exceptions from the dictionary
  /// propagate to the caller.
  UTF16String ZString(std::string_view keyText) const;

  /// Returns `ZString(keyText)` with each placeholder `@0` to `@9` replaced by the argument with
  /// that index. Inserted arguments are not searched for placeholders or markup.
  ///
  /// Keeps a placeholder that has no argument. Ignores an argument that has no placeholder, and all
  /// arguments after the tenth.
  UTF16String ZString(std::string_view keyText, std::span<const UTF16String> arguments) const;

  /// Replaces the dictionary. The localiser shares ownership of `dictionary`. Null removes the
  /// current dictionary. A call to `ZString` on another thread may still use the previous
  /// dictionary.
  void SetDictionary(std::shared_ptr<const DictionarySource> dictionary);

 private:
  Localizer() = default;
};

}  // namespace orncore::config

#endif  // ORNCORE_CONFIG_LOCALIZER_H_
