// Entry point: the data file, through a complete list and its panel.
//
// Input: a line of switches (see World.h), then the data file.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <ornwhatsnew/DataFileReader.h>

#include "fuzz/Input.h"
#include "fuzz/ListPair.h"
#include "fuzz/PanelProperties.h"
#include "fuzz/Property.h"
#include "fuzz/World.h"
#include "tests/support/PlainText.h"

namespace fuzz {
namespace {

using ornwhatsnew::DataFileReader;
using ornwhatsnew::DataRow;
using ornwhatsnew::DataRowKind;
using ornwhatsnew::GuidSet;
using test_support::PanelOutcome;
using test_support::PlainCut;
using test_support::PlainFields;

constexpr unsigned kOnlyNew = 0x01;
constexpr unsigned kRatingView = 0x10;

using Values = std::array<std::string, ornwhatsnew::kDataColumnCount>;

void RequireFieldPlaces(const DataRow& row) {
  const std::size_t places = std::min(row.fieldCount, row.fieldOffsets.size());
  for (std::size_t i = 0; i < places; ++i) {
    const std::size_t offset = row.fieldOffsets[i];
    const bool isBehindComma = i > 0 && offset > row.fieldOffsets[i - 1] &&
                               offset <= row.text.size() && row.text[offset - 1] == ',';
    Require(i == 0 ? offset == 0 : isBehindComma, "a field begins behind its comma");
  }
}

void RequireSameRow(const DataRow& row, const std::string& text, Values& values) {
  RequireEqual(std::string(row.text), text, "a row is cut as Boost alone cuts it");
  const std::vector<std::string> fields = PlainFields(text);
  RequireEqual(row.fieldCount, fields.size(), "a row has as many fields as Boost alone finds");
  std::copy_n(fields.begin(), std::min(fields.size(), values.size()), values.begin());
  if (row.kind == DataRowKind::kHeader && values[0].starts_with("\xEF\xBB\xBF")) {
    values[0].erase(0, 3);
  }
  for (std::size_t i = 0; i < values.size(); ++i) {
    RequireEqual(std::string(row.values[i]), values[i], "a value is what Boost alone cuts out");
  }
  RequireFieldPlaces(row);
}

// Returns the number of change rows.
std::size_t RequireCutLikeBoost(std::string_view text) {
  DataFileReader reader(text);
  Values values;
  std::size_t lines = 0;
  std::size_t changes = 0;
  for (const std::string& expected : PlainCut(std::string(text), "\n", "")) {
    const DataRow* const row = reader.Next();
    Require(row != nullptr, "no row is left out");
    RequireEqual(row->lineNumber, ++lines, "rows are numbered from 1");
    RequireSameRow(*row, expected, values);
    if (row->kind == DataRowKind::kChange) ++changes;
  }
  Require(reader.Next() == nullptr, "no row is made up");
  return changes;
}

// Makes one display call. `seen` was stored when the lists were loaded.
PanelOutcome Display(ListPair& lists, unsigned options, const GuidSet& seen) {
  PanelOutcome panel = lists.Display(options);
  RequireWrittenOnce(lists.List(), options, seen, panel);
  RequireRunsInside(panel);
  return panel;
}

// After a reload, displayed changes are not new and rated features need no rating.
void RequireRemembered(ListPair& lists, const std::string& text, unsigned options,
                       const GuidSet& seen) {
  Display(lists, options & ~kRatingView, seen);
  lists.Load(text);
  const unsigned onlyNew = (options & ~kRatingView) | kOnlyNew;
  Require(!lists.IsAnythingNew(onlyNew), "nothing is new that was displayed before a reload");
  RequireNoFeatureWritten(Display(lists, onlyNew, StoredIdentities(lists.Stored())));

  for (const std::string& key : lists.List().GetOrderedFeatureKeys()) lists.Rate(key);
  Require(!lists.IsAnythingNeedingRating(), "nothing needs rating when all is rated");
  lists.Load(text);
  Require(!lists.IsAnythingNeedingRating(), "nothing needs rating when all was rated");
}

void Run(Input input) {
  const std::string_view switches = input.TakeLine();
  // The reader gets the bytes without a copy, so that a sanitizer finds a read past their end.
  const std::size_t changeRows = RequireCutLikeBoost(input.Rest());
  const std::string text(input.Rest());

  World world(switches);
  ListPair lists(world);
  const GuidSet seen = StoredIdentities(lists.Stored());
  lists.Load(text);
  RequireKeysOnce(lists.List());
  RequireChangesOnce(lists.List(), changeRows);

  lists.IsAnythingNew(world.Options());
  lists.IsAnythingNeedingRating();
  Display(lists, world.Options(), seen);
  RequireRemembered(lists, text, world.Options(), seen);
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Run(fuzz::Input(data, size));
  return 0;
}
