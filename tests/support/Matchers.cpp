#include "tests/support/Matchers.h"

#include <algorithm>
#include <memory>
#include <stdexcept>

#include <ornwhatsnew/utility/PersistedList.h>

namespace test_support {

using namespace ornwhatsnew;
using orncore::string::UTF16to8;
using orncore::string::UTF8to16;

namespace {

const std::vector<StyleRun>& RunsOf(const StyleRunMap& runs, StyleID style) {
  static const std::vector<StyleRun> kNone;
  const auto found = runs.find(style);
  return found == runs.end() ? kNone : found->second;
}

std::string PieceOf(const std::string& text, const StyleRun& run) {
  const auto [start, length] = run.first;
  if (start < 0 || length < 0) throw std::logic_error("a style run has a negative start or length");
  return text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(length));
}

}  // namespace

std::vector<std::string> KeyOrder(const FeatureListData& list) {
  const auto& keys = list.GetOrderedFeatureKeys();
  return {keys.begin(), keys.end()};
}

const FeatureListItem& ItemOf(const FeatureListData& list, std::string_view key) {
  const auto found = list.GetFeatureItems().find(std::string(key));
  if (found == list.GetFeatureItems().end() || !found->second) {
    throw std::logic_error("no item has the key '" + std::string(key) + "'");
  }
  return *found->second;
}

std::vector<std::string> ChangeDescriptions(const FeatureListItem& item) {
  std::vector<std::string> descriptions;
  for (const auto& change : item.GetAllChanges()) descriptions.push_back(change->GetDescription());
  return descriptions;
}

std::vector<std::string> SortedPieces(std::string_view persistedList) {
  const auto views = SplitPersistedList(persistedList);
  std::vector<std::string> pieces(views.begin(), views.end());
  std::ranges::sort(pieces);
  return pieces;
}

std::vector<std::string> Display::Pieces(StyleID style) const {
  std::vector<std::string> pieces;
  for (const StyleRun& run : RunsOf(runs, style)) pieces.push_back(PieceOf(text, run));
  return pieces;
}

std::vector<std::string> Display::Strings(StyleID style) const {
  std::vector<std::string> strings;
  for (const StyleRun& run : RunsOf(runs, style)) strings.push_back(UTF16to8(run.second));
  return strings;
}

Display Format(FeatureListData& list, DisplayOptions options, std::string_view ratingPlaceholder) {
  Display display;
  const auto ratingItems = std::make_shared<RatingMap>();
  display.text = UTF16to8(list.GetFormattedTextForDisplay(options, UTF8to16(ratingPlaceholder),
                                                          display.runs, ratingItems));
  display.ratingItems = *ratingItems;
  return display;
}

}  // namespace test_support
