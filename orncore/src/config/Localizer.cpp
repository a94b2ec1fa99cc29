#include <orncore/config/Localizer.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include <orncore/string/Conversion.h>
#include <orncore/string/Replace.h>

#include "orncore/src/utility/ServiceHolder.h"

namespace orncore::config {
namespace {

struct Markup {
  std::u16string_view mark;
  char16_t character;
};

utility::ServiceHolder<const DictionarySource> dictionaryHolder;

constexpr std::array kMarkup = {Markup{u"#{endl}", u'\n'},      Markup{u"#{tab}", u'\t'},
                                Markup{u"#{mdash}", u'\u2014'}, Markup{u"#{ndash}", u'\u2013'},
                                Markup{u"^B", u'\u2022'},       Markup{u"^{", u'\u2018'},
                                Markup{u"^}", u'\u2019'},       Markup{u"^[", u'\u201C'},
                                Markup{u"^]", u'\u201D'},       Markup{u"^^", u'^'}};

constexpr std::u16string_view kComment = u"#{comment}";
constexpr std::u16string_view kMarkStarts = u"#^";

constexpr std::array<std::u16string_view, 10> kArgumentMarks = {u"@0", u"@1", u"@2", u"@3", u"@4",
                                                                u"@5", u"@6", u"@7", u"@8", u"@9"};

// Expands the markup in place. The text never grows, because each markup sequence is at least as
// long as the character that replaces it.
void ExpandMarkup(UTF16String& text) {
  std::size_t read = text.find_first_of(kMarkStarts);
  if (read == UTF16String::npos) return;
  std::size_t written = read;
  while (read < text.size()) {
    // Most characters do not begin a markup sequence. Comparing each of them with every markup
    // sequence would take most of the time of this function.
    if (kMarkStarts.find(text[read]) == std::u16string_view::npos) {
      text[written++] = text[read++];
      continue;
    }
    const std::u16string_view rest = std::u16string_view(text).substr(read);
    if (rest.starts_with(kComment)) break;
    const auto match = std::ranges::find_if(
        kMarkup, [rest](const Markup& candidate) { return rest.starts_with(candidate.mark); });
    const bool found = match != kMarkup.end();
    text[written++] = found ? match->character : text[read];
    read += found ? match->mark.size() : 1;
  }
  text.resize(written);
}

UTF16String ConvertAndExpand(std::string_view text) {
  UTF16String result = string::UTF8to16(text);
  ExpandMarkup(result);
  return result;
}

}  // namespace

DictionarySource::~DictionarySource() = default;

MapDictionary::MapDictionary(Texts texts) : texts_(std::move(texts)) {}

MapDictionary::~MapDictionary() = default;

std::optional<UTF8String> MapDictionary::Find(std::string_view key) const {
  const auto entry = texts_.find(key);
  if (entry == texts_.end()) return std::nullopt;
  return entry->second;
}

Localizer& Localizer::Get() {
  // The localiser has no members, so it needs no destruction.
  static Localizer localizer;
  return localizer;
}

UTF16String Localizer::ZString(std::string_view keyText) const {
  const std::size_t equals = keyText.find('=');
  if (const auto dictionary = dictionaryHolder.Get()) {
    const std::optional<UTF8String> text = dictionary->Find(keyText.substr(0, equals));
    if (text) return ConvertAndExpand(*text);
  }
  if (equals == std::string_view::npos) return string::UTF8to16(keyText);
  return ConvertAndExpand(keyText.substr(equals + 1));
}

UTF16String Localizer::ZString(std::string_view keyText,
                               std::span<const UTF16String> arguments) const {
  UTF16String text = ZString(keyText);
  const std::size_t count = std::min(arguments.size(), kArgumentMarks.size());
  std::array<string::Replacement, kArgumentMarks.size()> replacements;
  for (std::size_t i = 0; i < count; ++i) replacements[i] = {kArgumentMarks[i], arguments[i]};
  string::ReplaceInString(text, std::span(replacements).first(count));
  return text;
}

void Localizer::SetDictionary(std::shared_ptr<const DictionarySource> dictionary) {
  dictionaryHolder.Set(std::move(dictionary));
}

}  // namespace orncore::config
