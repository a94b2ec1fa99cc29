#include <orncore/string/SafeLink.h>

#include <algorithm>
#include <array>
#include <cstddef>

namespace orncore::string {
namespace {

constexpr std::size_t kMaximumLength = 2000;
constexpr std::string_view kScheme = "https://";

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

bool IsAlphanumericOrIn(std::string_view marks, char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         IsDigit(character) || marks.find(character) != std::string_view::npos;
}

bool IsURLCharacter(char character) {
  return IsAlphanumericOrIn("-._~:/?#[]@!$&'()*+,;=%", character);
}

// If `authority` ends with a colon and zero or more digits (a port), returns the string before the
// colon. Otherwise, returns `authority`. Never removes a part of a valid host name: only an IP
// address in brackets contains colons, and it ends with a bracket.
std::string_view WithoutPort(std::string_view authority) {
  std::string_view host = authority;
  while (!host.empty() && IsDigit(host.back())) host.remove_suffix(1);
  if (!host.ends_with(':')) return authority;
  host.remove_suffix(1);
  return host;
}

// Returns whether `host` is not empty and contains only characters of a host name or, between
// square brackets, of an IP address. Does not check the syntax. Rejects all other characters,
// because views could disagree about where the host name ends.
bool IsHost(std::string_view host) {
  const bool isAddress = host.starts_with('[') && host.ends_with(']');
  if (isAddress) host = host.substr(1, host.size() - 2);
  const std::string_view marks = isAddress ? ":." : "-._";
  return !host.empty() && std::ranges::all_of(host, [marks](char character) {
    return IsAlphanumericOrIn(marks, character);
  });
}

}  // namespace

bool IsSafeLink(std::string_view link) noexcept {
  if (link.size() > kMaximumLength || !link.starts_with(kScheme)) return false;
  if (!std::ranges::all_of(link, IsURLCharacter)) return false;
  std::string_view authority = link;
  authority.remove_prefix(kScheme.size());
  authority = authority.substr(0, authority.find_first_of("/?#"));
  // This check rejects user information, because a host name cannot contain "@".
  return IsHost(WithoutPort(authority));
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

}  // namespace orncore::string
