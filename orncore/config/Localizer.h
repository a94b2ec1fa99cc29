// Localised texts: a dictionary that the host supplies, default texts that are part of the keys,
// and the markup of both.
//
// A host sets the dictionary at start, and again when the user changes the language:
//
//   orncore::config::Localizer::Get().SetDictionary(
//       std::make_shared<orncore::config::MapDictionary>(std::move(texts)));
//
// or derives its own DictionarySource. Without a dictionary every key has its default text.
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
/// Threads: called on the threads that use lists. If there are several, `Find` must be safe to call
/// from all of them.
class ORN_EXPORT DictionarySource {
 public:
  DictionarySource() = default;
  DictionarySource(const DictionarySource&) = delete;
  DictionarySource& operator=(const DictionarySource&) = delete;
  virtual ~DictionarySource();

  /// Returns the text for `key`, UTF-8, with its markup; nothing if the dictionary does not contain
  /// the key. An empty text is shown as empty. `key` is the key text before its first `=`, exactly
  /// as written; the view is valid during the call. The Localizer passes on what this throws.
  virtual std::optional<UTF8String> Find(std::string_view key) const = 0;
};

/// A dictionary in memory. `DictionarySource` documents the overridden method.
///
/// Threads: safe to use from any thread, because it never changes.
class ORN_EXPORT MapDictionary final : public DictionarySource {
 public:
  /// Texts by key.
  using Texts = std::map<std::string, std::string, std::less<>>;

  /// Stores UTF-8 texts, with markup, by key (as written before `=`).
  explicit MapDictionary(Texts texts);
  ~MapDictionary() override;

  std::optional<UTF8String> Find(std::string_view key) const override;

 private:
  Texts texts_;
};

/// Localises key texts.
///
/// A key text is `key=default text`, UTF-8; the key is the part before the first `=`. The result is
/// the dictionary's text for the key. If there is none, it is the default text. If there is no
/// default either (no `=`), it is the key text unchanged, markup included.
///
/// Threads: `ZString` is safe to call from any thread while no thread calls `SetDictionary`.
class ORN_EXPORT Localizer {
 public:
  /// Returns the localiser of the process, which is never destroyed.
  static Localizer& Get();

  Localizer() = default;
  Localizer(const Localizer&) = delete;
  Localizer& operator=(const Localizer&) = delete;

  /// Returns the text for `keyText` with its markup expanded:
  ///
  ///   #{endl} line feed      ^B  U+2022 bullet           ^[  U+201C left double quote
  ///   #{tab}  tab            ^{  U+2018 left quote       ^]  U+201D right double quote
  ///   #{mdash} U+2014        ^}  U+2019 right quote      ^^  a caret
  ///   #{ndash} U+2013        #{comment} ends the text; the rest is dropped
  ///
  /// Everything else is kept, one character at a time: `^#{endl}` is a caret and a line feed, `^x`
  /// and `#{foo}` are kept as they are. Ill-formed UTF-8 becomes U+FFFD.
  UTF16String ZString(std::string_view keyText) const;

  /// Returns the same text with every `@0` to `@9` replaced by the argument with that index, in one
  /// pass after the markup is expanded. Inserted text is not expanded. A placeholder without an
  /// argument is kept; an argument without a placeholder, and any after the tenth, is ignored.
  UTF16String ZString(std::string_view keyText, std::span<const UTF16String> arguments) const;

  /// Replaces the dictionary. Null removes it.
  void SetDictionary(std::shared_ptr<const DictionarySource> dictionary);

 private:
  std::shared_ptr<const DictionarySource> dictionary_;
};

}  // namespace orncore::config

#endif  // ORNCORE_CONFIG_LOCALIZER_H_
