// Writes the page of `ornwhatsnew preview`.
#ifndef HOSTS_AUTHOR_PREVIEW_PREVIEWPAGE_H_
#define HOSTS_AUTHOR_PREVIEW_PREVIEWPAGE_H_

#include <string>

#include "hosts/author/preview/PreviewViews.h"

namespace hosts::author {

/// Returns an HTML page without scripts that shows the panels of `MakePreviewViews`, and the
/// findings of `lint --host` in the data file. Each finding links to the places where the panels
/// show its change. The page makes no requests, and shows all strings in `input` as plain text.
/// Configures the services of the process. Throws `common::JsonError` if the configuration file of
/// `lint` cannot be used.
std::string PreviewPage(const PreviewInput& input);

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_PREVIEW_PREVIEWPAGE_H_
