#include <ornwhatsnew/SafeLink.h>

#include <algorithm>
#include <array>
#include <cstddef>

namespace ornwhatsnew {
namespace {

constexpr std::size_t kMaximumLength = 2000;
constexpr std::string_view kScheme = "https://";

bool IsURLCharacter(char character) {
  constexpr std::string_view kMarks = "-._~:/?#[]@!$&'()*+,;=%";
  const bool isAlphanumeric = (character >= 'a' && character <= 'z') ||
                              (character >= 'A' && character <= 'Z') ||
                              (character >= '0' && character <= '9');
  return isAlphanumeric || kMarks.find(character) != std::string_view::npos;
}

}  // namespace

bool IsSafeLink(std::string_view link) noexcept {
  if (link.size() > kMaximumLength || !link.starts_with(kScheme)) return false;
  if (!std::ranges::all_of(link, IsURLCharacter)) return false;
  std::string_view authority = link;
  authority.remove_prefix(kScheme.size());
  authority = authority.substr(0, authority.find_first_of("/?#"));
  const bool hasHost = !authority.empty() && authority.front() != ':';
  const bool hasUserInformation = authority.find('@') != std::string_view::npos;
  return hasHost && !hasUserInformation;
}

bool IsSafeLink(std::u16string_view link) noexcept {
  // Copy the link into a buffer on the stack, because converting it to UTF-8 could throw.
  std::array<char, kMaximumLength> ascii{};
  const auto isAscii = [](char16_t unit) { return unit < 0x80; };
  if (link.size() > ascii.size() || !std::ranges::all_of(link, isAscii)) return false;
  std::ranges::transform(link, ascii.begin(),
                         [](char16_t unit) { return static_cast<char>(unit); });
  return IsSafeLink(std::string_view(ascii.data(), link.size()));
}

}  // namespace ornwhatsnew
