#include <orncore/config/Localizer.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include <orncore/string/Conversion.h>
#include <orncore/string/Replace.h>
#include <orncore/utility/NoDestructor.h>

namespace orncore::config {
namespace {

struct Mark {
  std::u16string_view written;
  char16_t shown;
};

constexpr std::array kMarks = {Mark{u"#{endl}", u'\n'},      Mark{u"#{tab}", u'\t'},
                               Mark{u"#{mdash}", u'\u2014'}, Mark{u"#{ndash}", u'\u2013'},
                               Mark{u"^B", u'\u2022'},       Mark{u"^{", u'\u2018'},
                               Mark{u"^}", u'\u2019'},       Mark{u"^[", u'\u201C'},
                               Mark{u"^]", u'\u201D'},       Mark{u"^^", u'^'}};

constexpr std::u16string_view kComment = u"#{comment}";
constexpr std::u16string_view kMarkStarts = u"#^";

constexpr std::array<std::u16string_view, 10> kArgumentMarks = {u"@0", u"@1", u"@2", u"@3", u"@4",
                                                                u"@5", u"@6", u"@7", u"@8", u"@9"};

// No mark is shorter than what it stands for, so that the text shrinks into its own buffer.
void ExpandInPlace(UTF16String& text) {
  std::size_t read = text.find_first_of(kMarkStarts);
  if (read == UTF16String::npos) return;
  std::size_t written = read;
  while (read < text.size()) {
    const std::u16string_view rest = std::u16string_view(text).substr(read);
    if (rest.starts_with(kComment)) break;
    const auto mark = std::ranges::find_if(
        kMarks, [rest](const Mark& candidate) { return rest.starts_with(candidate.written); });
    const bool found = mark != kMarks.end();
    text[written++] = found ? mark->shown : text[read];
    read += found ? mark->written.size() : 1;
  }
  text.resize(written);
}

UTF16String Expanded(std::string_view text) {
  UTF16String result = string::UTF8to16(text);
  ExpandInPlace(result);
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
  static utility::NoDestructor<Localizer> localizer;
  return *localizer;
}

UTF16String Localizer::ZString(std::string_view keyText) const {
  const std::size_t equals = keyText.find('=');
  // Held, because a host's dictionary may put another in its place meanwhile.
  if (const auto dictionary = dictionary_) {
    const std::optional<UTF8String> text = dictionary->Find(keyText.substr(0, equals));
    if (text) return Expanded(*text);
  }
  if (equals == std::string_view::npos) return string::UTF8to16(keyText);
  return Expanded(keyText.substr(equals + 1));
}

UTF16String Localizer::ZString(std::string_view keyText,
                               std::span<const UTF16String> arguments) const {
  const UTF16String text = ZString(keyText);
  const std::size_t count = std::min(arguments.size(), kArgumentMarks.size());
  std::array<string::Replacement, kArgumentMarks.size()> replacements;
  for (std::size_t i = 0; i < count; ++i) replacements[i] = {kArgumentMarks[i], arguments[i]};
  UTF16String result;
  string::AppendReplacing(text, std::span(replacements).first(count), result);
  return result;
}

void Localizer::SetDictionary(std::shared_ptr<const DictionarySource> dictionary) {
  dictionary_.swap(dictionary);
}

UTF16String ExpandMarkup(std::u16string_view text) {
  UTF16String result(text);
  ExpandInPlace(result);
  return result;
}

}  // namespace orncore::config
