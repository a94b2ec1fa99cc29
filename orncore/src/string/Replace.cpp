#include <orncore/string/Replace.h>

#include <algorithm>
#include <utility>

namespace orncore::string {
namespace {

std::size_t Replace(UTF16String& text, std::span<const Replacement> replacements) {
  UTF16String result;
  result.reserve(text.size());
  std::size_t count = 0;
  for (std::u16string_view rest = text; !rest.empty();) {
    const auto match = std::ranges::find_if(replacements, [rest](const Replacement& candidate) {
      return !candidate.pattern.empty() && rest.starts_with(candidate.pattern);
    });
    if (match != replacements.end()) {
      result += match->text;
      rest.remove_prefix(match->pattern.size());
      ++count;
    } else {
      result += rest.front();
      rest.remove_prefix(1);
    }
  }
  text = std::move(result);
  return count;
}

}  // namespace

void ReplaceInString(UTF16String& text, std::span<const Replacement> replacements) {
  Replace(text, replacements);
}

std::size_t ReplaceAllStringInString(UTF16String& text, std::u16string_view pattern,
                                     std::u16string_view replacement) {
  const Replacement replacements[] = {{pattern, replacement}};
  return Replace(text, replacements);
}

}  // namespace orncore::string
