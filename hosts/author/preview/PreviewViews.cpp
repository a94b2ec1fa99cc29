#include "hosts/author/preview/PreviewViews.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string_view>
#include <utility>

#include <orncore/string/Conversion.h>
#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/VisibilityExplanation.h>
#include <ornwhatsnew/WhatsNewTypes.h>

#include "hosts/author/lint/Rules.h"
#include "hosts/common/StateStore.h"

namespace hosts::author {
namespace {

using ornwhatsnew::DisplayOptions;
using ornwhatsnew::FeatureListData;
using ornwhatsnew::LayoutParagraph;
using ornwhatsnew::ParagraphKind;

// The filters that the host guide recommends for the badge and the panel.
constexpr DisplayOptions kRelevant =
    ornwhatsnew::kFilterRelevantPlatform | ornwhatsnew::kFilterRelevantVersion;

using Lines = std::vector<std::size_t>;
/// Maps the key of each item to the line numbers of its shown changes.
using ShownLinesByKey = std::map<std::string_view, Lines>;

/// A user of the application: the description of the user's host, and the user's state.
struct User {
  common::HostDescription host;
  common::StateValues state = {};
};

/// Returns the full version of the application. Returns an empty string if the host has neither a
/// version nor a build number.
std::string FullVersion() {
  const std::string version = orncore::string::UTF16to8(ornwhatsnew::GetFullClientVersionString());
  return version == "." ? "" : version;
}

/// Returns a list with the changes of `data` and the state of `user`. `user` must outlive the list.
/// Configures the services of the process.
std::unique_ptr<FeatureListData> LoadList(const std::string& data, User& user) {
  common::InstallHost(user.host);
  return std::make_unique<FeatureListData>(
      data, [&user](const std::string& key) { return user.state[key]; },
      [&user](const std::string& key, const std::string& value) { user.state[key] = value; });
}

/// Returns the line numbers of the changes that a display shows. `changes` contains all changes of
/// the list.
ShownLinesByKey ShownLines(const FeatureListData& list, const DisplayOptions& options,
                           const RowsByKey& changes) {
  ShownLinesByKey shown;
  for (const ornwhatsnew::ItemVisibility& explained : list.ExplainVisibility(options)) {
    const auto found = changes.find(explained.item->FeatureJiraIDKey());
    if (found == changes.end() || !explained.hidingRules.empty()) continue;
    Lines& lines = shown[found->first];
    for (std::size_t i = 0; i < found->second.size(); ++i) {
      if (explained.changes[i].hidingRules.empty()) {
        lines.push_back(found->second[i]->data.lineNumber);
      }
    }
  }
  return shown;
}

/// Sets `paragraphIDs` and `idsByLine` of `view`. `shown` contains the line numbers of the changes
/// that the panel shows.
void SetIDs(PreviewView& view, const ShownLinesByKey& shown) {
  const std::vector<LayoutParagraph>& paragraphs = view.layout.paragraphs;
  view.paragraphIDs.resize(paragraphs.size());
  std::map<std::string_view, std::size_t> changesSoFar;
  Lines withoutText;
  for (std::size_t i = 0; i < paragraphs.size(); ++i) {
    const LayoutParagraph& paragraph = paragraphs[i];
    const bool isRating = paragraph.kind == ParagraphKind::kRatingRequest;
    Lines lines = isRating ? std::exchange(withoutText, {}) : Lines();
    if (paragraph.kind == ParagraphKind::kChange) {
      const auto found = shown.find(paragraph.itemKey);
      const std::size_t number = changesSoFar[paragraph.itemKey]++;
      // If an item occurs twice in the panel, links lead to the first occurrence.
      if (found == shown.end() || number >= found->second.size()) continue;
      // A change without text is visible only through the rating request after it. Links to the
      // change lead to this rating request.
      (paragraph.spans.empty() ? withoutText : lines).push_back(found->second[number]);
    }
    if (lines.empty()) continue;
    view.paragraphIDs[i] = view.id + "-line-" + std::to_string(lines.front());
    for (const std::size_t line : lines) view.idsByLine[line] = view.paragraphIDs[i];
  }
}

/// Returns the highest version of a change in `file` that is not later than `current`. Before the
/// comparison, omits components that `current` does not have. In the result, missing components are
/// 0. Returns `current` if there is no such version, or if a component of `current` is not a
/// number.
std::string NewestVersion(const LintedFile& file, const std::string& current) {
  const auto running = VersionNumbers(current);
  if (!running) return current;
  std::vector<std::int64_t> newest;
  for (const LintRow& row : file.Rows()) {
    auto numbers = VersionNumbers(row.Value(ornwhatsnew::DataColumn::kVersion));
    if (row.change == nullptr || !numbers) continue;
    numbers->resize(std::min(numbers->size(), running->size()));
    if (*numbers <= *running) newest = std::max(newest, *numbers);
  }
  if (newest.empty()) return current;
  newest.resize(running->size());
  std::string version;
  for (const std::int64_t number : newest) {
    version += (version.empty() ? "" : ".") + std::to_string(number);
  }
  return version;
}

class ViewMaker {
 public:
  ViewMaker(const PreviewInput& input, const LintedFile& file)
      : input_(input), outside_{input.host}, changes_(file.ChangesByKey()) {
    outside_.host.internalFeaturesAllowed = false;
    outside_.host.terminating = false;
    common::InstallHost(outside_.host);
    version_ = FullVersion();
  }

