// Fuzzes the import of spreadsheets and the addition of a change to a data file.
//
// The input consists of a line with two switches and of the bytes of a file. If the second switch
// is even, the file is a spreadsheet, and the first switch selects its encoding. If the second
// switch is odd, the file is a data file, and the line of switches is also the text of the new
// change.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <orncore/string/Conversion.h>
#include <ornwhatsnew/DataFileReader.h>

#include "fuzz/Input.h"
#include "fuzz/Property.h"
#include "hosts/author/CellText.h"
#include "hosts/author/ColumnNames.h"
#include "hosts/author/DataFileWriter.h"
#include "hosts/author/InputError.h"
#include "hosts/author/SpreadsheetImport.h"
#include "hosts/author/SpreadsheetReader.h"
#include "hosts/author/TextEncoding.h"

namespace fuzz {
namespace {

using namespace hosts::author;
using ornwhatsnew::ColumnIndex;
using ornwhatsnew::DataColumn;
using ornwhatsnew::DataFileReader;
using ornwhatsnew::DataRow;
using ornwhatsnew::DataRowKind;

void RequireSameFields(const SpreadsheetRow& header, const SpreadsheetRow& cells,
                       const DataRow& row) {
  DataFields expected;
  for (std::size_t i = 0; i < std::min(header.size(), cells.size()); ++i) {
    const std::optional<DataColumn> column = FindColumn(header[i].text);
    if (!column) continue;
    expected[ColumnIndex(*column)] =
        IsTextColumn(*column) ? ConvertText(cells[i].text).text : cells[i].text;
  }
  Require(row.kind == DataRowKind::kChange || row.kind == DataRowKind::kChangesSince,
          "the library skips no row of an imported table");
  for (std::size_t column = 0; column < expected.size(); ++column) {
    RequireEqual(std::string(row.values[column]), expected[column],
                 "the library reads the fields of the table");
  }
}

void RequireSameRows(const Spreadsheet& table, const std::string& dataFile) {
  DataFileReader reader(dataFile);
  const auto header = std::ranges::find_if(table.rows, HasValues);
  Require(header != table.rows.end(), "a table without rows is an error");
  Require(reader.Next()->kind == DataRowKind::kHeader, "the first row is the header");
  for (auto cells = std::next(header); cells != table.rows.end(); ++cells) {
    if (HasValues(*cells)) RequireSameFields(*header, *cells, *reader.Next());
  }
  const DataRow* const last = reader.Next();
  Require(last != nullptr && last->text.empty() && reader.Next() == nullptr,
          "the data file has no other rows");
}

void Import(std::string_view bytes, const std::optional<std::string>& encoding) {
  try {
    const DecodedText decoded = DecodeText(bytes, encoding);
    Require(orncore::string::IsWellFormedUTF8(decoded.text), "decoded text is valid UTF-8");
    const Spreadsheet table = ReadSpreadsheet(decoded.text);
    Require(std::ranges::none_of(table.rows, &SpreadsheetRow::empty), "each row has a cell");
    const ImportResult result = ImportSpreadsheet(table);
    if (result.errors.empty()) RequireSameRows(table, result.dataFile);
  } catch (const InputError& error) {
    Require(std::string_view(error.what()).size() > 10, "an error has a message");
  }
}

void Add(std::string_view dataFile, std::string_view text) {
  DataFields fields;
  fields[ColumnIndex(DataColumn::kGroupingID)] = "MISC";
  fields[ColumnIndex(DataColumn::kDescription)] = text;
  std::string extended;
  try {
    extended = AppendChange(dataFile, fields);
  } catch (const OptionError&) {
    return;
  } catch (const InputError&) {
    return;
  }
  Require(extended.starts_with(dataFile), "the old content does not change");
  DataFileReader before(dataFile);
  DataFileReader after(extended);
  std::size_t added = 0;
  bool isOldRow = true;
  while (const DataRow* const row = after.Next()) {
    const DataRow* const old = isOldRow ? before.Next() : nullptr;
    isOldRow = old != nullptr && old->text == row->text && old->kind == row->kind;
    if (!isOldRow && row->kind == DataRowKind::kChange) {
      ++added;
      RequireEqual(std::string(row->Value(DataColumn::kDescription)), std::string(text),
                   "the new change has the text");
    }
  }
  RequireEqual(added, std::size_t{1}, "exactly one change is added");
}

void Run(Input input) {
  const std::string_view line = input.ReadLine();
  if (Switch(line, 1) % 2 == 1) return Add(input.Rest(), line);
  constexpr std::array kEncodings = {"UTF-8", "UTF-16LE", "windows-1252", "Shift_JIS", "UTF-7"};
  const std::size_t encoding = Switch(line, 0) & 0x1FU;
  Import(input.Rest(), encoding < kEncodings.size()
                           ? std::optional<std::string>(kEncodings[encoding])
                           : std::nullopt);
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Run(fuzz::Input(data, size));
  return 0;
}
