#include "hosts/author/SpreadsheetReader.h"

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

#include <csv.h>

#include "hosts/author/ColumnNames.h"
#include "hosts/author/InputError.h"

namespace hosts::author {
namespace {

/// Removes the first line from `text` and returns it with its line ending. A line ends with LF, CR
/// or CR LF.
std::string_view CutFirstLine(std::string_view& text) {
  std::size_t end = text.find_first_of("\r\n");
  if (end == std::string_view::npos) return std::exchange(text, {});
  end += text.substr(end).starts_with("\r\n") ? 2U : 1U;
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end);
  return line;
}

std::string_view WithoutLineEnd(std::string_view line) {
  return line.substr(0, line.find_first_of("\r\n"));
}

/// Parses a table line by line with libcsv, which does not count lines itself.
class Parser {
 public:
  Parser(char separator, std::size_t firstLine) : line_(firstLine - 1) {
    // The strict mode reports misplaced quotes, which the lenient mode would keep as text.
    if (csv_init(&parser_, CSV_STRICT | CSV_STRICT_FINI) != 0) throw std::bad_alloc();
    csv_set_delim(&parser_, static_cast<unsigned char>(separator));
    // By default, libcsv removes the spaces around a field, and ignores lines of spaces.
    csv_set_space_func(&parser_, [](unsigned char) { return 0; });
    // By default, libcsv enlarges its buffer by 128 bytes at a time, and would copy a long field
    // many times.
    constexpr std::size_t kBufferGrowth = 65536;
    csv_set_blk_size(&parser_, kBufferGrowth);
  }
  ~Parser() { csv_free(&parser_); }
  Parser(const Parser&) = delete;
  Parser& operator=(const Parser&) = delete;

  void ParseLine(std::string_view line) {
    ++line_;
    if (isAtRowStart_) {
      if (WithoutLineEnd(line).empty()) return;
      cellLine_ = line_;
    }
    isAtRowStart_ = false;
    const std::size_t parsed =
        csv_parse(&parser_, line.data(), line.size(), &Parser::AddCell, &Parser::AddRow, this);
    if (exception_) std::rethrow_exception(exception_);
    if (parsed != line.size()) Fail(line_);
  }

  void Finish() {
    const int result = csv_fini(&parser_, &Parser::AddCell, &Parser::AddRow, this);
    if (exception_) std::rethrow_exception(exception_);
    // Report the line of the opening quote, because the parser cannot know on which line the
    // closing quote should be.
    if (result != 0) Fail(cellLine_);
  }

  std::vector<SpreadsheetRow>& Rows() { return rows_; }

 private:
  [[noreturn]] void Fail(std::size_t line) {
    if (csv_error(&parser_) != CSV_EPARSE) throw std::bad_alloc();
    throw InputError(line,
                     "a double quote is missing or misplaced; put double quotes around the whole "
                     "field, and double each quote inside it");
  }

  /// Calls `call`, and stores an exception that it throws. An exception must not pass through
  /// libcsv, which is C code.
  template <class Call>
  void Guard(Call call) noexcept {
    try {
      call();
    } catch (...) {
      exception_ = std::current_exception();
    }
  }

  static void AddCell(void* bytes, std::size_t size, void* self) noexcept {
    auto& parser = *static_cast<Parser*>(self);
    parser.Guard([&] {
      const auto* const text = static_cast<const char*>(bytes);
      parser.row_.push_back({std::string(text, size), parser.cellLine_});
    });
    parser.cellLine_ = parser.line_;
  }

  static void AddRow(int, void* self) noexcept {
    auto& parser = *static_cast<Parser*>(self);
    parser.Guard([&] { parser.rows_.push_back(std::exchange(parser.row_, {})); });
    parser.isAtRowStart_ = true;
  }

  csv_parser parser_{};
  std::size_t line_;
  std::size_t cellLine_ = 0;
  bool isAtRowStart_ = true;
  SpreadsheetRow row_;
  std::vector<SpreadsheetRow> rows_;
  std::exception_ptr exception_;
};

/// Parses the rows of `text`, which begins at the line `firstLine` of the file.
std::vector<SpreadsheetRow> ParseRows(std::string_view text, char separator,
                                      std::size_t firstLine) {
  Parser parser(separator, firstLine);
  while (!text.empty()) parser.ParseLine(CutFirstLine(text));
  parser.Finish();
  return std::move(parser.Rows());
}

/// Returns the first row of `text` that has values. Returns an empty row if there is none.
SpreadsheetRow ParseHeader(std::string_view text, char separator) {
  Parser parser(separator, 1);
  std::vector<SpreadsheetRow>& rows = parser.Rows();
  while (!text.empty()) {
    parser.ParseLine(CutFirstLine(text));
    if (text.empty()) parser.Finish();
    if (!rows.empty() && HasValues(rows.back())) return std::move(rows.back());
    rows.clear();
  }
  return {};
}

/// Returns how many cells of the header are column names of a data file. Returns -1 if the header
/// cannot be parsed with `separator`.
std::ptrdiff_t CountColumnNames(std::string_view text, char separator) {
  try {
    return std::ranges::count_if(ParseHeader(text, separator), [](const SpreadsheetCell& cell) {
      return FindColumn(cell.text).has_value();
    });
  } catch (const InputError&) {
    // With the wrong separator, the quotes of a correct row can seem to be misplaced.
    return -1;
  }
}

}  // namespace

bool HasValues(const SpreadsheetRow& row) {
  return std::ranges::any_of(row, [](const SpreadsheetCell& cell) { return !cell.text.empty(); });
}

Spreadsheet ReadSpreadsheet(std::string_view text) {
  constexpr std::string_view kSeparatorLine = "sep=";
  std::string_view rest = text;
  const std::string_view first = WithoutLineEnd(CutFirstLine(rest));
  if (first.starts_with(kSeparatorLine) && first.size() == kSeparatorLine.size() + 1 &&
      first.back() != '"') {
    return {first.back(), ParseRows(rest, first.back(), 2)};
  }
  char separator = ',';
  std::ptrdiff_t most = CountColumnNames(text, separator);
  for (const char candidate : {';', '\t'}) {
    const std::ptrdiff_t count = CountColumnNames(text, candidate);
    if (count > most) {
      separator = candidate;
      most = count;
    }
  }
  return {separator, ParseRows(text, separator, 1)};
}

}  // namespace hosts::author
