#include "hosts/author/ColumnNames.h"

#include <cstddef>

#include <ornwhatsnew/utility/TextHelpers.h>

namespace hosts::author {
namespace {

using ornwhatsnew::DataColumn;
using ornwhatsnew::kDataColumnCount;
using ornwhatsnew::kDataColumns;

/// Returns `text` without white space at both ends, and with one space for each other sequence of
/// white space. The header cells of spreadsheets often contain line breaks.
std::string WithSingleSpaces(std::string_view text) {
  constexpr std::string_view kWhiteSpace = " \t\r\n\v\f";
  std::string result;
  for (const char c : text) {
    if (kWhiteSpace.find(c) == std::string_view::npos) {
      result += c;
    } else if (!result.empty() && result.back() != ' ') {
      result += ' ';
    }
  }
  if (result.ends_with(' ')) result.pop_back();
  return result;
}

}  // namespace

std::string QuotedHeader(DataColumn column) {
  return "'" + std::string(kDataColumns[ornwhatsnew::ColumnIndex(column)].header) + "'";
}

std::optional<DataColumn> FindColumn(std::string_view header) {
  const std::string name = WithSingleSpaces(header);
  for (std::size_t column = 0; column < kDataColumnCount; ++column) {
    if (ornwhatsnew::CaseInsensitiveEqual(name, kDataColumns[column].header) ||
        ornwhatsnew::CaseInsensitiveEqual(name, kShortColumnNames[column])) {
      return static_cast<DataColumn>(column);
    }
  }
  return std::nullopt;
}

bool IsTextColumn(DataColumn column) {
  return column == DataColumn::kDescription || column == DataColumn::kRatingRequest;
}

std::string LocalizedText(DataColumn column, std::string_view field) {
  const bool isLowerCased = kDataColumns[ornwhatsnew::ColumnIndex(column)].isLowerCased;
  return isLowerCased ? ornwhatsnew::LowerCase8(field) : std::string(field);
}

}  // namespace hosts::author
