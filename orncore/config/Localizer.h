// Localised texts: a dictionary that the host supplies, default texts that the keys carry along,
// and the markup that both may hold.
//
// A host replaces the dictionary with one call, at start or when the user changes the language:
//
//   orncore::config::Localizer::Get().SetDictionary(
//       std::make_shared<orncore::config::MapDictionary>(std::move(texts)));
//
// or derives its own DictionarySource from whatever holds its translations. Without a dictionary
// every key shows its default text.
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
#include <orncore/string/Types.h>

namespace orncore::config {

using string::UTF16String;
using string::UTF8String;

/// Where translated texts come from: the interface that a host implements for its own dictionary.
///
/// Threads: Find is called on whatever thread asks for a text; a host whose lists live on several
/// threads makes it safe to be called from all of them.
class ORN_EXPORT DictionarySource {
 public:
  DictionarySource() = default;
  DictionarySource(const DictionarySource&) = delete;
  DictionarySource& operator=(const DictionarySource&) = delete;
  virtual ~DictionarySource();

  /// The text for `key`, UTF-8, markup unexpanded; nothing when the dictionary lacks the key. An
  /// empty text is a text: it is shown as such. `key` is the key text up to its first `=`, exactly
  /// as written, and is not kept. What it throws passes through the Localizer.
  virtual std::optional<UTF8String> Find(std::string_view key) const = 0;
};

/// A dictionary in memory. What it overrides is described at the interface.
///
/// Threads: never changes after its construction, so that any number of threads may ask it.
class ORN_EXPORT MapDictionary final : public DictionarySource {
 public:
  /// Texts by key.
  using Texts = std::map<std::string, std::string, std::less<>>;

  /// From keys (as written before `=`) to UTF-8 texts, whose markup is expanded when shown.
  explicit MapDictionary(Texts texts);
  ~MapDictionary() override;

  std::optional<UTF8String> Find(std::string_view key) const override;

 private:
  Texts texts_;
};

/// Turns key texts into what the user reads.
///
/// A key text is `key=default text`, UTF-8: the key is what stands before the first `=`. Shown is
/// the dictionary's text for the key; where there is none, the default text; where there is no
/// default either (no `=`), the key text as it stands, its markup unexpanded.
///
/// Threads: any number of threads may ask for texts while none sets the dictionary.
class ORN_EXPORT Localizer {
 public:
  /// The process's localiser; it is never destroyed.
  static Localizer& Get();

  Localizer() = default;
  Localizer(const Localizer&) = delete;
  Localizer& operator=(const Localizer&) = delete;

  /// The text for `keyText`, its markup expanded (see ExpandMarkup). Ill-formed UTF-8, in the key
  /// text or the dictionary, reads as U+FFFD.
  UTF16String ZString(std::string_view keyText) const;

  /// The same text with `@0` ... `@9` filled by the arguments of those numbers: in one pass from
  /// left to right, every occurrence, after the markup. Inserted text is never expanded again. A
  /// mark without an argument of its number stays as written, an argument without a mark is
  /// dropped, and so are arguments behind the tenth.
  UTF16String ZString(std::string_view keyText, std::span<const UTF16String> arguments) const;

  /// Replaces the dictionary; null: none, as at the start.
  void SetDictionary(std::shared_ptr<const DictionarySource> dictionary);

 private:
  std::shared_ptr<const DictionarySource> dictionary_;
};

/// Expands the markup of a localised text, in one pass from left to right:
///
///   #{endl} line feed      ^B  U+2022 bullet           ^[  U+201C left double quote
///   #{tab}  tab            ^{  U+2018 left quote       ^]  U+201D right double quote
///   #{mdash} U+2014        ^}  U+2019 right quote      ^^  a caret
///   #{ndash} U+2013        #{comment} ends the text: it and all behind it vanish
///
/// What is none of these stays as written, one character at a time: `^#{endl}` is a caret and a
/// line feed, `#{foo}` and `^x` are themselves.
ORN_EXPORT UTF16String ExpandMarkup(std::u16string_view text);

}  // namespace orncore::config

#endif  // ORNCORE_CONFIG_LOCALIZER_H_
