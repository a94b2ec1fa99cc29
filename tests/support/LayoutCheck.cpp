#include "tests/support/LayoutCheck.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/support/PlainRecords.h"
#include "tests/support/PlainText.h"

namespace test_support {

using ornwhatsnew::LayoutParagraph;
using ornwhatsnew::LayoutSpan;
using ornwhatsnew::PanelLayout;
using ornwhatsnew::ParagraphKind;
using ornwhatsnew::StyleID;
using ornwhatsnew::StyleRunMap;
using ornwhatsnew::TextRange;

namespace {

// A visible character with its style and link. `gap` is the white space before the character,
// converted as in a layout. `isFirst` is true only for characters of a layout: the first character
// of a paragraph and each character of a bullet. The `gap` of these characters is not compared.
struct Character {
  std::u16string units;
  std::optional<StyleID> style;
  std::u16string link;
  std::u16string gap;
  bool isFirst = false;
};

bool IsHidden(char16_t unit) {
  return std::u16string_view(u" \t\n\r\u2028\u2029\uFEFF").find(unit) != std::u16string_view::npos;
}

bool IsHigh(char16_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}

bool IsLow(char16_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

std::u16string ConvertGap(std::u16string_view gap) {
  std::u16string converted = PlainReplace(gap, u"\r\n", u"\u2028");
  for (const std::u16string_view lineEnd : {u"\r", u"\n", u"\u2029"}) {
    converted = PlainReplace(converted, lineEnd, u"\u2028");
  }
  return PlainReplace(PlainReplace(converted, u"\t", u" "), u"\uFEFF", u"");
}

// The range of a run in bytes, with its style and link.
struct ByteRun {
  std::size_t begin;
  std::size_t end;
  StyleID style;
  const std::u16string* link;
};

// Returns the non-empty runs, with the offset of their first byte as the key. Omits the boxes of
// unlock labels, because each label also has a run for its text. Shortens the runs of commits,
// which end one byte after their text.
std::map<std::size_t, ByteRun> SortedRuns(const StyleRunMap& runs) {
  std::map<std::size_t, ByteRun> sorted;
  for (const auto& [style, ofStyle] : runs) {
    if (style == StyleID::kStyleUnlockLabelBox) continue;
    for (const auto& [range, link] : ofStyle) {
      const int length = range.second - (style == StyleID::kStyleCommitLink ? 1 : 0);
      if (length <= 0) continue;
      const auto begin = static_cast<std::size_t>(range.first);
      sorted.emplace(begin, ByteRun{begin, begin + static_cast<std::size_t>(length), style, &link});
    }
  }
  return sorted;
}

// Returns the visible characters of the panel's text.
std::vector<Character> CharactersOf(const PanelOutcome& panel) {
  const auto runs = SortedRuns(panel.runs);
  std::vector<Character> characters;
  std::u16string gap;
  std::size_t byte = 0;
  for (std::size_t i = 0; i < panel.text.size();) {
    const std::size_t length = IsHigh(panel.text[i]) ? 2 : 1;
    const std::u16string units = panel.text.substr(i, length);
    const std::size_t end = byte + PlainUTF16to8(units).size();
    i += length;
    if (IsHidden(units.front())) {
      gap += units;
    } else {
      Character& character = characters.emplace_back();
      character.units = units;
      character.gap = ConvertGap(std::exchange(gap, {}));
      const auto after = runs.upper_bound(byte);
      if (after != runs.begin() && std::prev(after)->second.end >= end) {
        character.style = std::prev(after)->second.style;
        character.link = *std::prev(after)->second.link;
      }
    }
    byte = end;
  }
  return characters;
}

// Appends the visible characters of `text`. `gap` is the white space before `text`. `isFirst` is
// true if no visible character of the paragraph precedes `text`. Updates `gap` and `isFirst` for
// the next call.
void AddVisible(std::u16string_view text, std::optional<StyleID> style, const std::u16string& link,
                std::u16string& gap, bool& isFirst, std::vector<Character>& characters) {
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = IsHigh(text[i]) ? 2 : 1;
    const std::u16string units(text.substr(i, length));
    i += length;
    if (IsHidden(units.front())) {
      gap += units;
      continue;
    }
    characters.push_back({units, style, link, std::exchange(gap, {}), isFirst});
    isFirst = false;
  }
}

// Returns the visible characters of the layout. The characters of a bullet precede those of its
// change.
std::vector<Character> CharactersOf(const PanelLayout& layout) {
  std::vector<Character> characters;
  for (const LayoutParagraph& paragraph : layout.paragraphs) {
    // A layout omits the white space around a bullet, so do not compare this white space.
    for (std::u16string_view rest = paragraph.bullet; !rest.empty();) {
      const std::size_t length = IsHigh(rest.front()) ? 2 : 1;
      characters.push_back(
          {std::u16string(rest.substr(0, length)), StyleID::kStyleChangeText, {}, {}, true});
      rest.remove_prefix(length);
    }
    std::u16string gap;
    bool isFirst = true;
    for (const LayoutSpan& span : paragraph.spans) {
      const auto text =
          std::u16string_view(layout.text).substr(span.range.begin, span.range.length);
      AddVisible(text, span.style, span.link, gap, isFirst, characters);
    }
  }
  return characters;
}

std::string FirstCharacterError(const PanelLayout& layout, const PanelOutcome& panel) {
  const std::vector<Character> expected = CharactersOf(panel);
  const std::vector<Character> got = CharactersOf(layout);
  for (std::size_t i = 0; i < std::min(got.size(), expected.size()); ++i) {
    const std::string where = " of visible character " + std::to_string(i) + " '" +
                              PlainUTF16to8(expected[i].units) + "'";
    if (got[i].units != expected[i].units) return "the value" + where;
    if (got[i].style != expected[i].style) return "the style" + where;
    if (got[i].link != expected[i].link) return "the link" + where;
    if (!got[i].isFirst && got[i].gap != expected[i].gap) return "the white space" + where;
  }
  return got.size() == expected.size() ? "" : "the number of visible characters";
}

// Checks the ranges of a paragraph and its spans. Returns a description of the first error, or an
// empty string if there is none.
std::string FirstRangeError(const LayoutParagraph& paragraph, std::u16string_view text) {
  std::size_t end = paragraph.range.begin;
  for (const LayoutSpan& span : paragraph.spans) {
    if (span.range.begin != end) return "a gap or an overlap before a span";
    if (span.range.length == 0) return "an empty span";
    end += span.range.length;
    if (end < text.size() && IsLow(text[end])) return "a span splits a character";
  }
  if (end != paragraph.range.begin + paragraph.range.length)
    return "the spans do not cover the paragraph";
  if (end > text.size()) return "a paragraph after the end of the text";
  const auto own = text.substr(paragraph.range.begin, paragraph.range.length);
  if (own.find_first_of(u"\n\r\t\u2029\uFEFF") != own.npos) return "an invisible character";
  if (!own.empty() && (IsHidden(own.front()) || IsHidden(own.back()))) return "outer white space";
  return {};
}

std::string FirstRangeError(const PanelLayout& layout) {
  std::size_t begin = 0;
  for (const LayoutParagraph& paragraph : layout.paragraphs) {
    if (begin > 0 && layout.text.at(begin - 1) != u'\n') return "no line feed before a paragraph";
    if (paragraph.range.begin != begin) return "a paragraph does not follow the one before it";
    std::string error = FirstRangeError(paragraph, layout.text);
    if (!error.empty()) return error;
    begin += paragraph.range.length + 1;
  }
  const std::size_t size = layout.paragraphs.empty() ? 0 : begin - 1;
  return layout.text.size() == size ? "" : "text outside the paragraphs";
}

// Returns the styles that a paragraph of this kind can contain.
std::set<StyleID> StylesOf(ParagraphKind kind) {
  using namespace ornwhatsnew;
  switch (kind) {
    case ParagraphKind::kHeader:
      return {kStyleHeader};
    case ParagraphKind::kTitle:
      return {kStyleFeatureTitle, kStyleInternalCode, kStyleUnlockLabel};
    case ParagraphKind::kDescription:
      return {kStyleFeatureDescription, kStyleIssueLink, kStyleHotSpot};
    case ParagraphKind::kChange:
      return {kStyleChangeText, kStyleInternalWarning, kStyleInternalCode, kStyleIssueLink,
              kStyleCommitLink};
    case ParagraphKind::kNotice:
      return {kStyleHeader, kStyleHotSpot};
    case ParagraphKind::kRatingRequest:
      break;
  }
  return {};
}

// Checks a paragraph, except the positions of its ranges. Returns a description of the first error,
// or an empty string if there is none.
std::string FirstFieldError(const LayoutParagraph& paragraph, const PanelLayout& layout) {
  using enum ParagraphKind;
  const bool isOfPanel = paragraph.kind == kHeader || paragraph.kind == kNotice;
  const bool isChange = paragraph.kind == kChange;
  const bool isRating = paragraph.kind == kRatingRequest;
  if (paragraph.indentLevel != (paragraph.kind == kTitle ? 0 : 1)) return "the indent level";
  if (isOfPanel && !paragraph.itemKey.empty()) return "the item key of a header or notice";
  if (paragraph.isSection != (!isOfPanel && PlainIsSection(paragraph.itemKey))) return "isSection";
  if (!isChange && (!paragraph.bullet.empty() || !paragraph.hasText)) return "a field of a change";
  if (std::ranges::any_of(paragraph.bullet, IsHidden)) return "white space in a bullet";
  if (paragraph.rating.has_value() != isRating) return "the index of a rating request";
  if (isRating && layout.ratingRequests.at(*paragraph.rating).itemKey != paragraph.itemKey) {
    return "the item key of a rating request";
  }
  if (paragraph.range.length == 0 && !isChange && !isRating) return "an empty paragraph";
  const std::set<StyleID> styles = StylesOf(paragraph.kind);
  for (const LayoutSpan& span : paragraph.spans) {
    if (span.style && !styles.contains(*span.style)) return "a style in the wrong kind";
  }
  return {};
}

// Returns whether a paragraph of the kind `kind` can follow a paragraph of the kind `before`. If
// `before` has no value, returns whether a panel can start with `kind`. A layout omits titles and
// headers without visible characters, so a change, for example, can be the first paragraph.
bool CanFollow(ParagraphKind kind, std::optional<ParagraphKind> before) {
  using enum ParagraphKind;
  if (kind == kHeader) return !before;
  if (kind == kNotice) return !before || before == kHeader || before == kNotice;
  return before != kNotice;
}

std::string FirstFieldError(const PanelLayout& layout) {
  std::optional<ParagraphKind> before;
  std::size_t ratings = 0;
  for (const LayoutParagraph& paragraph : layout.paragraphs) {
    if (!CanFollow(paragraph.kind, before)) return "the order of the paragraphs";
    std::string error = FirstFieldError(paragraph, layout);
    if (!error.empty()) return error;
    if (paragraph.rating && *paragraph.rating != ratings++) return "the order of the ratings";
    before = paragraph.kind;
  }
  const bool hasItems =
      before && before != ParagraphKind::kHeader && before != ParagraphKind::kNotice;
  if (hasItems && !layout.hasItems) return "hasItems";
  return ratings == layout.ratingRequests.size() ? "" : "the number of rating requests";
}

// Returns the strings in the ranges of all paragraphs and spans, in UTF-8.
template <class Layout>
std::vector<std::string> Pieces(const Layout& layout) {
  std::vector<std::string> pieces;
  const auto add = [&](const TextRange& range) {
    const auto text = layout.text.substr(range.begin, range.length);
    if constexpr (std::is_same_v<decltype(text), const std::string>) {
      pieces.push_back(text);
    } else {
      pieces.push_back(PlainUTF16to8(text));
    }
  };
  for (const auto& paragraph : layout.paragraphs) {
    add(paragraph.range);
    for (const auto& span : paragraph.spans) add(span.range);
  }
  return pieces;
}

// Converts `string` from UTF-8 to UTF-16, and converts its white space in the same way as a layout.
// Removes white space at the start and the end.
std::u16string CleanedString(const std::string& string) {
  const std::u16string converted = ConvertGap(PlainUTF8to16(string));
  const std::size_t begin = converted.find_first_not_of(u" \u2028");
  if (begin == converted.npos) return {};
  return converted.substr(begin, converted.find_last_not_of(u" \u2028") + 1 - begin);
}

std::string FirstRatingError(const PanelLayout& layout, unsigned options,
                             const PanelOutcome& panel) {
  if ((options & kRatingBit) == 0) {
    return layout.ratingRequests.empty() ? "" : "a rating request outside the rating view";
  }
  std::set<std::string> keys;
  for (const auto& request : layout.ratingRequests) {
    const auto found = panel.ratingItems.find(request.itemKey);
    if (found == panel.ratingItems.end()) return "a rating request without a rating record";
    const PlainRatingRecord& record = found->second;
    if (request.title != CleanedString(record.name)) return "the title of a request";
    if (request.description != CleanedString(record.description)) {
      return "the description of a request";
    }
    // Do not compare a question that is a key text, because the request contains its translation.
    if (!PlainIsZString(record.customRating) &&
        request.question != CleanedString(record.customRating)) {
      return "the question of a request";
    }
    keys.insert(request.itemKey);
  }
  return keys.size() == panel.ratingItems.size() ? "" : "the number of rating requests";
}

}  // namespace

std::string FirstLayoutError(const PanelLayout& layout, const PanelOutcome& panel) {
  for (const std::string& error :
       {FirstRangeError(layout), FirstFieldError(layout), FirstCharacterError(layout, panel)}) {
    if (!error.empty()) return error;
  }
  const ornwhatsnew::PanelLayoutUTF8 converted = ConvertToUTF8(layout);
  if (converted.text != PlainUTF16to8(layout.text)) return "the text in UTF-8";
  return Pieces(converted) == Pieces(layout) ? "" : "a range in UTF-8";
}

std::string FirstLayoutError(ornwhatsnew::FeatureListData& list, FakeStateStore& state,
                             unsigned options, const PanelOutcome& panel) {
  const ornwhatsnew::DisplayOptions bits(static_cast<unsigned char>(options));
  state.TakeWrites();
  const PanelLayout preview = list.PreviewLayout(bits);
  const ornwhatsnew::NewCount count = list.CountNew(bits);
  if (!state.Writes().empty()) return "a preview or a count wrote the state";
  const PanelLayout layout = list.GetLayoutForDisplay(bits);
  if (state.TakeWrites() != panel.writes) return "the layout stored another state";
  if (preview != layout) return "the preview differs from the layout";
  std::string error = FirstLayoutError(layout, panel);
  if (error.empty()) error = FirstRatingError(layout, options, panel);
  if (!error.empty()) return error;
  const auto changes =
      std::ranges::count(layout.paragraphs, ParagraphKind::kChange, &LayoutParagraph::kind);
  if (count.changes != static_cast<std::size_t>(changes)) return "the number of changes";
  const auto titles = panel.runs.find(StyleID::kStyleFeatureTitle);
  const std::size_t items = titles == panel.runs.end() ? 0 : titles->second.size();
  if (count.items != items) return "the number of items";
  if (list.IsAnythingNew(bits) != (items > 0)) return "IsAnythingNew";
  return layout.hasItems == (items > 0) ? "" : "hasItems";
}

}  // namespace test_support
