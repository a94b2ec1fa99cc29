#include <ornwhatsnew/utility/PersistedList.h>

#include <algorithm>
#include <utility>

#include "ornwhatsnew/src/rules/Keywords.h"

namespace ornwhatsnew {
namespace {

// Grows `text` by the separator where one is due.
void AppendSeparator(UTF8String& text) {
  if (!text.empty()) text += ' ';
}

}  // namespace

const UTF8String kAllSeenItemsKey{keywords::kAllSeenItems};
const UTF8String kLastVersionSeenKey{keywords::kLastVersionSeen};
const UTF8String kAllVersionsSeenKey{keywords::kAllVersionsSeen};

std::vector<std::string_view> SplitPersistedList(std::string_view text) {
  std::vector<std::string_view> pieces;
  if (text.empty()) return pieces;
  std::size_t begin = 0;
  while (begin <= text.size()) {
    const std::size_t end = std::min(text.find(' ', begin), text.size());
    pieces.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return pieces;
}

UTF8String JoinPersistedList(std::vector<std::string_view> pieces) {
  std::sort(pieces.begin(), pieces.end());
  pieces.erase(std::unique(pieces.begin(), pieces.end()), pieces.end());
  UTF8String text;
  for (const std::string_view piece : pieces) {
    AppendSeparator(text);
    text += piece;
  }
  return text;
}

IdentitySet ParseGuidList(std::string_view text) {
  const std::vector<std::string_view> pieces = SplitPersistedList(text);
  std::vector<Guid> guids;
  guids.reserve(pieces.size());
  for (const std::string_view piece : pieces) guids.emplace_back(piece);
  return IdentitySet(std::move(guids));
}

UTF8String FormatGuidList(const IdentitySet& some, const IdentitySet& others,
                          const IdentitySet& more) {
  IdentitySet all = some;
  all.insert(others);
  all.insert(more);

  UTF8String text;
  text.reserve(all.size() * (Guid::kTextLength + 1));
  // The order of the bytes is the order of their texts.
  for (const Guid& guid : all) {
    AppendSeparator(text);
    guid.AppendTo(text);
  }
  return text;
}

}  // namespace ornwhatsnew
