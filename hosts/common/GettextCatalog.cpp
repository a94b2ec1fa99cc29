#include "hosts/common/GettextCatalog.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <locale>
#include <vector>

#include <orncore/string/Conversion.h>
#include <ornwhatsnew/utility/TextHelpers.h>
#include <boost/locale/gnu_gettext.hpp>
#include <boost/locale/message.hpp>

namespace hosts::common {
namespace {

using Facet = boost::locale::message_format<char>;

/// Separates the context of an entry from its source text.
constexpr char kContextEnd = '\4';

// The header of a catalog consists of seven 32-bit integers. They can be little-endian or
// big-endian. The first integer, the magic number, shows the byte order.
constexpr std::size_t kHeaderSize = 28;
constexpr std::size_t kCountOffset = 8;
constexpr std::size_t kSourcesOffset = 12;
constexpr std::size_t kTranslationsOffset = 16;
constexpr std::size_t kHashSizeOffset = 20;

/// The maximum length, in bytes, of the header entry, which contains the properties of the catalog.
/// Boost.Locale parses the rule for plural forms in this entry recursively, so a long rule could
/// exhaust the stack.
constexpr std::size_t kMaximumProperties = 2048;

/// Checks the structure and the character set of a catalog, because Boost.Locale trusts most
/// offsets in the file. Also finds the source texts, because Boost.Locale returns a translation
/// only for a known source text.
class CatalogTables {
 public:
  explicit CatalogTables(std::string_view bytes) : bytes_(bytes) {
    constexpr std::uint32_t kMagic = 0x950412DE;
    constexpr std::uint32_t kSwappedMagic = 0xDE120495;
    if (bytes.size() < kHeaderSize) Fail("it is too short");
    const std::uint32_t magic = NumberAt(0);
    isSwapped_ = magic == kSwappedMagic;
    if (magic != kMagic && !isSwapped_)
      Fail("it does not begin with the magic number of a catalog");
    const std::uint32_t count = NumberAt(kCountOffset);
    sources_ = ReadTable(kSourcesOffset, count);
    const std::vector<std::string_view> translations = ReadTable(kTranslationsOffset, count);
    if (count == 0 || !sources_.front().empty()) Fail("it has no header entry");
    if (translations.front().size() > kMaximumProperties) {
      Fail("the header entry has more than 2048 bytes");
    }
    RequireUTF8(translations);
  }

  /// Returns one string for each entry: its source text, preceded by the context and `kContextEnd`
  /// if the entry has a context.
  const std::vector<std::string_view>& Sources() const { return sources_; }

 private:
  [[noreturn]] static void Fail(const std::string& reason) {
    throw CatalogError("is not a compiled gettext catalog: " + reason);
  }

  std::uint32_t NumberAt(std::size_t offset) const {
    std::uint32_t number = 0;
    std::memcpy(&number, bytes_.data() + offset, sizeof number);
    return isSwapped_ ? __builtin_bswap32(number) : number;
  }

  /// Returns the strings of a table. The header contains the offset of this table at
  /// `offsetOfTable`. A table consists of the length and the offset of each string. A NUL, which
  /// the length does not include, follows each string. Throws `CatalogError` if the table or a
  /// string is outside the file, or if the NUL after a string is missing. Also throws it if the
  /// strings are longer in total than the file.
  std::vector<std::string_view> ReadTable(std::size_t offsetOfTable, std::uint32_t count) const {
    constexpr std::size_t kEntrySize = 8;
    const std::size_t begin = NumberAt(offsetOfTable);
    if (begin > bytes_.size() || count > (bytes_.size() - begin) / kEntrySize) {
      Fail("a table is outside the file");
    }
    std::vector<std::string_view> strings;
    std::size_t total = 0;
    for (std::size_t entry = begin; strings.size() < count; entry += kEntrySize) {
      const std::size_t length = NumberAt(entry);
      const std::size_t offset = NumberAt(entry + 4);
      const bool isInside = offset < bytes_.size() && length < bytes_.size() - offset;
      if (!isInside) Fail("a string is outside the file");
      if (bytes_[offset + length] != '\0') Fail("a string does not end with NUL");
      // Limit the total, because many entries of a small file could refer to the same long string.
      total += length + 1;
      if (total > bytes_.size()) Fail("its strings are longer in total than the file");
      strings.push_back(bytes_.substr(offset, length));
    }
    return strings;
  }

