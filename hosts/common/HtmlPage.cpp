#include "hosts/common/HtmlPage.h"

#include <string_view>

#include <ornwhatsnew/PanelRenderers.h>

namespace hosts::common {
namespace {

// The title of the page is English. The `lang` attribute of the panel is empty, because a layout
// does not state the language of its text.
constexpr std::string_view kBegin = R"html(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<title>What’s New</title>
<style>
body {
  margin: 0;
}
main {
  box-sizing: border-box;
  max-width: 46rem;
  margin: 0 auto;
  padding: 0.5rem;
}
h1 {
  margin: 0;
  padding: 1rem 1rem 0;
  font: 700 1.6rem/1.3 system-ui, sans-serif;
}
)html";

}  // namespace

std::string HtmlPage(const ornwhatsnew::PanelLayout& layout) {
  std::string page(kBegin);
  page += ornwhatsnew::GetHTMLStyleSheet();
  page += "</style>\n</head>\n<body>\n<main>\n<h1>What’s New</h1>\n<div lang=\"\">\n";
  page += ornwhatsnew::RenderHTML(layout);
  page += "</div>\n</main>\n</body>\n</html>\n";
  return page;
}

}  // namespace hosts::common
