// The panel's text cut into pieces that each carry one set of styles and one link: what a view
// needs to draw it, whatever it draws on.
#ifndef HOSTS_COMMON_STYLEDSEGMENTS_H_
#define HOSTS_COMMON_STYLEDSEGMENTS_H_

#include <bitset>
#include <string_view>
#include <vector>

#include <ornwhatsnew/utility/SharedTypes.h>

namespace hosts::common {

/// A set of style numbers from 0 to 31; numbers beyond belong to nobody and are left out.
class StyleSet {
 public:
  static constexpr int kSize = 32;

  StyleSet() = default;

  bool Has(ornwhatsnew::StyleID style) const noexcept {
    return IsMember(style) && styles_.test(Place(style));
  }
  void Set(ornwhatsnew::StyleID style, bool isMember) noexcept {
    if (IsMember(style)) styles_.set(Place(style), isMember);
  }

  friend bool operator==(const StyleSet&, const StyleSet&) = default;

  /// Whether the number can be in a set.
  static bool IsMember(ornwhatsnew::StyleID style) noexcept {
    return static_cast<int>(style) >= 0 && static_cast<int>(style) < kSize;
  }

 private:
  static std::size_t Place(ornwhatsnew::StyleID style) noexcept {
    return static_cast<std::size_t>(style);
  }

  std::bitset<kSize> styles_;
};

/// A piece of the text. `link` is the string of the run that lies over it, empty when none has one;
/// of several the one that starts last counts.
struct StyledSegment {
  ornwhatsnew::UTF8String text;
  StyleSet styles;
  ornwhatsnew::UTF8String link;

  friend bool operator==(const StyledSegment&, const StyledSegment&) = default;
};

/// Cuts `text` at the ends of `runs`, whose starts and lengths count bytes of the text in UTF-8.
/// The segments follow each other without gap or overlap, none is empty, neighbours differ in
/// styles or link, and their texts together are the whole text in UTF-8.
///
/// Any run map will do: a run is clipped to the text, and a character that a run covers only in
/// part (the run of a commit link reaches one byte past its text) does not belong to it. Runs may
/// overlap. Takes time linear in the text, and n log n in the number of runs.
std::vector<StyledSegment> SplitIntoStyledSegments(std::u16string_view text,
                                                   const ornwhatsnew::StyleRunMap& runs);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_STYLEDSEGMENTS_H_
