// Fuzzes data files: checks their rows, the loaded list, and its panel.
//
// The input consists of a line of switches (see World.h) and the data file.
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

using ornwhatsnew::DataField;
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

void RequireFieldPositions(const DataRow& row) {
  const std::vector<DataField> fields = ornwhatsnew::FindDataFields(row.text);
  RequireEqual(fields.size(), row.fieldCount, "each field has a position");
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::size_t begin = fields[i].begin;
    Require(begin <= fields[i].end && fields[i].end <= row.text.size(), "a field is in its row");
    const bool isAfterComma = i > 0 && begin == fields[i - 1].end + 1 && row.text[begin - 1] == ',';
    Require(i == 0 ? begin == 0 : isAfterComma, "each field starts after its comma");
  }
}

void RequireSameRow(const DataRow& row, const std::string& text, Values& values) {
  RequireEqual(std::string(row.text), text, "a row has the same text as with Boost");
  const std::vector<std::string> fields = PlainFields(text);
  RequireEqual(row.fieldCount, fields.size(), "a row has the same number of fields as with Boost");
  std::copy_n(fields.begin(), std::min(fields.size(), values.size()), values.begin());
  if (row.kind == DataRowKind::kHeader && values[0].starts_with("\xEF\xBB\xBF")) {
    values[0].erase(0, 3);
  }
  for (std::size_t i = 0; i < values.size(); ++i) {
    RequireEqual(std::string(row.values[i]), values[i],
                 "a value equals the field that Boost returns");
  }
  RequireFieldPositions(row);
}

// Checks that the reader and Boost's tokenizer find the same rows and fields, and that
// `FindDataFields` finds the position of each field. Returns the number of change rows.
std::size_t RequireRowsEqualBoost(std::string_view text) {
  DataFileReader reader(text);
  Values values;
  std::size_t lines = 0;
  std::size_t changes = 0;
  for (const std::string& expected : PlainCut(std::string(text), "\n", "")) {
    const DataRow* const row = reader.Next();
    Require(row != nullptr, "no row is missing");
    RequireEqual(row->lineNumber, ++lines, "rows are numbered from 1");
    RequireSameRow(*row, expected, values);
    if (row->kind == DataRowKind::kChange) ++changes;
  }
  Require(reader.Next() == nullptr, "there is no extra row");
  return changes;
}

// Displays both lists, checks the panel and returns it. `seen` contains the identities that were
// stored when the lists were loaded.
PanelOutcome Display(ListPair& lists, unsigned options, const GuidSet& seen) {
  PanelOutcome panel = lists.Display(options);
  RequireWrittenOnce(lists.List(), options, seen, panel);
  RequireRunsInside(panel);
  return panel;
}

// Displays the lists, reloads them and rates each item. Checks that displayed changes are not new
// and that rated features need no rating. `seen` contains the identities that were stored when the
// lists were loaded.
void RequireRemembered(ListPair& lists, const std::string& text, unsigned options,
                       const GuidSet& seen) {
  Display(lists, options & ~kRatingView, seen);
  lists.Load(text);
  const unsigned onlyNew = (options & ~kRatingView) | kOnlyNew;
  Require(!lists.IsAnythingNew(onlyNew), "displayed changes are not new after a reload");
  RequireNoFeatureWritten(Display(lists, onlyNew, StoredIdentities(lists.Stored())));

  for (const std::string& key : lists.List().GetOrderedFeatureKeys()) lists.Rate(key);
  Require(!lists.IsAnythingNeedingRating(), "rated features need no rating");
  lists.Load(text);
  Require(!lists.IsAnythingNeedingRating(), "rated features need no rating after a reload");
}

void Run(Input input) {
  const bool checksReloads = input.HasSlowChecks();
  const std::string_view switches = input.ReadLine();
  // The reader receives the fuzzer's buffer, not a copy, so that AddressSanitizer detects reads
  // past its end.
  const std::size_t changeRows = RequireRowsEqualBoost(input.Rest());
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
  if (checksReloads) RequireRemembered(lists, text, world.Options(), seen);
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Run(fuzz::Input(data, size));
  return 0;
}