  /// Throws `CatalogError` if the header entry does not name the character set UTF-8, or if a
  /// string is not well-formed UTF-8. Boost.Locale would convert other character sets, but it would
  /// drop bytes that it cannot convert.
  void RequireUTF8(const std::vector<std::string_view>& translations) const {
    constexpr std::string_view kCharset = "charset=";
    const std::string_view properties = translations.front();
    const std::size_t begin = properties.find(kCharset);
    std::string_view charset;
    if (begin != std::string_view::npos) charset = properties.substr(begin + kCharset.size());
    charset = charset.substr(0, charset.find_first_of(" ;\r\n"));
    if (!ornwhatsnew::CaseInsensitiveEqual(charset, "UTF-8") ||
        !std::ranges::all_of(sources_, orncore::string::IsWellFormedUTF8) ||
        !std::ranges::all_of(translations, orncore::string::IsWellFormedUTF8)) {
      throw CatalogError("is not in UTF-8; convert its PO file with 'msgconv --to-code=UTF-8'");
    }
  }

  std::string_view bytes_;
  bool isSwapped_ = false;
  std::vector<std::string_view> sources_;
};

/// Returns a copy of the catalog without its hash table. Boost.Locale would use the indexes in this
/// table without checking them. If there is no hash table, Boost.Locale creates its own.
std::vector<char> WithoutHashTable(std::string_view bytes) {
  std::vector<char> copy(bytes.begin(), bytes.end());
  std::memset(copy.data() + kHashSizeOffset, 0, sizeof(std::uint32_t));
  return copy;
}

/// Returns a locale with a facet that contains the messages of the catalog in UTF-8. Throws
/// `CatalogError` if Boost.Locale cannot read the catalog.
std::locale LoadMessages(std::string_view bytes) {
  boost::locale::gnu_gettext::messages_info info;
  info.encoding = "UTF-8";
  info.domains.emplace_back("catalog");
  // Boost.Locale looks for the file in several folders. Return the same bytes for each folder.
  info.paths.emplace_back("");
  info.callback = [bytes](const std::string&, const std::string&) {
    return WithoutHashTable(bytes);
  };
  try {
    // The locale owns the facet.
    return std::locale(std::locale::classic(),
                       boost::locale::gnu_gettext::create_messages_facet<char>(info));
  } catch (const std::runtime_error& error) {
    throw CatalogError(std::string("cannot be read: ") + error.what());
  }
}

}  // namespace

std::map<std::string, std::string, std::less<>> ParseGettextCatalog(std::string_view bytes) {
  const CatalogTables tables(bytes);
  const std::locale messages = LoadMessages(bytes);
  const auto& facet = std::use_facet<Facet>(messages);
  const int domain = facet.domain("catalog");
  std::map<std::string, std::string, std::less<>> texts;
  for (const std::string_view source : tables.Sources()) {
    const std::size_t contextEnd = source.find(kContextEnd);
    if (contextEnd == std::string_view::npos) continue;
    const std::string key(source.substr(0, contextEnd));
    const std::string defaultText(source.substr(contextEnd + 1));
    const char* const text = facet.get(domain, key.c_str(), defaultText.c_str());
    if (text == nullptr) throw CatalogError("has no translation of the key '" + key + "'");
    const auto [entry, isNew] = texts.emplace(key, text);
    if (!isNew && entry->second != text) {
      throw CatalogError("has two translations of the key '" + key + "'; remove one of them");
    }
  }
  return texts;
}

}  // namespace hosts::common
