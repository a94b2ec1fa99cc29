#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ornwhatsnew/PanelRenderers.h>

#include "hosts/common/HtmlPage.h"
#include "tests/support/LayoutBuilder.h"

namespace hosts::common {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

TEST(HtmlPage, ContainsThePanelAndItsStyleSheet) {
  test_support::LayoutBuilder builder;
  builder.Begin(ornwhatsnew::ParagraphKind::kHeader).Span(u"Changes");
  EXPECT_THAT(HtmlPage(builder.Layout()),
              AllOf(StartsWith("<!DOCTYPE html>\n"),
                    HasSubstr(std::string(ornwhatsnew::GetHTMLStyleSheet()) + "</style>"),
                    HasSubstr(ornwhatsnew::RenderHTML(builder.Layout())), EndsWith("</html>\n")));
}

TEST(HtmlPage, ForbidsScriptsAndRequests) {
  EXPECT_THAT(HtmlPage({}), HasSubstr("content=\"default-src 'none'; style-src 'unsafe-inline'\""));
}

}  // namespace
}  // namespace hosts::common
