// Splits the panel's text into segments that a view can draw one after the other. Each segment has
// one set of styles and one link.
#ifndef HOSTS_COMMON_STYLEDSEGMENTS_H_
#define HOSTS_COMMON_STYLEDSEGMENTS_H_

#include <bitset>
#include <string_view>
#include <vector>

#include <ornwhatsnew/utility/SharedTypes.h>

namespace hosts::common {

/// A set of style numbers from 0 to 31. It ignores all other numbers, because no style has them.
class StyleSet {
 public:
  static constexpr int kSize = 32;

  StyleSet() = default;

  bool Has(ornwhatsnew::StyleID style) const noexcept {
    return IsMember(style) && styles_.test(Index(style));
  }
  void Set(ornwhatsnew::StyleID style, bool isMember) noexcept {
    if (IsMember(style)) styles_.set(Index(style), isMember);
  }

  friend bool operator==(const StyleSet&, const StyleSet&) = default;

  /// Returns whether `style` is a number from 0 to 31.
  static bool IsMember(ornwhatsnew::StyleID style) noexcept {
    return static_cast<int>(style) >= 0 && static_cast<int>(style) < kSize;
  }

 private:
  static std::size_t Index(ornwhatsnew::StyleID style) noexcept {
    return static_cast<std::size_t>(style);
  }

  std::bitset<kSize> styles_;
};

/// A segment of the panel's text. `link` is the string of a style run that covers the segment. It
/// is empty if no such run has a string. If several of them have a string, `link` is the string of
/// the run that starts last.
struct StyledSegment {
  ornwhatsnew::UTF8String text;
  StyleSet styles;
  ornwhatsnew::UTF8String link;

  friend bool operator==(const StyledSegment&, const StyledSegment&) = default;
};

/// Splits `text` wherever a run starts or ends, and returns the segments. The starts and lengths of
/// `runs` count UTF-8 bytes of `text`. Replaces unpaired surrogates with U+FFFD. The segments cover
/// the whole text in order, without gaps or overlaps. No segment is empty, and adjacent segments
/// differ in their styles or links.
///
/// Accepts any run map, including overlapping runs. Clips each run to the text and to the
/// characters that it covers completely. The run of a commit link must be clipped, because it ends
/// one byte past its text. The time is linear in the length of the text, and O(n log n) in the
/// number of runs.
std::vector<StyledSegment> SplitIntoStyledSegments(std::u16string_view text,
                                                   const ornwhatsnew::StyleRunMap& runs);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_STYLEDSEGMENTS_H_
