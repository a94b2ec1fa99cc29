// Creates complete HTML pages, and escapes strings for such pages.
#ifndef HOSTS_COMMON_HTMLPAGE_H_
#define HOSTS_COMMON_HTMLPAGE_H_

#include <string>
#include <string_view>

#include <ornwhatsnew/PanelLayout.h>

namespace hosts::common {

/// Returns `text` as HTML that can be the content of an element or the value of an attribute.
/// `text` is UTF-8 or the bytes of a file name. Shows invisible characters and ill-formed bytes as
/// `EscapeInvisible` does.
std::string EscapeHtml(std::string_view text);

/// Returns a complete HTML page in English. `title` is plain text, `style` is a style sheet without
/// the character `<`, and `body` is the HTML of the body. The page follows the browser's colour
/// scheme. Its content security policy forbids scripts, requests, forms, and all styles except
/// `style`.
std::string HtmlPage(std::string_view title, std::string_view style, std::string_view body);

/// Returns a complete HTML page that shows `layout`.
std::string PanelPage(const ornwhatsnew::PanelLayout& layout);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_HTMLPAGE_H_
