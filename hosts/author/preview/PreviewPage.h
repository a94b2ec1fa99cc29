// Creates the page of `ornwhatsnew preview`.
#ifndef HOSTS_AUTHOR_PREVIEW_PREVIEWPAGE_H_
#define HOSTS_AUTHOR_PREVIEW_PREVIEWPAGE_H_

#include <string>

#include "hosts/author/preview/PreviewViews.h"

namespace hosts::author {

/// Returns an HTML page with the panels of `MakePreviewViews` and the findings of `lint --host`.
/// Each finding on a change links to the places where the panels show this change. The page
/// contains no scripts and makes no requests, and it escapes all strings in `input`. Configures the
/// services of the process. Throws `common::JsonError` if the configuration file of `lint` cannot
/// be read or is not valid.
std::string PreviewPage(const PreviewInput& input);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_PREVIEW_PREVIEWPAGE_H_
