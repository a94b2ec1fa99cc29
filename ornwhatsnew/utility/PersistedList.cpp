#include <ornwhatsnew/utility/PersistedList.h>

#include <algorithm>
#include <utility>

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/range/iterator_range.hpp>

#include "ornwhatsnew/src/datafile/RunIterator.h"
#include "ornwhatsnew/src/rules/Keywords.h"

namespace ornwhatsnew {
namespace {

using BlankRuns = RunIterator<' '>;

// What the splitter makes of two places: the text between them.
struct Piece {
  Piece(BlankRuns begin, BlankRuns end)
      : text(begin.Position(), static_cast<std::size_t>(end.Position() - begin.Position())) {}

  std::string_view text;
};

std::vector<Piece> Split(std::string_view text) {
  std::vector<Piece> pieces;
  if (text.empty()) return pieces;
  const auto [begin, end] = RunsOf<' '>(text, text.data() + text.size());
  const auto isBlank = boost::algorithm::is_any_of(" ");
  // By reference, as the splitter copies its predicate for each piece.
  boost::algorithm::split(pieces, boost::make_iterator_range(begin, end),
                          [&isBlank](char c) { return isBlank(c); });
  return pieces;
}

// Grows `text` by the separator where one is due.
void AppendSeparator(UTF8String& text) {
  if (!text.empty()) text += ' ';
}

}  // namespace

const UTF8String kAllSeenItemsKey{keywords::kAllSeenItems};
const UTF8String kLastVersionSeenKey{keywords::kLastVersionSeen};
const UTF8String kAllVersionsSeenKey{keywords::kAllVersionsSeen};

std::vector<std::string_view> SplitPersistedList(std::string_view text) {
  const std::vector<Piece> pieces = Split(text);
  std::vector<std::string_view> views;
  views.reserve(pieces.size());
  for (const Piece& piece : pieces) views.push_back(piece.text);
  return views;
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
  const std::vector<Piece> pieces = Split(text);
  std::vector<Guid> guids;
  guids.reserve(pieces.size());
  for (const Piece& piece : pieces) guids.emplace_back(piece.text);
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
