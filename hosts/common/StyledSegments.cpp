#include "hosts/common/StyledSegments.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <queue>
#include <utility>

#include <orncore/string/Conversion.h>

namespace hosts::common {
namespace {

using ornwhatsnew::StyleID;
using ornwhatsnew::UTF16String;

/// The range of a run, clipped to the text and to whole characters. `begin` and `end` are byte
/// offsets in the text.
struct Range {
  std::size_t begin;
  std::size_t end;
  StyleID style;
  const UTF16String* link;
};

bool IsCharacterStart(std::string_view text, std::size_t offset) {
  return offset == text.size() || (static_cast<unsigned char>(text[offset]) & 0xC0U) != 0x80U;
}

std::size_t Clip(std::int64_t offset, std::string_view text) {
  return static_cast<std::size_t>(
      std::clamp<std::int64_t>(offset, 0, static_cast<std::int64_t>(text.size())));
}

Range WholeCharacters(StyleID style, const ornwhatsnew::StyleRun& run, std::string_view text) {
  const std::int64_t start = run.first.first;
  std::size_t begin = Clip(start, text);
  std::size_t end = Clip(start + run.first.second, text);
  while (!IsCharacterStart(text, begin)) ++begin;
  while (!IsCharacterStart(text, end)) --end;
  return {begin, end, style, &run.second};
}

std::vector<Range> SortedRanges(const ornwhatsnew::StyleRunMap& runs, std::string_view text) {
  std::vector<Range> ranges;
  for (const auto& [style, styleRuns] : runs) {
    if (!StyleSet::IsMember(style)) continue;
    for (const ornwhatsnew::StyleRun& run : styleRuns) {
      const Range range = WholeCharacters(style, run, text);
      if (range.begin < range.end) ranges.push_back(range);
    }
  }
  // The map is unordered. Sort runs with the same start by style, so that the result does not
  // depend on the map's order. The sort is stable and does not change the order of the
  // runs of one style.
  std::ranges::stable_sort(ranges, [](const Range& a, const Range& b) {
    return a.begin != b.begin ? a.begin < b.begin : a.style < b.style;
  });
  return ranges;
}

/// The style runs that cover the current offset in the text.
class OpenRanges {
 public:
  void Add(const Range& range) {
    if (++counts_[Index(range.style)] == 1) styles_.Set(range.style, true);
    ends_.push({range.end, range.style});
    if (!range.link->empty()) links_.push_back({range.end, range.link});
  }

  void CloseUntil(std::size_t offset) {
    while (!ends_.empty() && ends_.top().offset <= offset) {
      const StyleID style = ends_.top().style;
      if (--counts_[Index(style)] == 0) styles_.Set(style, false);
      ends_.pop();
    }
    // `Link` needs only the last element, which is the link that started last. An earlier element
    // may therefore remain after its end. It is removed when it becomes the last element.
    while (!links_.empty() && links_.back().end <= offset) links_.pop_back();
  }

  bool IsEmpty() const { return ends_.empty(); }
  std::size_t NextEnd() const { return ends_.top().offset; }
  const StyleSet& Styles() const { return styles_; }
  const UTF16String* Link() const { return links_.empty() ? nullptr : links_.back().link; }

 private:
  struct End {
    std::size_t offset;
    StyleID style;
    friend bool operator<(const End& a, const End& b) { return a.offset > b.offset; }
  };
  struct OpenLink {
    std::size_t end;
    const UTF16String* link;
  };

  static std::size_t Index(StyleID style) { return static_cast<std::size_t>(style); }

  std::priority_queue<End> ends_;
  std::vector<OpenLink> links_;
  std::array<std::size_t, StyleSet::kSize> counts_{};
  StyleSet styles_;
};

void AppendSegment(std::vector<StyledSegment>& segments, std::string_view text,
                   const OpenRanges& open) {
  if (text.empty()) return;
  ornwhatsnew::UTF8String link;
  if (open.Link() != nullptr) orncore::string::UTF16to8(*open.Link(), link);
  if (!segments.empty() && segments.back().styles == open.Styles() &&
      segments.back().link == link) {
    segments.back().text.append(text);
    return;
  }
  segments.push_back({ornwhatsnew::UTF8String(text), open.Styles(), std::move(link)});
}

}  // namespace

std::vector<StyledSegment> SplitIntoStyledSegments(std::u16string_view text,
                                                   const ornwhatsnew::StyleRunMap& runs) {
  const ornwhatsnew::UTF8String utf8 = orncore::string::UTF16to8(text);
  const std::vector<Range> ranges = SortedRanges(runs, utf8);
  std::vector<StyledSegment> segments;
  OpenRanges open;
  std::size_t offset = 0;
  auto next = ranges.begin();
  while (offset < utf8.size()) {
    open.CloseUntil(offset);
    for (; next != ranges.end() && next->begin <= offset; ++next) open.Add(*next);
    std::size_t end = next == ranges.end() ? utf8.size() : next->begin;
    if (!open.IsEmpty()) end = std::min(end, open.NextEnd());
    AppendSegment(segments, std::string_view(utf8).substr(offset, end - offset), open);
    offset = end;
  }
  return segments;
}

}  // namespace hosts::common
