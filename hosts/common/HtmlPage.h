// Writes a page that a browser can open.
#ifndef HOSTS_COMMON_HTMLPAGE_H_
#define HOSTS_COMMON_HTMLPAGE_H_

#include <string>

#include <ornwhatsnew/PanelLayout.h>

namespace hosts::common {

/// Returns a complete HTML page that shows `layout`. The page follows the browser's colour scheme.
/// Its content security policy forbids scripts and requests to other servers.
std::string HtmlPage(const ornwhatsnew::PanelLayout& layout);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_HTMLPAGE_H_
