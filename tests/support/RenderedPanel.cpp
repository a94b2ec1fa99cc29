#include "tests/support/RenderedPanel.h"

#include <algorithm>
#include <exception>
#include <sstream>

#include <orncore/string/SafeLink.h>
#include <ornwhatsnew/PanelRenderers.h>

#include "tests/support/PlainText.h"

namespace test_support {
namespace {

using ornwhatsnew::LayoutParagraph;
using ornwhatsnew::LayoutSpan;
using ornwhatsnew::PanelLayout;
using ornwhatsnew::ParagraphKind;

/// Returns the characters of a UTF-8 string that HTML and Markdown must show. Omits white space,
/// because browsers and parsers change it. Like the renderers, omits direction controls and U+FEFF,
/// and replaces other control characters, noncharacters and U+2029 with U+FFFD.
std::string VisibleCharacters(std::string_view utf8) {
  const std::u16string text = PlainUTF8to16(utf8);
  std::u16string visible;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    const bool isNoncharacter = unit >= 0xD800 && unit < 0xDC00 && (unit & 0x3F) == 0x3F &&
                                i + 1 < text.size() && (text[i + 1] & 0xFFFE) == 0xDFFE;
    if (isNoncharacter) {
      visible += char16_t{0xFFFD};
      ++i;
      continue;
    }
    const bool isSpace = unit == u' ' || unit == u'\t' || unit == u'\n' || unit == 0x2028;
    const bool isDirection =
        (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
    if (isSpace || isDirection || unit == 0xFEFF) continue;
    const bool isReplaced = unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x2029 ||
                            (unit >= 0xFDD0 && unit <= 0xFDEF) || unit >= 0xFFFE;
    visible += isReplaced ? char16_t{0xFFFD} : unit;
  }
  return PlainUTF16to8(visible);
}

/// Converts `text` to UTF-8 first, which replaces unpaired surrogates. Otherwise, two surrogates
/// would form a pair if the characters between them were omitted.
std::string VisibleCharacters(std::u16string_view text) {
  return VisibleCharacters(PlainUTF16to8(text));
}

/// Returns the `RenderedBlock::element` of a paragraph. Titles are headings of the level
/// `titleLevel`, and a header is one level above them.
std::string ElementOf(ParagraphKind kind, int titleLevel) {
  switch (kind) {
    case ParagraphKind::kHeader:
      return "h" + std::to_string(titleLevel - 1);
    case ParagraphKind::kTitle:
      return "h" + std::to_string(titleLevel);
    case ParagraphKind::kChange:
      return "li";
    case ParagraphKind::kRatingRequest:
      return "rating";
    default:
      return "p";
  }
}

bool IsEmpty(const RenderedBlock& block) {
  return block.text.empty() && block.links.empty();
}

/// Returns whether the renderers must print the target of a link after `text`, the text of `span`.
/// This is the case if `span` has a link and the style `kStyleHotSpot`, and the link is neither
/// safe nor equal to `text`.
bool HasPrintedTarget(const LayoutSpan& span, std::u16string_view text) {
  return span.style == ornwhatsnew::kStyleHotSpot && !span.link.empty() && span.link != text &&
         !orncore::string::IsSafeLink(span.link);
}

RenderedBlock ExpectedBlock(const PanelLayout& layout, const LayoutParagraph& paragraph,
                            int titleLevel) {
  RenderedBlock block{ElementOf(paragraph.kind, titleLevel), {}, {}};
  for (const LayoutSpan& span : paragraph.spans) {
    const auto text = std::u16string_view(layout.text).substr(span.range.begin, span.range.length);
    const std::string visible = VisibleCharacters(text);
    block.text += visible;
    if (orncore::string::IsSafeLink(span.link)) {
      block.links.emplace_back(visible, PlainUTF16to8(span.link));
    } else if (HasPrintedTarget(span, text)) {
      block.text += "<TARGET>";
    }
  }
  if (paragraph.rating) {
    const ornwhatsnew::RatingRequest& request = layout.ratingRequests[*paragraph.rating];
    block.text += VisibleCharacters(request.description) +
                  VisibleCharacters(request.question.empty() ? ornwhatsnew::kDefaultRatingQuestion
                                                             : request.question);
  }
  return block;
}

/// Returns whether `text` equals `expected`, in which each "<TARGET>" represents any printed
/// target: a string in angle brackets.
bool MatchesTargets(std::string_view text, std::string_view expected) {
  constexpr std::string_view kTarget = "<TARGET>";
  const std::size_t target = expected.find(kTarget);
  if (target == std::string_view::npos) return text == expected;
  if (text.substr(0, target) != expected.substr(0, target)) return false;
  text.remove_prefix(target);
  const std::size_t end = text.find('>');
  return text.starts_with('<') && end != std::string_view::npos &&
         MatchesTargets(text.substr(end + 1), expected.substr(target + kTarget.size()));
}

std::string Describe(const RenderedBlock& block) {
  std::ostringstream stream;
  stream << block.element << " \"" << block.text << '"';
  for (const auto& [text, target] : block.links) stream << " [" << text << "](" << target << ')';
  return stream.str();
}

/// Checks that the plain text contains the ASCII letters and digits of the layout in the same
/// order. Returns an error message, or an empty string if there is no error. Ignores all other
/// characters, because `SafeForTerminal` can change them.
std::string FirstPlainTextError(const PanelLayout& layout) {
  const std::string plain = ornwhatsnew::RenderPlainText(layout);
  std::size_t position = 0;
  for (const char16_t unit : layout.text) {
    const bool isLetter = (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') ||
                          (unit >= u'0' && unit <= u'9');
    if (!isLetter) continue;
    position = plain.find(static_cast<char>(unit), position);
    if (position == std::string::npos) return "plain text lacks a character:\n" + plain;
    ++position;
  }
  return {};
}

}  // namespace

std::string FirstDifference(const std::vector<RenderedBlock>& blocks, const PanelLayout& layout,
                            int headingLevel) {
  const bool hasHeader = std::ranges::any_of(layout.paragraphs, [](const auto& paragraph) {
    return paragraph.kind == ParagraphKind::kHeader;
  });
  auto block = blocks.begin();
  for (const LayoutParagraph& paragraph : layout.paragraphs) {
    const RenderedBlock expected =
        ExpectedBlock(layout, paragraph, headingLevel + (hasHeader ? 1 : 0));
    if (IsEmpty(expected)) continue;
    RenderedBlock got;
    for (; block != blocks.end(); ++block) {
      got = {block->element, VisibleCharacters(block->text), {}};
      for (const auto& [text, target] : block->links) {
        got.links.emplace_back(VisibleCharacters(text), target);
      }
      if (!IsEmpty(got)) break;
    }
    if (block == blocks.end()) return "missing: " + Describe(expected);
    ++block;
    if (got.element != expected.element || got.links != expected.links ||
        !MatchesTargets(got.text, expected.text)) {
      return "got " + Describe(got) + "\nexpected " + Describe(expected);
    }
  }
  for (; block != blocks.end(); ++block) {
    if (!VisibleCharacters(block->text).empty()) return "unexpected: " + Describe(*block);
  }
  return {};
}

std::string FirstRenderingError(const PanelLayout& layout) {
  const std::string html = ornwhatsnew::RenderHTML(layout);
  const std::string markdown = ornwhatsnew::RenderMarkdown(layout);
  try {
    std::string difference = FirstDifference(ParseHTML(html), layout);
    if (!difference.empty()) return difference + "\nin HTML:\n" + html;
    difference = FirstDifference(ParseMarkdown(markdown), layout);
    if (!difference.empty()) return difference + "\nin Markdown:\n" + markdown;
  } catch (const std::exception& error) {
    return std::string(error.what()) + "\nin HTML:\n" + html + "\nor in Markdown:\n" + markdown;
  }
  return FirstPlainTextError(layout);
}

}  // namespace test_support
