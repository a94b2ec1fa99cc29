#include "hosts/author/lint/LintBaseline.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <vector>

#include <ornwhatsnew/utility/TextHelpers.h>

#include "hosts/author/lint/LintContext.h"

namespace hosts::author {
namespace {

using ornwhatsnew::DataColumn;
using ornwhatsnew::ExtractHashablePortion;
using ornwhatsnew::FeatureListDetail;
using ornwhatsnew::FeatureListItem;

LintRows Changes(const LintedFile& file) {
  LintRows changes;
  for (const LintRow& row : file.Rows()) {
    if (row.change != nullptr) changes.push_back(&row);
  }
  return changes;
}

std::string Identity(const LintRow& row) {
  return row.identity.AsUTF8String();
}

std::string IDsAndText(const LintRow& row) {
  const FeatureListDetail& change = *row.change;
  return change.GetJIRAEpicID() + '\0' + change.GetJIRAStoryBugTaskID() + '\0' +
         ExtractHashablePortion(change.GetDescription());
}

/// Returns the key of the change's item, or the grouping ID of an unmatched change. Without a host,
/// the changes of every feature are unmatched.
std::string ItemKey(const LintRow& row) {
  return row.IsUnmatched() ? row.change->GetJIRAEpicID() : row.item->FeatureJiraIDKey();
}

struct RowPair {
  const LintRow* before;
  const LintRow* after;
};

/// Pairs the changes of two files. `before` and `after` contain the changes that have no partner
/// yet.
struct Pairing {
  LintRows before;
  LintRows after;
  std::vector<RowPair> pairs;

  /// Pairs the changes for which `key` returns the same string, in file order.
  template <class Key>
  void PairBy(Key key) {
    std::map<std::string, LintRows> beforeByKey;
    for (auto row = before.rbegin(); row != before.rend(); ++row) {
      beforeByKey[key(**row)].push_back(*row);
    }
    std::erase_if(after, [&](const LintRow* row) {
      const auto found = beforeByKey.find(key(*row));
      if (found == beforeByKey.end() || found->second.empty()) return false;
      pairs.push_back({found->second.back(), row});
      found->second.pop_back();
      return true;
    });
    before.clear();
    for (const auto& [unused, rows] : beforeByKey) {
      before.insert(before.end(), rows.begin(), rows.end());
    }
    std::ranges::sort(before, {}, [](const LintRow* row) { return row->data.lineNumber; });
  }
};

/// Compares the changes of two files, and adds the findings to the context of the new file.
class Comparison {
 public:
  Comparison(LintContext& context, const LintedFile& before) : context_(context), before_(before) {
    pairing_.before = Changes(before);
    pairing_.after = Changes(context.File());
    pairing_.PairBy(Identity);
    // For users, two changes with the same identity are the same change.
    pairing_.pairs.clear();
    pairing_.PairBy(IDsAndText);
    pairing_.PairBy(ItemKey);
  }

  void Report() {
    for (const RowPair& pair : pairing_.pairs) ReportEdit(pair);
    for (const LintRow* const row : pairing_.after) ReportNew(*row);
    for (const LintRow* const row : pairing_.before) ReportVanished(*row);
    ReportRatings();
  }

 private:
  static bool IsShown(const LintRow& row) { return !row.change->GetDescription().empty(); }

  void ReportNew(const LintRow& row) {
    if (!IsShown(row)) return;
    context_.ReportRow(LintCode::kBaselineNew, row, "the change is new for every user");
  }

  void ReportVanished(const LintRow& row) {
    if (!IsShown(row)) return;
    Finding& finding = context_.ReportFile(LintCode::kBaselineVanished,
                                           "the change " + Quoted(row.change->GetDescription()) +
                                               " on line " + std::to_string(row.data.lineNumber) +
                                               " of the baseline was removed");
    finding.related.push_back(RelatedBefore(row));
  }

  /// Returns a part of a message: the name and the old value of each edited field on which the
  /// identity depends.
  std::string ChangedFields(const RowPair& pair) const {
    std::string text;
    for (std::size_t i = 0; i < ornwhatsnew::kDataColumnCount; ++i) {
      const std::string_view key = ornwhatsnew::kDataColumns[i].fieldKey;
      const auto column = static_cast<DataColumn>(i);
      if (column == DataColumn::kRatingRequest) continue;
      if (ExtractHashablePortion(pair.before->change->GetField(key)) ==
          ExtractHashablePortion(pair.after->change->GetField(key))) {
        continue;
      }
      const std::string_view value = pair.before->Value(column);
      text += (text.empty() ? "" : ", ") + context_.Column(column) + " was " +
              (value.empty() ? "empty" : Quoted(value));
    }
    return text;
  }

  void ReportEdit(const RowPair& pair) {
    if (!IsShown(*pair.before)) return ReportNew(*pair.after);
    if (!IsShown(*pair.after)) return ReportVanished(*pair.before);
    Finding& finding = context_.ReportRow(
        LintCode::kBaselineNewAgain, *pair.after,
        "users who saw the change see it as new, because it was edited: " + ChangedFields(pair));
    finding.related.push_back(RelatedBefore(*pair.before));
  }

  RelatedPlace RelatedBefore(const LintRow& row) const {
    return {before_.Name(), row.data.lineNumber, 1, "the row in the baseline"};
  }

  static bool HasRatingRequest(const FeatureListItem& item) {
    return std::ranges::any_of(item.GetAllChanges(), [](const auto& change) {
      return !change->GetRatingRequestOptional().empty();
    });
  }

  void ReportRatings() {
    std::map<std::string, const LintRow*> lastRequests;
    for (const LintRow& row : context_.File().Rows()) {
      const bool isRequest = row.change != nullptr && !row.item->IsSection() &&
                             !row.change->GetRatingRequestOptional().empty();
      if (isRequest) lastRequests[row.item->FeatureJiraIDKey()] = &row;
    }
    for (const auto& [key, row] : lastRequests) {
      const auto old = before_.Items().find(key);
      if (old == before_.Items().end() || !HasRatingRequest(*old->second)) continue;
      if (old->second->GetItemRatedGuid() == row->item->GetItemRatedGuid()) continue;
      context_.ReportField(LintCode::kBaselineRatedAgain, *row, DataColumn::kRatingRequest,
                           "users who rated the feature " + Quoted(key) +
                               " are asked to rate it again, because its rating requests changed");
    }
  }

  LintContext& context_;
  const LintedFile& before_;
  Pairing pairing_;
};

}  // namespace

LintReport CompareWithBaseline(const std::string& name, std::string_view text,
                               const std::string& oldName, std::string_view oldText,
                               const LintHost* host) {
  LintedFile after(name, text);
  const LintedFile before(oldName, oldText);
  LintContext context(after, host);
  Comparison(context, before).Report();
  LintReport report;
  report.findings = context.TakeFindings();
  report.omitted = context.TakeOmitted();
  if (host == nullptr) {
    report.notJudged.insert("without --host, rating requests are not compared with the baseline");
  }
  return report;
}

}  // namespace hosts::author
