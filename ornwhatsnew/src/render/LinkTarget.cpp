#include "ornwhatsnew/src/render/LinkTarget.h"

#include <algorithm>

#include <orncore/string/SafeLink.h>

namespace ornwhatsnew {
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

/// The parts of a link, in the order in which they occur in the link. Any of them may be empty.
struct LinkParts {
  explicit LinkParts(std::string_view link) {
    // Browsers skip any number of slashes before the host name, and read a backslash like a slash.
    constexpr std::string_view kSlashes = "/\\";
    const auto takeFirst = [&link](std::size_t size) {
      const std::string_view first = link.substr(0, size);
      link.remove_prefix(first.size());
      return first;
    };
    const std::size_t colon = link.find_first_of(":/?#\\@");
    if (colon <= kMaximumScheme && link[colon] == ':') scheme = takeFirst(colon + 1);
    slashes = takeFirst(std::min(link.find_first_not_of(kSlashes), link.size()));
    const std::string_view authority = link.substr(0, link.find_first_of("/?#\\"));
    const std::size_t at = authority.rfind('@');
    if (at != std::string_view::npos) userInformation = takeFirst(at + 1);
    // The colons of an IPv6 address, which is in brackets, do not begin the port.
    const std::size_t addressEnd = link.starts_with('[') ? link.find(']') : 0;
    host = takeFirst(std::min(link.find_first_of("/?#\\"), link.find(':', addressEnd)));
    rest = link;
  }

  static constexpr std::size_t kMaximumScheme = 20;

  std::string_view scheme;           ///< ends with ":" unless it is empty
  std::string_view slashes;          ///< slashes and backslashes
  std::string_view userInformation;  ///< ends with "@" unless it is empty
  std::string_view host;             ///< a host name or an IP address
  std::string_view rest;             ///< the port, the path, the query and the fragment
};

/// Returns at most `size` bytes from the beginning of `text`. Does not split an escape `%XX`.
std::string_view BeginningOf(std::string_view text, std::size_t size) {
  text = text.substr(0, size);
  const std::size_t escape = text.rfind('%');
  const bool isSplit = escape != std::string_view::npos && text.size() - escape < 3;
  return isSplit ? text.substr(0, escape) : text;
}

/// Returns at most `size` bytes from the end of `text`. Does not split an escape `%XX`. `text` must
/// have more than `size` bytes.
std::string_view EndOf(std::string_view text, std::size_t size) {
  std::size_t begin = text.size() - size;
  const std::size_t escape = text.rfind('%', begin - 1);
  if (escape != std::string_view::npos) begin = std::max(begin, escape + 3);
  return text.substr(begin);
}

std::string Cut(std::string_view link) {
  const LinkParts parts(link);
  std::string cut(parts.scheme);
  cut.append(parts.slashes.substr(0, 2));
  if (!parts.userInformation.empty()) cut.append(kCut).append("@");
  // Reserve space for "..." after the host name.
  const std::size_t hostSpace = kMaximumPrintedTarget - cut.size() - kCut.size();
  if (parts.host.size() > hostSpace) {
    cut.append(kCut).append(EndOf(parts.host, hostSpace - kCut.size()));
  } else {
    cut.append(parts.host);
  }
  if (cut.size() + parts.rest.size() <= kMaximumPrintedTarget) return cut.append(parts.rest);
  cut.append(BeginningOf(parts.rest, kMaximumPrintedTarget - cut.size() - kCut.size()));
  return cut.append(kCut);
}

}  // namespace

std::string PrintedLinkTarget(std::string_view link) {
  if (orncore::string::IsSafeLink(link)) return std::string(link);
  std::string target = PercentEncode(link);
  return target.size() <= kMaximumPrintedTarget ? target : Cut(target);
}

}  // namespace ornwhatsnew
