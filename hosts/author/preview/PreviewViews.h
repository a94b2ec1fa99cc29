// Creates the panels that `ornwhatsnew preview` shows.
#ifndef HOSTS_AUTHOR_PREVIEW_PREVIEWVIEWS_H_
#define HOSTS_AUTHOR_PREVIEW_PREVIEWVIEWS_H_

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <ornwhatsnew/PanelLayout.h>

#include "hosts/author/lint/LintedFile.h"
#include "hosts/common/HostDescription.h"

namespace hosts::author {

/// A file and its content.
struct PreviewFile {
  std::string name;
  std::string text;
};

/// The input of a preview.
struct PreviewInput {
  PreviewFile data;
  std::string hostName;
  common::HostDescription host;
  /// An earlier version of the data file, which a user has seen.
  std::optional<PreviewFile> seen;
};

/// A panel as a user sees it.
struct PreviewView {
  std::string id;           ///< the `id` of its section in the page
  std::string title;        ///< the title of its section, such as "First start"
  std::string explanation;  ///< what the panel shows, in sentences
  ornwhatsnew::PanelLayout layout = {};
  ornwhatsnew::NewCount count = {};  ///< the numbers of items and changes in the panel
  /// The `id` of each paragraph of `layout`, or an empty string for a paragraph that needs none.
  /// See `ornwhatsnew::HTMLOptions`.
  std::vector<std::string> paragraphIDs = {};
  /// Maps the line number of each change in the panel to the `id` of the paragraph that shows this
  /// change.
  std::map<std::size_t, std::string> idsByLine = {};
};

/// Returns `words` followed by `value`. Returns an empty string if `value` is empty.
std::string PhraseWith(std::string_view words, std::string_view value);

/// Returns the panels in the order of the page. `file` is the data file of `input`. Configures the
/// services of the process. All users have the platform and the features of the host description.
/// The application counts as not terminating, because otherwise users could rate nothing.
///
/// - The panels of an external user and of an internal user show all changes that the user can see
///   on the platform.
/// - The panel of a first start shows what is new for the platform and for the version of the host.
/// - The panel of a user who saw the earlier data file shows what is new for the platform and for
///   the versions of this user. Without an earlier data file, this panel is missing.
/// - The rating view shows what an external user who has seen the data file can rate.
///
/// The user who saw the earlier data file last ran a version from column 1 of this file. The
/// function selects the highest version that is not later than the version of the host. If there is
/// no such version, the user last ran the version of the host.
std::vector<PreviewView> MakePreviewViews(const PreviewInput& input, const LintedFile& file);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_PREVIEW_PREVIEWVIEWS_H_
