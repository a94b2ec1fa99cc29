// Defines the keywords of data files and the keys of the state.
//
// The exported constants are `std::string` copies of the constants in this header. A list does not
// use the copies, because a static object of the host can create a list before the copies are
// initialised.
#ifndef ORNWHATSNEW_SRC_RULES_KEYWORDS_H_
#define ORNWHATSNEW_SRC_RULES_KEYWORDS_H_

#include <string_view>

namespace ornwhatsnew::keywords {

inline constexpr std::string_view kMisc = "MISC";
inline constexpr std::string_view kBugfix = "BUGFIX";
inline constexpr std::string_view kInternal = "INTERNAL";
inline constexpr std::string_view kUnreviewedSection = "UNREVIEWED";

inline constexpr std::string_view kHeadline = "Headline";
inline constexpr std::string_view kDetail = "Detail";
inline constexpr std::string_view kHideBetaFeature = "HideBetaFeature";
inline constexpr std::string_view kHideBetaFeatureFromExternal = "HideBetaFeatureFromExternal";
inline constexpr std::string_view kUnhideBetaFeature = "UnhideBetaFeature";
inline constexpr std::string_view kUnreviewed = "Unreviewed";
inline constexpr std::string_view kRatingHidesBetaFeatureDescription =
    "RatingHidesBetaFeatureDescription";

inline constexpr std::string_view kRequestRating = "RequestRating";
inline constexpr std::string_view kWin = "Win";
inline constexpr std::string_view kMac = "Mac";

inline constexpr std::string_view kAllSeenItems = "WhatsNew.AllSeenItems";
inline constexpr std::string_view kLastVersionSeen = "WhatsNew.LastVersionSeenWhatsNew";
inline constexpr std::string_view kAllVersionsSeen = "WhatsNew.AllVersionSeenWhatsNew";

}  // namespace ornwhatsnew::keywords

#endif  // ORNWHATSNEW_SRC_RULES_KEYWORDS_H_
