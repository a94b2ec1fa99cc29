// The fixed texts of data files and persisted values, each written once.
//
// The exported constants are strings that are made from these. The library itself uses only these
// views, because a list in a static object of the host can exist before the strings do.
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
