// Builds compiled gettext catalogs for tests.
#ifndef TESTS_HOSTS_COMMON_CATALOGBYTES_H_
#define TESTS_HOSTS_COMMON_CATALOGBYTES_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace hosts::common {

/// The entries of a catalog, sorted by source text. Each entry consists of a source text and its
/// translation.
using CatalogEntries = std::vector<std::pair<std::string, std::string>>;

/// Returns the header entry of a catalog, which specifies the character set `charset`.
inline std::pair<std::string, std::string> Properties(std::string_view charset = "UTF-8") {
  return {"", "Content-Type: text/plain; charset=" + std::string(charset) + "\n"};
}

/// Returns the source text `text`, preceded by the context `context`, as a catalog stores it.
inline std::string InContext(std::string_view context, std::string_view text) {
  return std::string(context) + '\4' + std::string(text);
}

/// Appends `number` as a 32-bit integer in the given byte order.
inline void AppendNumber(std::string& bytes, std::size_t number, bool isBigEndian) {
  for (unsigned i = 0; i < 4; ++i) {
    const unsigned shift = 8 * (isBigEndian ? 3 - i : i);
    bytes += static_cast<char>(number >> shift & 0xFFU);
  }
}

/// Returns the bytes of a catalog without a hash table.
inline std::string CatalogBytes(const CatalogEntries& entries, bool isBigEndian = false) {
  constexpr std::size_t kHeaderSize = 28;
  const std::size_t tableSize = 8 * entries.size();
  std::string bytes;
  for (const std::size_t number :
       {std::size_t{0x950412DE}, std::size_t{0}, entries.size(), kHeaderSize,
        kHeaderSize + tableSize, std::size_t{0}, kHeaderSize + 2 * tableSize}) {
    AppendNumber(bytes, number, isBigEndian);
  }
  std::string strings;
  const auto addTable = [&](auto CatalogEntries::value_type::*member) {
    for (const auto& entry : entries) {
      const std::string& text = entry.*member;
      AppendNumber(bytes, text.size(), isBigEndian);
      AppendNumber(bytes, kHeaderSize + 2 * tableSize + strings.size(), isBigEndian);
      strings += text + '\0';
    }
  };
  addTable(&CatalogEntries::value_type::first);
  addTable(&CatalogEntries::value_type::second);
  return bytes + strings;
}

}  // namespace hosts::common

#endif  // TESTS_HOSTS_COMMON_CATALOGBYTES_H_
