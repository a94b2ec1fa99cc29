#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <orncore/string/Conversion.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "hosts/author/lint/NearestWord.h"
#include "hosts/author/lint/Rules.h"

namespace hosts::author {
namespace {

using ornwhatsnew::CaseInsensitiveEqual;
using ornwhatsnew::DataColumn;

/// The length of a date such as 03.04.2025.
constexpr std::size_t kDateLength = 10;

/// Returns the first component of `version` for which `predicate` returns true. Returns
/// `std::nullopt` if there is none. Dots separate the components, which can be empty.
template <class Predicate>
std::optional<std::string_view> FindComponent(std::string_view version, Predicate predicate) {
  for (std::size_t begin = 0; begin <= version.size();) {
    const std::size_t end = std::min(version.find('.', begin), version.size());
    const std::string_view component = version.substr(begin, end - begin);
    if (predicate(component)) return component;
    begin = end + 1;
  }
  return std::nullopt;
}

void CheckPrefix(LintContext& context, const LintRow& row) {
  for (const DataColumn column : {DataColumn::kVersion, DataColumn::kFirstVersion}) {
    const std::string_view text = row.Value(column);
    const std::size_t prefix = VersionPrefixLength(text);
    if (prefix == 0) continue;
    context.ReportField(LintCode::kVersionPrefix, row, column,
                        "users see " + Quoted("v" + std::string(text)) +
                            ", because the panel adds a v; write " + Quoted(text.substr(prefix)));
  }
}

void CheckComma(LintContext& context, const LintRow& row) {
  for (const DataColumn column : {DataColumn::kVersion, DataColumn::kFirstVersion}) {
    const std::string_view text = row.Value(column);
    const std::string version = VersionWithDots(text);
    if (version.empty()) continue;
    context.ReportField(
        LintCode::kDecimalComma, row, column,
        "users see " + Quoted("v" + std::string(text)) + " with a comma; write " + Quoted(version));
  }
}

/// Returns whether the components of `text` are numbers and at least one placeholder, as in "4.x".
/// The first component must be a number.
bool HasPlaceholder(std::string_view text) {
  if (text.find_first_of("xX*") == text.npos || !IsDigit(text.front())) return false;
  const auto isOther = [](std::string_view part) {
    return part != "*" && !CaseInsensitiveEqual(part, "x") && !std::ranges::all_of(part, IsDigit);
  };
  return !FindComponent(text, isOther);
}

void CheckPlaceholder(LintContext& context, const LintRow& row) {
  // If the field in column 6 is not empty, `CheckBounds` reports the placeholder as a component
  // that is not a number.
  if (!row.Value(DataColumn::kFirstVersion).empty()) return;
  const std::string_view text = row.Value(DataColumn::kVersion);
  if (!HasPlaceholder(text)) return;
  context.ReportField(LintCode::kVersionPlaceholder, row, DataColumn::kVersion,
                      "users see " + Quoted("v" + std::string(text)) +
                          "; write the version that introduced the change");
}

// ---- dates

constexpr auto kMonths = std::to_array<std::string_view>(
    {"jan", "feb", "mar", "apr", "may", "jun", "jul", "aug", "sep", "oct", "nov", "dec", "mai",
     "okt", "dez", "mrz", "m\xC3\xA4r"});

/// Returns whether `text` begins with the short name of a month. Returns false for a longer word,
/// as in "Mars 1", which can be the name of a version.
bool BeginsWithMonth(std::string_view text) {
  static constexpr std::string_view kAfterMonth = "-. /0123456789";
  return std::ranges::any_of(kMonths, [text](std::string_view month) {
    return CaseInsensitiveEqual(text.substr(0, month.size()), month) &&
           (text.size() == month.size() || kAfterMonth.find(text[month.size()]) != text.npos);
  });
}

/// Returns whether `text` begins with a number and the short name of a month, as in "3-Apr". Also
/// returns true if `text` begins with the short name of a month and contains a digit, as in
/// "Apr-03".
bool HasMonthAndNumber(std::string_view text) {
  if (!std::ranges::any_of(text, IsDigit)) return false;
  if (BeginsWithMonth(text)) return true;
  const std::size_t afterNumber = text.find_first_not_of("0123456789");
  const std::size_t word = text.find_first_not_of("-. /", afterNumber);
  return IsDigit(text.front()) && word != text.npos && BeginsWithMonth(text.substr(word));
}

/// Returns whether `text` has the form of `pattern`, in which each 9 matches any digit.
bool HasForm(std::string_view text, std::string_view pattern) {
  return std::ranges::equal(text, pattern, [](char c, char expected) {
    return expected == '9' ? IsDigit(c) : c == expected;
  });
}

/// Returns whether `text` is a date as spreadsheet programs write it. For an ISO date, returns true
/// only if `hasPlainVersion` is true, which means that another version consists of digits and
/// dots. Otherwise, the application may use ISO dates as versions.
bool IsDate(std::string_view text, bool hasPlainVersion) {
  static constexpr auto kForms = std::to_array<std::string_view>(
      {"99/99/9999", "9/99/9999", "99/9/9999", "9/9/9999", "99/99/99", "99.99.9999", "9999/99/99"});
  const bool isForm =
      std::ranges::any_of(kForms, [text](std::string_view form) { return HasForm(text, form); });
  const bool isISODate = HasForm(text.substr(0, 10), "9999-99-99");
  return isForm || (isISODate && hasPlainVersion) || HasMonthAndNumber(text);
}

void CheckDate(LintContext& context, const LintRow& row) {
  for (const DataColumn column : {DataColumn::kVersion, DataColumn::kFirstVersion}) {
    CheckVersionDate(context, row, column);
  }
}

/// Checks the versions for mistakes in their form.
void CheckForm(LintContext& context, const LintRow& row) {
  // Return early, because most versions consist of digits and dots. The form of such a version is
  // wrong only if it is a date, which has `kDateLength` characters.
  const auto isCorrect = [&row](DataColumn column) {
    return IsPlainVersion(row.Value(column)) && row.Value(column).size() != kDateLength;
  };
  if (isCorrect(DataColumn::kVersion) && isCorrect(DataColumn::kFirstVersion)) return;
  CheckPrefix(context, row);
  CheckComma(context, row);
  CheckPlaceholder(context, row);
  CheckDate(context, row);
}

// ---- bounds

/// When the library compares versions, a component has this many times the weight of the next
/// component.
constexpr std::int64_t kWeight = 1000;

/// Returns the number that `component` contains. Returns `std::nullopt` if it is not a number below
/// 1000.
std::optional<std::int64_t> SmallNumber(std::string_view component) {
  std::int64_t number = 0;
  const bool isSmall = std::ranges::all_of(component, IsDigit) &&
                       orncore::string::StringToNumber(component, number) && number < kWeight;
  return isSmall ? std::optional(number) : std::nullopt;
}

/// Reports the version in `column` if the library cannot compare it correctly. Returns whether the
/// function has reported the version.
bool CheckComparison(LintContext& context, const LintRow& row, DataColumn column) {
  const std::string_view version = row.Value(column);
  const std::string mistake = ComparisonMistake(version);
  if (mistake.empty()) return false;
  const auto wrong =
      FindComponent(version, [](std::string_view component) { return !SmallNumber(component); });
  context.ReportField(LintCode::kBoundsNumber, row, column,
                      wrong ? "the component " + Quoted(*wrong) +
                                  " is not a number from 0 to 999, so the wrong users see the "
                                  "change; write a number in this range"
                            : Quoted(version) + " " + mistake +
                                  ", so the wrong users see the change; write at most six "
                                  "components");
  return true;
}

void CheckBounds(LintContext& context, const LintRow& row) {
  const std::string_view first = row.Value(DataColumn::kFirstVersion);
  const std::string_view version = row.Value(DataColumn::kVersion);
  if (first.empty() || context.HasFinding(row, DataColumn::kFirstVersion) ||
      context.HasFinding(row, DataColumn::kVersion)) {
    return;
  }
  if (version.empty()) {
    context.ReportField(LintCode::kBoundsNoVersion, row, DataColumn::kVersion,
                        "the change has no version, so a panel that is filtered by version never "
                        "shows it; write the version that introduced the change into " +
                            context.Column(DataColumn::kVersion));
    return;
  }
  if (CheckComparison(context, row, DataColumn::kVersion) ||
      CheckComparison(context, row, DataColumn::kFirstVersion)) {
    return;
  }
  if (CountVersionComponents(first) != CountVersionComponents(version)) {
    context.ReportField(LintCode::kBoundsComponents, row, DataColumn::kFirstVersion,
                        Quoted(first) + " and " + Quoted(version) +
                            " have different numbers of components, so the wrong users see the "
                            "change; write full versions in both columns");
    return;
  }
  if (ornwhatsnew::VersionNumber(first) < ornwhatsnew::VersionNumber(version)) return;
  context.ReportField(LintCode::kBoundsOrder, row, DataColumn::kFirstVersion,
                      Quoted(first) + " is not earlier than " + Quoted(version) +
                          ", so a panel that is filtered by version never shows the change; write "
                          "the first relevant version");
}

void CheckMissingVersion(LintContext& context, const LintRow& row) {
  const bool isNeeded = row.Value(DataColumn::kVersion).empty() &&
                        !row.change->GetDescription().empty() &&
                        row.Value(DataColumn::kFirstVersion).empty();
  if (!isNeeded) return;
  context.ReportField(LintCode::kVersionMissing, row, DataColumn::kVersion,
                      "the change is shown without a version; write the version into " +
                          context.Column(DataColumn::kVersion));
}

constexpr ChangeRule kVersionRules[] = {CheckForm, CheckBounds, CheckMissingVersion};

}  // namespace

bool IsPlainVersion(std::string_view version) {
  return std::ranges::all_of(version, [](char c) { return c == '.' || IsDigit(c); });
}

std::size_t VersionPrefixLength(std::string_view text) {
  const std::size_t digit = text.find_first_of("0123456789");
  if (digit == text.npos) return 0;
  std::string_view prefix = TrimSpaces(text.substr(0, digit));
  if (prefix.ends_with('.')) prefix.remove_suffix(1);
  const bool isPrefix =
      CaseInsensitiveEqual(prefix, "v") || CaseInsensitiveEqual(prefix, "version");
  return isPrefix ? digit : 0;
}

void CheckVersionDate(LintContext& context, const LintRow& row, DataColumn column) {
  const std::string_view text = row.Value(column);
  if (!IsDate(TrimSpaces(text), context.HasPlainVersion())) return;
  context.ReportField(LintCode::kVersionDate, row, column,
                      "users see the date " + Quoted(text) +
                          " as the version; format the column as text, and write the version");
}

std::string VersionWithDots(std::string_view text) {
  if (text.find(',') == text.npos) return "";
  std::string version(TrimSpaces(text));
  if (version.find_first_not_of("0123456789,.") != version.npos) return "";
  std::ranges::replace(version, ',', '.');
  const auto isEmpty = [](std::string_view part) { return part.empty(); };
  return FindComponent(version, isEmpty) ? "" : version;
}

std::size_t CountVersionComponents(std::string_view version) {
  return static_cast<std::size_t>(std::ranges::count(version, '.')) + 1;
}

std::optional<std::vector<std::int64_t>> VersionNumbers(std::string_view version) {
  std::vector<std::int64_t> numbers;
  const auto isOther = [&numbers](std::string_view part) {
    return !orncore::string::StringToNumber(part, numbers.emplace_back());
  };
  if (FindComponent(version, isOther)) return std::nullopt;
  return numbers;
}

std::string ComparisonMistake(std::string_view version) {
  constexpr std::int64_t kMaximum = std::numeric_limits<std::int64_t>::max();
  std::int64_t number = 0;
  const char* mistake = "";
  FindComponent(version, [&](std::string_view component) {
    const std::optional<std::int64_t> small = SmallNumber(component);
    if (!small) {
      mistake = "has a component that is not a number from 0 to 999";
    } else if (number > (kMaximum - *small) / kWeight) {
      mistake = "has too many components";
    } else {
      number = kWeight * number + *small;
      return false;
    }
    return true;
  });
  return mistake;
}

std::span<const ChangeRule> VersionRules() {
  return kVersionRules;
}

}  // namespace hosts::author
