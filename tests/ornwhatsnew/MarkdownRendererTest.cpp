#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <orncore/string/Conversion.h>
#include <ornwhatsnew/PanelRenderers.h>

#include "tests/support/LayoutBuilder.h"
#include "tests/support/RenderedPanel.h"

namespace ornwhatsnew {
namespace {

using enum ParagraphKind;
using test_support::LayoutBuilder;
using test_support::ParseMarkdown;
using test_support::RenderedBlock;
using testing::ElementsAre;

std::string MarkdownOf(const LayoutBuilder& builder) {
  return RenderMarkdown(builder.Layout());
}

std::string RenderNotice(const std::u16string& text) {
  return MarkdownOf(LayoutBuilder().Begin(kNotice).Span(text));
}

std::string RenderLink(const std::u16string& text, std::u16string link) {
  return MarkdownOf(LayoutBuilder().Begin(kNotice).Span(text, kStyleHotSpot, std::move(link)));
}

TEST(MarkdownRenderer, AnEmptyPanelIsEmpty) {
  EXPECT_EQ("", MarkdownOf({}));
}

TEST(MarkdownRenderer, WritesABlockForEachParagraph) {
  LayoutBuilder builder;
  builder.Begin(kHeader).Span(u"Header", kStyleHeader);
  builder.Begin(kTitle).Span(u"Title", kStyleFeatureTitle, u"https://x").Span(u" ");
  builder.Span(u"NEW", kStyleUnlockLabel);
  builder.Begin(kDescription).Span(u"Text", kStyleFeatureDescription);
  builder.Begin(kChange).Span(u"One", kStyleChangeText).Span(u" (v1.2)", kStyleInternalCode);
  builder.Begin(kChange).Span(u"Two", kStyleChangeText);
  builder.Rating(u"Good?", u"A feature").Rating(u"");
  EXPECT_EQ(
      "## Header\n\n"
      "### [Title](https://x) `NEW`\n\n"
      "Text\n\n"
      "- One (v1.2)\n- Two\n\n"
      "> A feature\\\n> Good?\n\n"
      "> How do you like it?\n",
      MarkdownOf(builder));
}

TEST(MarkdownRenderer, EscapesInlineSyntax) {
  EXPECT_EQ("a \\*b\\* \\_c\\_ \\`d\\` \\[e\\](f) \\<g\\> \\&amp; \\\\ \\~h\\~ \\|\n",
            RenderNotice(u"a *b* _c_ `d` [e](f) <g> &amp; \\ ~h~ |"));
  EXPECT_EQ("a - b + c = 1. d! (v1.2) 50 % 'x' \"y\"\n",
            RenderNotice(u"a - b + c = 1. d! (v1.2) 50 % 'x' \"y\""));
}

// GitHub converts URLs to links even without link syntax, unless they contain escapes.
TEST(MarkdownRenderer, AURLInATextIsNoLink) {
  EXPECT_EQ("http:/\\/x www\\.x\n", RenderNotice(u"http://x www.x"));
  EXPECT_EQ("http:/\\/x\n", RenderNotice(u"http:\u202E/\uFEFF/x"));
  EXPECT_EQ("http:/\\/x\n", MarkdownOf(LayoutBuilder().Begin(kNotice).Span(u"http:").Span(u"//x")));
}

TEST(MarkdownRenderer, EscapesSyntaxAtTheStartOfEachLine) {
  for (const std::u16string start :
       {u"# a",      u"- a",   u"+ a",   u"* a", u"1. a", u"23) a", u"> a",
        u"---",      u"***",   u"===",   u"```", u"~~~",  u"<div>", u"[a]: b",
        u"    code", u"- - -", u"_ _ _", u":-:", u"\\",   u"-",     u"1."}) {
    const std::string text = orncore::string::UTF16to8(start);
    const std::string visible = text.substr(text.find_first_not_of(' '));
    for (const ParagraphKind kind : {kNotice, kChange, kTitle}) {
      const std::string element = kind == kNotice ? "p" : kind == kChange ? "li" : "h2";
      LayoutBuilder builder;
      builder.Begin(kind).Span(start);
      EXPECT_THAT(ParseMarkdown(MarkdownOf(builder)),
                  ElementsAre(RenderedBlock{element, visible, {}}))
          << MarkdownOf(builder);
      if (kind == kTitle) continue;
      builder.Span(u"\u2028").Span(start);
      EXPECT_THAT(ParseMarkdown(MarkdownOf(builder)),
                  ElementsAre(RenderedBlock{element, visible + "\n" + visible, {}}))
          << MarkdownOf(builder);
    }
  }
}

TEST(MarkdownRenderer, EscapesANumberThatSeveralSpansForm) {
  EXPECT_EQ("12\\. x\n",
            MarkdownOf(LayoutBuilder().Begin(kNotice).Span(u"1").Span(u"2").Span(u". x")));
}

// In CommonMark, the numbers of an ordered list have at most nine digits. A longer number does not
// begin a list, so the renderer does not escape the period after it.
TEST(MarkdownRenderer, EscapesOnlyNumbersThatCanBeginAList) {
  EXPECT_EQ("123456789\\. x\n", RenderNotice(u"123456789. x"));
  EXPECT_EQ("1234567890. x\n", RenderNotice(u"1234567890. x"));
}

TEST(MarkdownRenderer, LineEndsAreHardBreaks) {
  EXPECT_EQ("a\\\nb\n", RenderNotice(u" a \u2028  b "));
  EXPECT_EQ("a\\\n\\\nb\n", RenderNotice(u"a\u2028\u2028b"));
  EXPECT_EQ("- a\\\n  b\n", MarkdownOf(LayoutBuilder().Begin(kChange).Span(u"a\u2028b")));
  EXPECT_EQ("## a b\n", MarkdownOf(LayoutBuilder().Begin(kTitle).Span(u"a\u2028b")));
  EXPECT_EQ("a\n", RenderNotice(u"\u2028a\u2028\u202A"));
}

TEST(MarkdownRenderer, LinksHaveEscapedTargets) {
  EXPECT_EQ("[a\\]](https://x/?a=1&amp;copy;\\(b\\)*_&c)\n",
            RenderLink(u"a]", u"https://x/?a=1&copy;(b)*_&c"));
  EXPECT_EQ("[a](https://x/?a;&b)\n", RenderLink(u"a", u"https://x/?a;&b"));
  EXPECT_EQ("[a](https://x/?a&b)\n", RenderLink(u"a", u"https://x/?a&b"));
  EXPECT_EQ("<https://x/>\n", RenderLink(u"https://x/", u"https://x/"));
  EXPECT_EQ("x \\<http:/\\/x\\>\n", RenderLink(u"x", u"http://x"));
}

TEST(MarkdownRenderer, ALinkThatIsItsOwnTextKeepsAnAmpersand) {
  const std::u16string link = u"https://x/?a=1&copy;b";
  EXPECT_THAT(
      ParseMarkdown(RenderLink(link, link)),
      ElementsAre(RenderedBlock{
          "p", "https://x/?a=1&copy;b", {{"https://x/?a=1&copy;b", "https://x/?a=1&copy;b"}}}));
}

TEST(MarkdownRenderer, ALinkAfterAnExclamationMarkIsNoImage) {
  LayoutBuilder builder;
  builder.Begin(kNotice).Span(u"Wow!").Span(u"x", kStyleHotSpot, u"https://x");
  EXPECT_EQ("Wow\\![x](https://x)\n", MarkdownOf(builder));
}

TEST(MarkdownRenderer, LabelsAreCodeSpansWithASufficientFence) {
  const auto render = [](const std::u16string& label) {
    return MarkdownOf(LayoutBuilder().Begin(kTitle).Span(u"x ").Span(label, kStyleUnlockLabel));
  };
  EXPECT_EQ("## x `A *B*`\n", render(u"A *B*"));
  EXPECT_EQ("## x ```A``B```\n", render(u"A``B"));
  EXPECT_EQ("## x `` `A ``\n", render(u"`A"));
  EXPECT_EQ("## x `  A  `\n", render(u" A "));
  EXPECT_EQ("## x `A `\n", render(u"A "));
  EXPECT_EQ("## x `A B`\n", render(u"A\u2028B"));
  EXPECT_EQ("## x\n", render(u" \u202A"));
}

TEST(MarkdownRenderer, ALabelAfterALabelIsText) {
  LayoutBuilder builder;
  builder.Begin(kTitle).Span(u"A", kStyleUnlockLabel).Span(u"B", kStyleUnlockLabel);
  EXPECT_EQ("## `A`B\n", MarkdownOf(builder));
}

TEST(MarkdownRenderer, ReplacesControlCharactersAndUnpairedSurrogates) {
  EXPECT_EQ("\uFFFD\uFFFD a\uFFFD\n", RenderNotice({0x1B, 0x85, u'\t', u'a', char16_t{0xDC00}}));
}

// Markdown parsers remove a byte order mark at the start of a document. If the renderer wrote it,
// the "-" after it would be unescaped and would begin a list.
TEST(MarkdownRenderer, OmitsByteOrderMarks) {
  EXPECT_EQ("\\- a\n", RenderNotice(u"\uFEFF- a"));
}

TEST(MarkdownRenderer, OmitsBlocksWithoutText) {
  EXPECT_EQ("a\n\nb\n", MarkdownOf(LayoutBuilder()
                                       .Begin(kNotice)
                                       .Span(u"a")
                                       .Begin(kChange)
                                       .Begin(kNotice)
                                       .Span(u"\u202A")
                                       .Begin(kNotice)
                                       .Span(u"b")));
}

}  // namespace
}  // namespace ornwhatsnew