  std::vector<PreviewView> Make() {
    AddOutside();
    AddInternal();
    AddFirstStart();
    if (input_.seen) AddSeen(*input_.seen);
    AddRating();
    return std::move(views_);
  }

 private:
  std::string OnPlatform() const { return PhraseWith(" on the platform ", input_.host.platform); }

  void AddOutside() {
    Add({"outside", "External user",
         "Everything that a user without the internal-features permission can see" + OnPlatform() +
             "."},
        outside_, ornwhatsnew::kFilterRelevantPlatform);
  }

  void AddInternal() {
    User user = outside_;
    user.host.internalFeaturesAllowed = true;
    Add({"internal", "Internal user",
         "Everything that a user with the internal-features permission can see" + OnPlatform() +
             "."},
        user, ornwhatsnew::kFilterRelevantPlatform);
  }

  void AddFirstStart() {
    Add({"first-start", "First start",
         "What is new for an external user who starts the application for the first time" +
             PhraseWith(", in version ", version_) +
             ". If the application marks all changes as seen at the first start, it announces "
             "none of them."},
        outside_, kRelevant | ornwhatsnew::kShowOnlyNew);
  }

  void AddSeen(const PreviewFile& seen) {
    User user = outside_;
    common::InstallHost(user.host);
    const LintedFile file(seen.name, seen.text);
    user.host.clientVersion = NewestVersion(file, input_.host.clientVersion);
    LoadList(seen.text, user)->MarkAllSeen();
    const std::string seenVersion = FullVersion();
    user.host.clientVersion = input_.host.clientVersion;
    Add({"seen", "After an update",
         "What is new for an external user who has seen the changes in " +
             std::filesystem::path(seen.name).filename().native() +
             PhraseWith(" with version ", seenVersion) + " and now starts " +
             (version_.empty() ? "the application" : "version " + version_) + "."},
        user, kRelevant | ornwhatsnew::kShowOnlyNew);
  }

  void AddRating() {
    User user = outside_;
    LoadList(input_.data.text, user)->MarkAllSeen();
    Add({"rating", "Ratings", "What an external user who has seen all changes can rate."}, user,
        kRelevant | ornwhatsnew::kRatingView);
  }

  /// Adds `view` with the panel of `user`. The caller must set the ID, the title and the
  /// explanation of `view`.
  void Add(PreviewView view, User& user, const DisplayOptions& options) {
    const auto list = LoadList(input_.data.text, user);
    view.layout = list->PreviewLayout(options);
    view.count = list->CountNew(options);
    SetIDs(view, ShownLines(*list, options, changes_));
    views_.push_back(std::move(view));
  }

  const PreviewInput& input_;
  User outside_;
  const RowsByKey changes_;
  std::string version_;
  std::vector<PreviewView> views_;
};

}  // namespace

std::string PhraseWith(std::string_view words, std::string_view value) {
  return value.empty() ? "" : std::string(words) + std::string(value);
}

std::vector<PreviewView> MakePreviewViews(const PreviewInput& input, const LintedFile& file) {
  return ViewMaker(input, file).Make();
}

}  // namespace hosts::author
