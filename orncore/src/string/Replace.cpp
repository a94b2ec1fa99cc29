#include <orncore/string/Replace.h>

#include <algorithm>
#include <utility>

namespace orncore::string {
namespace {

// The units with which an occurrence can begin, each once.
UTF16String FirstUnits(std::span<const Replacement> replacements) {
  UTF16String units;
  for (const Replacement& replacement : replacements) {
    if (replacement.pattern.empty()) continue;
    const char16_t unit = replacement.pattern.front();
    if (units.find(unit) == units.npos) units += unit;
  }
  return units;
}

// Adds `text` with every occurrence replaced to `out` and answers how many there were.
std::size_t AppendAndCount(std::u16string_view text, std::span<const Replacement> replacements,
                           UTF16String& out) {
  const UTF16String firstUnits = FirstUnits(replacements);
  std::size_t count = 0;
  std::size_t copied = 0;
  std::size_t position = text.find_first_of(firstUnits);
  while (position != text.npos) {
    const std::u16string_view rest = text.substr(position);
    const auto found = std::ranges::find_if(replacements, [rest](const Replacement& replacement) {
      return !replacement.pattern.empty() && rest.starts_with(replacement.pattern);
    });
    if (found != replacements.end()) {
      out.append(text.substr(copied, position - copied)).append(found->text);
      copied = position + found->pattern.size();
      ++count;
    }
    position = text.find_first_of(firstUnits, std::max(copied, position + 1));
  }
  out.append(text.substr(copied));
  return count;
}

}  // namespace

void ReplaceInString(UTF16String& text, std::span<const Replacement> replacements) {
  UTF16String result;
  if (AppendAndCount(text, replacements, result) != 0) text = std::move(result);
}

void ReplaceInString(UTF16String& text, std::u16string_view pattern,
                     std::u16string_view replacement) {
  ReplaceAllStringInString(text, pattern, replacement);
}

void AppendReplacing(std::u16string_view text, std::span<const Replacement> replacements,
                     UTF16String& out) {
  AppendAndCount(text, replacements, out);
}

std::size_t ReplaceAllStringInString(UTF16String& text, std::u16string_view pattern,
                                     std::u16string_view replacement) {
  if (pattern.empty() || text.find(pattern) == text.npos) return 0;
  const Replacement only[] = {{pattern, replacement}};
  UTF16String result;
  const std::size_t count = AppendAndCount(text, only, result);
  text = std::move(result);
  return count;
}

}  // namespace orncore::string
