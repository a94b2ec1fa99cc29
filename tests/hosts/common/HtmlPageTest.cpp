#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ornwhatsnew/PanelRenderers.h>

#include "hosts/common/HtmlPage.h"
#include "hosts/common/Sha256.h"
#include "tests/support/LayoutBuilder.h"

namespace hosts::common {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

/// Returns the content of the only style element of `page`.
std::string StyleOf(const std::string& page) {
  const std::size_t begin = page.find("<style>") + std::string_view("<style>").size();
  EXPECT_EQ(page.find("<style", begin), std::string::npos);
  return page.substr(begin, page.find("</style>") - begin);
}

TEST(PanelPage, ContainsThePanelAndItsStyleSheet) {
  test_support::LayoutBuilder builder;
  builder.Begin(ornwhatsnew::ParagraphKind::kHeader).Span(u"Changes");
  const std::string page = PanelPage(builder.Layout());
  EXPECT_THAT(page,
              AllOf(StartsWith("<!DOCTYPE html>\n"), HasSubstr("<title>What’s New</title>"),
                    HasSubstr(ornwhatsnew::RenderHTML(builder.Layout())), EndsWith("</html>\n")));
  EXPECT_THAT(StyleOf(page), EndsWith(std::string(ornwhatsnew::GetHTMLStyleSheet())));
}

TEST(PanelPage, AllowsOnlyItsOwnStyleSheet) {
  const std::string page = PanelPage({});
  EXPECT_THAT(
      page, HasSubstr("http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
                      "style-src 'sha256-" +
                      Sha256InBase64(StyleOf(page)) + "'; base-uri 'none'; form-action 'none'\">"));
}

TEST(HtmlPage, EscapesTheTitle) {
  EXPECT_THAT(HtmlPage("</title><script>", "", ""),
              HasSubstr("<title>&lt;/title&gt;&lt;script&gt;</title>"));
}

TEST(EscapeHtml, EscapesWhatHtmlInterprets) {
  EXPECT_EQ(EscapeHtml("<b class=\"c\" id='d'>&amp;"),
            "&lt;b class=&quot;c&quot; id=&#39;d&#39;&gt;&amp;amp;");
}

TEST(EscapeHtml, ShowsInvisibleCharactersAndIllFormedBytes) {
  EXPECT_EQ(EscapeHtml("a\nb\u202E\xFF"), "a\\u000ab\\u202e\\xff");
}

}  // namespace
}  // namespace hosts::common
