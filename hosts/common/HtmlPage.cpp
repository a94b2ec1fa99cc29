#include "hosts/common/HtmlPage.h"

#include <orncore/string/SafeText.h>
#include <ornwhatsnew/PanelRenderers.h>

#include "hosts/common/Sha256.h"

namespace hosts::common {
namespace {

constexpr std::string_view kPanelPageStyle = R"css(body {
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
)css";

}  // namespace

std::string EscapeHtml(std::string_view text) {
  std::string escaped;
  for (const char character : orncore::string::EscapeInvisible(text)) {
    switch (character) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      case '\'':
        escaped += "&#39;";
        break;
      default:
        escaped += character;
    }
  }
  return escaped;
}

std::string HtmlPage(std::string_view title, std::string_view style, std::string_view body) {
  std::string page =
      "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
      "'sha256-";
  page += Sha256InBase64(style);
  page +=
      "'; base-uri 'none'; form-action 'none'\">\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
      "<meta name=\"color-scheme\" content=\"light dark\">\n";
  page.append("<title>").append(EscapeHtml(title)).append("</title>\n");
  page.append("<style>").append(style).append("</style>\n</head>\n<body>\n");
  page.append(body).append("</body>\n</html>\n");
  return page;
}

// A layout does not state its language. The `lang` attribute of the panel is therefore empty, which
// means that the language is unknown.
std::string PanelPage(const ornwhatsnew::PanelLayout& layout) {
  const std::string style =
      std::string(kPanelPageStyle) + std::string(ornwhatsnew::GetHTMLStyleSheet());
  return HtmlPage("What’s New", style,
                  "<main>\n<h1>What’s New</h1>\n<div lang=\"\">\n" +
                      ornwhatsnew::RenderHTML(layout) + "</div>\n</main>\n");
}

}  // namespace hosts::common
