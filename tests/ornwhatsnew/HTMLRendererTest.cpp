#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ornwhatsnew/PanelRenderers.h>

#include "tests/support/LayoutBuilder.h"
#include "tests/support/RenderedPanel.h"

namespace ornwhatsnew {
namespace {

using enum ParagraphKind;
using test_support::LayoutBuilder;
using testing::HasSubstr;
using testing::Not;

// Returns the HTML inside the `section` element of the panel.
std::string HTMLOf(const LayoutBuilder& builder, HTMLOptions options = {}) {
  options.idPrefix = "x-";
  const std::string html = RenderHTML(builder.Layout(), options);
  const std::string begin = "<section class=\"ornwhatsnew\" dir=\"auto\">\n";
  const std::string end = "</section>\n";
  EXPECT_TRUE(html.starts_with(begin) && html.ends_with(end)) << html;
  return html.substr(begin.size(), html.size() - begin.size() - end.size());
}

// Renders a panel whose notice has one span. Returns the HTML inside the `p` element of the notice.
std::string RenderSpan(const std::u16string& text, std::optional<StyleID> style = {},
                       std::u16string link = {}) {
  const std::string html =
      HTMLOf(LayoutBuilder().Begin(kNotice).Span(text, style, std::move(link)));
  const std::string begin = "<p class=\"ornwhatsnew-notice\">";
  EXPECT_TRUE(html.starts_with(begin)) << html;
  return html.substr(begin.size(), html.find("</p>") - begin.size());
}

TEST(HTMLRenderer, AnEmptyPanelIsAnEmptyElement) {
  EXPECT_EQ("", HTMLOf({}));
}

TEST(HTMLRenderer, WritesAnElementForEachParagraph) {
  LayoutBuilder builder;
  builder.Begin(kHeader).Span(u"Header", kStyleHeader);
  builder.Begin(kTitle, "ORN-1").Span(u"Title", kStyleFeatureTitle, u"https://x").Span(u" ");
  builder.Span(u"NEW", kStyleUnlockLabel);
  builder.Begin(kDescription, "ORN-1").Span(u"Text", kStyleFeatureDescription);
  builder.Begin(kChange, "ORN-1").Span(u"One", kStyleChangeText);
  builder.Begin(kChange, "ORN-1").Span(u"Two", kStyleChangeText).Span(u" (v1)", kStyleInternalCode);
  builder.Begin(kTitle, "MISC").Span(u"Other", kStyleFeatureTitle);
  builder.Last().isSection = true;
  EXPECT_EQ(
      "<h2 class=\"ornwhatsnew-header\">Header</h2>\n"
      "<article class=\"ornwhatsnew-item\" id=\"x-ORN-1\">\n"
      "<h3 class=\"ornwhatsnew-title\"><a href=\"https://x\">Title</a> "
      "<span class=\"ornwhatsnew-label\">NEW</span></h3>\n"
      "<p class=\"ornwhatsnew-description\">Text</p>\n"
      "<ul class=\"ornwhatsnew-changes\">\n"
      "<li class=\"ornwhatsnew-change\">One</li>\n"
      "<li class=\"ornwhatsnew-change\">Two<span class=\"ornwhatsnew-code\"> (v1)</span></li>\n"
      "</ul>\n"
      "</article>\n"
      "<article class=\"ornwhatsnew-item ornwhatsnew-section\" id=\"x-MISC\">\n"
      "<h3 class=\"ornwhatsnew-title\">Other</h3>\n"
      "</article>\n",
      HTMLOf(builder));
}

TEST(HTMLRenderer, TitlesOfAPanelWithoutAHeaderSkipNoHeadingLevel) {
  EXPECT_THAT(HTMLOf(LayoutBuilder().Begin(kTitle).Span(u"Title")),
              HasSubstr("<h2 class=\"ornwhatsnew-title\">Title</h2>"));
}

TEST(HTMLRenderer, HeadingsBeginAtTheLevelOfTheOptions) {
  LayoutBuilder builder;
  builder.Begin(kHeader).Span(u"Header").Begin(kTitle, "a").Span(u"Title");
  const std::string html = HTMLOf(builder, {.headingLevel = 5});
  EXPECT_THAT(html, HasSubstr("<h5 class=\"ornwhatsnew-header\">Header</h5>"));
  EXPECT_THAT(html, HasSubstr("<h6 class=\"ornwhatsnew-title\">Title</h6>"));
}

TEST(HTMLRenderer, ParagraphsHaveTheIDsOfTheOptions) {
  LayoutBuilder builder;
  builder.Begin(kTitle, "a").Span(u"Title").Begin(kChange, "a").Span(u"One");
  builder.Begin(kChange, "a").Span(u"Two").Rating(u"Good?").Begin(kNotice).Span(u"Notice");
  const std::vector<std::string> ids = {"", "one", "a\"b", "rating"};
  const std::string html = HTMLOf(builder, {.paragraphIDs = ids});
  EXPECT_THAT(html, HasSubstr("<h2 class=\"ornwhatsnew-title\">"));
  EXPECT_THAT(html, HasSubstr("<li class=\"ornwhatsnew-change\" id=\"one\">One</li>"));
  EXPECT_THAT(html, HasSubstr("<li class=\"ornwhatsnew-change\" id=\"a&quot;b\">Two</li>"));
  EXPECT_THAT(html, HasSubstr("<div class=\"ornwhatsnew-rating\" id=\"rating\">\n<p class"));
  EXPECT_THAT(html, HasSubstr("<p class=\"ornwhatsnew-notice\">Notice</p>"));
}

TEST(HTMLRenderer, WritesNoticesOutsideOfItems) {
  EXPECT_EQ("<p class=\"ornwhatsnew-notice\">a</p>\n<p class=\"ornwhatsnew-notice\">b</p>\n",
            HTMLOf(LayoutBuilder().Begin(kNotice).Span(u"a").Begin(kNotice).Span(u"b")));
}

TEST(HTMLRenderer, ARatingRequestHasDescriptionAndQuestion) {
  EXPECT_THAT(HTMLOf(LayoutBuilder().Rating(u"Good?", u"A <feature>")),
              HasSubstr("<div class=\"ornwhatsnew-rating\">\n"
                        "<p class=\"ornwhatsnew-description\">A &lt;feature&gt;</p>\n"
                        "<p class=\"ornwhatsnew-question\">Good?</p>\n"
                        "</div>\n</article>\n"));
  EXPECT_THAT(HTMLOf(LayoutBuilder().Rating(u"")),
              HasSubstr("rating\">\n<p class=\"ornwhatsnew-question\">How do you like it?</p>"));
}

TEST(HTMLRenderer, ClassesNameTheStyles) {
  EXPECT_EQ("<span class=\"ornwhatsnew-note\">x</span>", RenderSpan(u"x", kStyleInternalWarning));
  EXPECT_EQ("<a class=\"ornwhatsnew-issue\" href=\"https://x\">x</a>",
            RenderSpan(u"x", kStyleIssueLink, u"https://x"));
  EXPECT_EQ("<a class=\"ornwhatsnew-commit\" href=\"https://x\">x</a>",
            RenderSpan(u"x", kStyleCommitLink, u"https://x"));
  EXPECT_EQ("<a class=\"ornwhatsnew-link\" href=\"https://x\">x</a>",
            RenderSpan(u"x", kStyleHotSpot, u"https://x"));
  for (const StyleID style : {kStyleChangeText, kStyleHeader, kStyleFeatureDescription}) {
    EXPECT_EQ("x", RenderSpan(u"x", style));
  }
}

TEST(HTMLRenderer, EscapesTextAndAttributes) {
  EXPECT_EQ("&lt;b&gt; &amp;amp; &quot;&#39;", RenderSpan(u"<b> &amp; \"'"));
  EXPECT_EQ("<a href=\"https://x/?a=1&amp;b=&#39;2&#39;\">&lt;</a>",
            RenderSpan(u"<", kStyleFeatureTitle, u"https://x/?a=1&b='2'"));
}

TEST(HTMLRenderer, UnsafeLinksAreTextWithTheirTarget) {
  EXPECT_EQ("<span class=\"ornwhatsnew-link\">x &lt;javascript:alert(1)&gt;</span>",
            RenderSpan(u"x", kStyleHotSpot, u"javascript:alert(1)"));
  EXPECT_EQ("x", RenderSpan(u"x", kStyleFeatureTitle, u"https://a@b"));
}

TEST(HTMLRenderer, ReplacesCharactersThatAPageMustNotContain) {
  EXPECT_EQ("a<br>b<br>c d", RenderSpan(u"a\u2028b\nc\td"));
  EXPECT_EQ("\uFFFD\uFFFD\uFFFD\uFFFD", RenderSpan(u"\x1B\u0085\uFFFE\uFDD0"));
  EXPECT_EQ("\uFFFDa\uFFFD", RenderSpan(u"\U0001FFFEa\U0010FFFF"));
  EXPECT_EQ("\uFFFD", RenderSpan(std::u16string(1, u'\0')));
  EXPECT_EQ("a\uFFFD", RenderSpan({u'a', char16_t{0xD800}}));
  EXPECT_EQ("\U0001F600", RenderSpan(u"\U0001F600"));
}

TEST(HTMLRenderer, KeepsDirectionMarksButNoOverrides) {
  EXPECT_EQ("\u200Fab\u200E", RenderSpan(u"\u200F\u202Ea\u2066b\u2069\u200E"));
}

TEST(HTMLRenderer, OmitsChangesWithoutText) {
  EXPECT_THAT(HTMLOf(LayoutBuilder().Begin(kChange)), Not(HasSubstr("<li")));
}

TEST(HTMLRenderer, EncodesTheKeyInTheID) {
  const auto render = [](const char* key) {
    return HTMLOf(LayoutBuilder().Begin(kTitle, key).Span(u"x"));
  };
  EXPECT_THAT(render("a_b c\""), HasSubstr("id=\"x-a_5Fb_20c_22\""));
  EXPECT_THAT(render("\u00E9"), HasSubstr("id=\"x-_C3_A9\""));
  EXPECT_THAT(render(""), HasSubstr("id=\"x-\""));
}

TEST(HTMLRenderer, AnItemThatOccursTwiceHasTwoIDs) {
  LayoutBuilder builder;
  for (int i = 0; i < 3; ++i) builder.Begin(kTitle, "k").Span(u"x");
  const std::string html = HTMLOf(builder);
  EXPECT_THAT(html, HasSubstr("id=\"x-k\""));
  EXPECT_THAT(html, HasSubstr("id=\"x-k.2\""));
  EXPECT_THAT(html, HasSubstr("id=\"x-k.3\""));
}

TEST(HTMLRenderer, AnItemWithoutATitleHasAnElement) {
  LayoutBuilder builder;
  builder.Begin(kChange, "a").Span(u"x").Begin(kChange, "b").Span(u"y");
  EXPECT_EQ(2U, test_support::ParseHTML(RenderHTML(builder.Layout())).size());
  EXPECT_THAT(HTMLOf(builder), HasSubstr("id=\"x-b\""));
}

TEST(HTMLRenderer, TheStyleSheetHasRulesForTheClassesOfParagraphs) {
  for (const std::string name : {"header", "notice", "title", "description", "change", "rating"}) {
    EXPECT_THAT(GetHTMLStyleSheet(), HasSubstr("\n.ornwhatsnew-" + name)) << name;
  }
}

TEST(HTMLRenderer, TheStyleSheetContainsNothingThatEndsAStyleElement) {
  EXPECT_EQ(std::string_view::npos, GetHTMLStyleSheet().find('<'));
}

}  // namespace
}  // namespace ornwhatsnew
