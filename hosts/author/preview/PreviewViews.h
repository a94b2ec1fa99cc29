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
  std::string title;        ///< which user sees the panel
  std::string explanation;  ///< what the panel shows, in sentences
  ornwhatsnew::PanelLayout layout = {};
  ornwhatsnew::NewCount count = {};  ///< what the panel shows
  /// The `id`s of the paragraphs of the changes; see `ornwhatsnew::HTMLOptions`.
  std::vector<std::string> paragraphIDs = {};
  /// The `id` of the paragraph that shows the change in a line of the data file.
  std::map<std::size_t, std::string> idsByLine = {};
};

/// Returns `words` followed by `value`. Returns an empty string if `value` is empty.
std::string PhraseWith(std::string_view words, std::string_view value);

/// Returns the panels in the order of the page. `file` is the data file of `input`. Configures the
/// services of the process. All users have the platform and the features of the host description.
/// The application is not terminating, so users can rate features.
///
/// - The panels of an external user and of an internal user show all changes for the platform.
/// - The panels of a first start and of a user who saw the earlier data file show what is new, for
///   the platform and for the versions of the user. Without an earlier data file, there is no such
///   user.
/// - The rating view shows what a user who has seen the data file can rate.
///
/// The user who saw the earlier data file had the newest version in this file. That is the greatest
/// version of its changes that is not above the version of the host.
std::vector<PreviewView> MakePreviewViews(const PreviewInput& input, const LintedFile& file);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_PREVIEW_PREVIEWVIEWS_H_
