#include "hosts/console/LinkTarget.h"

#include <algorithm>

#include <ornwhatsnew/SafeLink.h>

namespace hosts::console {
namespace {

constexpr std::string_view kCut = "...";

bool IsEncoded(char character) {
  constexpr std::string_view kBrackets = "<>\"";
  const bool isVisibleAscii = character > 0x20 && character < 0x7F;
  return !isVisibleAscii || kBrackets.find(character) != std::string_view::npos;
}

std::string PercentEncode(std::string_view link) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string encoded;
  for (const char character : link) {
    if (!IsEncoded(character)) {
      encoded += character;
      continue;
    }
    const auto byte = static_cast<unsigned char>(character);
    encoded += '%';
    encoded += kDigits[byte >> 4U];
    encoded += kDigits[byte & 0xFU];
  }
  return encoded;
}

/// The substrings of a link. `userInformation` ends with "@" unless it is empty.
struct LinkParts {
  explicit LinkParts(std::string_view link) {
    constexpr std::string_view kScheme = "https://";
    if (link.starts_with(kScheme)) scheme = kScheme;
    link.remove_prefix(scheme.size());
    // Browsers treat a backslash as a slash.
    const std::size_t hostEnd = std::min(link.find_first_of("/?#\\"), link.size());
    const std::size_t at = link.substr(0, hostEnd).rfind('@');
    const std::size_t hostBegin = at == std::string_view::npos ? 0 : at + 1;
    userInformation = link.substr(0, hostBegin);
    host = link.substr(hostBegin, hostEnd - hostBegin);
    path = link.substr(hostEnd);
  }

  std::string_view scheme;
  std::string_view userInformation;
  std::string_view host;
  std::string_view path;
};

std::string Cut(std::string_view link) {
  const LinkParts parts(link);
  std::string cut(parts.scheme);
  if (!parts.userInformation.empty()) cut.append(kCut).append("@");
  // Reserve space for "..." after the host.
  const std::size_t hostSpace = kMaximumPrintedTarget - cut.size() - kCut.size();
  if (parts.host.size() > hostSpace) {
    cut.append(kCut).append(parts.host.substr(parts.host.size() - hostSpace + kCut.size()));
  } else {
    cut.append(parts.host);
  }
  if (cut.size() + parts.path.size() <= kMaximumPrintedTarget) return cut.append(parts.path);
  cut.append(parts.path.substr(0, kMaximumPrintedTarget - cut.size() - kCut.size()));
  return cut.append(kCut);
}

}  // namespace

std::string PrintedLinkTarget(std::string_view link) {
  if (ornwhatsnew::IsSafeLink(link)) return std::string(link);
  std::string target = PercentEncode(link);
  return target.size() <= kMaximumPrintedTarget ? target : Cut(target);
}

}  // namespace hosts::console
