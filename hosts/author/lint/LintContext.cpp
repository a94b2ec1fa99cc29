#include "hosts/author/lint/LintContext.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <orncore/string/SafeText.h>
#include <orncore/utility/MixHashGuid.h>
#include <ornwhatsnew/WhatsNewTypes.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "hosts/author/lint/NearestWord.h"
#include "hosts/author/lint/Rules.h"

namespace hosts::author {
namespace {

using ornwhatsnew::ColumnIndex;
using ornwhatsnew::DataColumn;
using ornwhatsnew::DataField;

/// The maximum number of different strings for which `NearestKey` searches, and the maximum number
/// of comparisons in all searches. Each search compares a string with the keys of all items. If
/// another search would exceed a limit, `NearestKey` returns `std::nullopt`. Without these limits,
/// a file with many unknown keys would take too long.
constexpr std::size_t kMaximumKeySearches = 500;
constexpr std::size_t kMaximumKeyComparisons = 200'000;

constexpr std::size_t kLongName = 30;

std::string Fingerprint(LintCode code, std::string_view content) {
  orncore::utility::GuidMixer mixer;
  mixer.Mix(InfoOf(code).name);
  mixer.Mix(std::string_view("\0", 1));
  mixer.Mix(content);
  return mixer.Result().AsUTF8String();
}

}  // namespace

Finding& LintContext::Add(LintCode code, std::string message, std::string_view content,
                          bool isInScope) {
  if (!isInScope || ++counts_[code] > kMaximumFindings) {
    ++omitted_[code].count;
    Finding& omitted = omittedOnLine_.emplace_back();
    omitted.code = code;
    return omitted;
  }
  Finding& finding = findings_.emplace_back();
  finding.file = file_.Name();
  finding.severity = InfoOf(code).severity;
  finding.code = code;
  finding.message = std::move(message);
  finding.fingerprint = Fingerprint(code, content);
  return finding;
}

void LintContext::StartLine(std::size_t line) {
  line_ = line;
  fieldFindings_ = {};
  // Keep only the edits. The number of findings that are not listed has no limit, so complete
  // findings could need too much memory.
  for (Finding& finding : omittedOnLine_) {
    if (finding.edit) omitted_[finding.code].edits.push_back(*std::move(finding.edit));
  }
  omittedOnLine_.clear();
}

std::vector<Finding> LintContext::TakeFindings() {
  StartLine(0);
  std::deque<Finding> findings = std::exchange(findings_, {});
  return {std::move_iterator(findings.begin()), std::move_iterator(findings.end())};
}

std::map<LintCode, OmittedFindings> LintContext::TakeOmitted() {
  return std::exchange(omitted_, {});
}

Finding& LintContext::Report(LintCode code, const LintRow& row, std::size_t begin, std::size_t end,
                             std::string message) {
  if (line_ != row.data.lineNumber) StartLine(row.data.lineNumber);
  const bool isInScope =
      scope_ == LintScope::kFile || row.data.lineNumber == file_.Rows().back().data.lineNumber;
  Finding& finding = Add(code, std::move(message), row.data.text, isInScope);
  finding.place = file_.PlaceOf(row, begin, end);
  return finding;
}

Finding& LintContext::ReportRow(LintCode code, const LintRow& row, std::string message) {
  return Report(code, row, 0, row.data.text.size(), std::move(message));
}

Finding& LintContext::ReportField(LintCode code, const LintRow& row, DataColumn column,
                                  std::string message) {
  return ReportPart(code, row, column, {}, std::move(message));
}

Finding& LintContext::ReportPart(LintCode code, const LintRow& row, DataColumn column,
                                 std::string_view part, std::string message) {
  const std::size_t index = ColumnIndex(column);
  const std::vector<DataField> fields = ornwhatsnew::FindDataFields(row.data.text);
  DataField range = index < fields.size() ? fields[index] : DataField{0, row.data.text.size(), {}};
  const std::string_view text = row.data.text.substr(range.begin, range.end - range.begin);
  // Search only for the start of a long part. The field in the file can contain quotes that `part`
  // does not contain, and a failed search for a long string can take quadratic time.
  constexpr std::size_t kSearchedBytes = 64;
  const std::size_t offset = part.empty() ? text.npos : text.find(part.substr(0, kSearchedBytes));
  if (offset != text.npos && text.substr(offset, part.size()) == part) {
    range.begin += offset;
    range.end = range.begin + part.size();
  }
  Finding& finding = Report(code, row, range.begin, range.end, std::move(message));
  finding.fieldNumber = index + 1;
  finding.fieldName = file_.ColumnName(index);
  fieldFindings_[index] = &finding;
  return finding;
}

Finding& LintContext::ReportFile(LintCode code, std::string message) {
  StartLine(0);
  return Add(code, std::move(message), {});
}

Finding& LintContext::ReportHost(LintCode code, const std::string& message) {
  StartLine(0);
  Finding& finding = Add(code, message, message);
  finding.file = host_->file;
  return finding;
}

RelatedPlace LintContext::Related(const LintRow& row, std::string message) const {
  return {file_.Name(), row.data.lineNumber, 1, std::move(message)};
}

Finding* LintContext::FindingOn(const LintRow& row, DataColumn column) {
  return line_ == row.data.lineNumber ? fieldFindings_[ColumnIndex(column)] : nullptr;
}

std::string LintContext::Column(DataColumn column) const {
  std::string name = file_.ColumnName(ColumnIndex(column));
  if (name.size() > kLongName) name.resize(std::min(name.find(" ("), name.size()));
  return "\"" + orncore::string::EscapeInvisible(name) + "\"";
}

bool LintContext::HasPlainVersion() {
  if (hasPlainVersion_) return *hasPlainVersion_;
  hasPlainVersion_ = std::ranges::any_of(file_.Rows(), [](const LintRow& row) {
    const std::string_view version = row.Value(DataColumn::kVersion);
    return row.change != nullptr && !version.empty() && IsPlainVersion(version);
  });
  return *hasPlainVersion_;
}

const common::BetaFeatureDescription* LintContext::FindFeature(std::string_view text) {
  if (host_ == nullptr) return nullptr;
  if (featuresByName_.empty()) {
    for (const common::BetaFeatureDescription& feature : host_->description.betaFeatures) {
      featuresByName_.emplace(ornwhatsnew::LowerCase8(feature.internalKey), &feature);
      featuresByName_.emplace(ornwhatsnew::LowerCase8(feature.name), &feature);
    }
  }
  const auto found = featuresByName_.find(ornwhatsnew::LowerCase8(text));
  return found == featuresByName_.end() ? nullptr : found->second;
}

std::optional<std::string> LintContext::NearestKey(const std::string& text) {
  // Do not apply the search limits to section keys, because `--fix` must correct them in every row.
  const std::string_view trimmed = TrimSpaces(text);
  for (const std::string_view key : {ornwhatsnew::kMiscKey, ornwhatsnew::kBugfixKey,
                                     ornwhatsnew::kInternalKey, ornwhatsnew::kUnreviewedKey}) {
    if (ornwhatsnew::CaseInsensitiveEqual(trimmed, key)) return std::string(key);
  }
  const auto found = nearestKeys_.find(text);
  if (found != nearestKeys_.end()) return found->second;
  const std::size_t searches = nearestKeys_.size() + 1;
  if (searches > kMaximumKeySearches || searches * file_.Items().size() > kMaximumKeyComparisons) {
    return std::nullopt;
  }
  std::vector<std::string_view> keys;
  for (const auto& [key, item] : file_.Items()) {
    if (!key.empty()) keys.push_back(key);
  }
  return nearestKeys_[text] = NearestWord(text, keys);
}

}  // namespace hosts::author
