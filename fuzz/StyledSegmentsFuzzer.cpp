// Fuzzes the function that splits a panel's text into segments with styles and links.
//
// The input consists of parts. The first part is the text in UTF-8, in which U+E000 to U+E7FF
// represent unpaired surrogates. Each other part is a style run: `style start length link`,
// separated by spaces.
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "fuzz/Input.h"
#include "fuzz/Property.h"
#include "hosts/common/StyledSegments.h"
#include "tests/support/PlainText.h"

namespace fuzz {
namespace {

using hosts::common::StyledSegment;
using hosts::common::StyleSet;
using ornwhatsnew::StyleID;
using ornwhatsnew::StyleRunMap;
using test_support::PlainUTF16to8;

std::u16string TextOf(std::string_view part) {
  std::u16string text = test_support::PlainUTF8to16(part);
  for (char16_t& unit : text) {
    if (unit >= 0xE000 && unit < 0xE800) unit = static_cast<char16_t>(unit - 0x800);
  }
  return text;
}

int ReadNumber(std::string_view& part) {
  int number = 0;
  const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), number);
  part.remove_prefix(static_cast<std::size_t>(end - part.data()));
  if (part.starts_with(' ')) part.remove_prefix(1);
  return number;
}

StyleRunMap RunsOf(Input& input) {
  StyleRunMap runs;
  while (!input.Rest().empty()) {
    std::string_view part = input.ReadPart();
    const auto style = static_cast<StyleID>(ReadNumber(part));
    const int start = ReadNumber(part);
    const int length = ReadNumber(part);
    runs[style].emplace_back(std::pair(start, length), TextOf(part));
  }
  return runs;
}

// The expected styles and link of the character in the bytes [begin, end) of the text. `AddRun`
// applies one run to them.
class PlainLook {
 public:
  PlainLook(std::size_t begin, std::size_t end, std::string_view text)
      : begin_(begin), end_(end), text_(text) {}

  void AddRun(StyleID style, const ornwhatsnew::StyleRun& run, std::size_t number) {
    const long long start = run.first.first;
    const bool covers = start <= static_cast<long long>(begin_) &&
                        start + run.first.second >= static_cast<long long>(end_);
    if (!covers || !StyleSet::IsMember(style)) return;
    styles.Set(style, true);
    if (run.second.empty()) return;
    // If several runs that cover the character have a link, the link of the run that starts last
    // applies. A run that starts inside a character begins at the next character.
    const std::tuple rank(FirstWholeCharacter(start), style, number);
    if (linkRank_ && rank < *linkRank_) return;
    linkRank_ = rank;
    link = PlainUTF16to8(run.second);
  }

  StyleSet styles;
  std::string link;

 private:
  std::size_t FirstWholeCharacter(long long start) const {
    std::size_t offset = start < 0 ? 0 : static_cast<std::size_t>(start);
    while (offset < text_.size() && (static_cast<unsigned char>(text_[offset]) & 0xC0) == 0x80) {
      ++offset;
    }
    return offset;
  }

  std::size_t begin_;
  std::size_t end_;
  std::string_view text_;
  std::optional<std::tuple<std::size_t, StyleID, std::size_t>> linkRank_;
};

PlainLook ExpectedLook(std::size_t begin, std::string_view text, const StyleRunMap& runs) {
  std::size_t end = begin + 1;
  while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) ++end;
  PlainLook look(begin, end, text);
  for (const auto& [style, ofStyle] : runs) {
    for (std::size_t i = 0; i < ofStyle.size(); ++i) look.AddRun(style, ofStyle[i], i);
  }
  return look;
}

void RequireLook(const StyledSegment& segment, std::size_t begin, std::string_view text,
                 const StyleRunMap& runs) {
  for (std::size_t offset = begin; offset < begin + segment.text.size(); ++offset) {
    if ((static_cast<unsigned char>(text[offset]) & 0xC0) == 0x80) continue;
    const PlainLook look = ExpectedLook(offset, text, runs);
    Require(segment.styles == look.styles, "a character has the styles of the runs that cover it");
    RequireEqual(segment.link, look.link,
                 "a character has the link of the last run that covers it");
  }
}

void Run(Input input) {
  const std::u16string text = TextOf(input.ReadPart());
  const StyleRunMap runs = RunsOf(input);
  const std::string utf8 = PlainUTF16to8(text);
  const StyledSegment* before = nullptr;
  std::string joined;
  const auto segments = hosts::common::SplitIntoStyledSegments(text, runs);
  for (const StyledSegment& segment : segments) {
    Require(!segment.text.empty(), "no segment is empty");
    Require(before == nullptr || before->styles != segment.styles || before->link != segment.link,
            "adjacent segments differ in styles or link");
    before = &segment;
    const std::size_t begin = joined.size();
    joined += segment.text;
    Require(joined.size() <= utf8.size(), "no segment is repeated");
    RequireLook(segment, begin, utf8, runs);
  }
  RequireEqual(joined, utf8, "the segments together are the text");
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Run(fuzz::Input(data, size));
  return 0;
}
