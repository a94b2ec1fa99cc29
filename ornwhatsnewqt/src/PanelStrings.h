// Lists the key texts of the panel. `localizedText` returns their translations.
#ifndef ORNWHATSNEWQT_SRC_PANELSTRINGS_H_
#define ORNWHATSNEWQT_SRC_PANELSTRINGS_H_

#include <array>

namespace ornwhatsnewqt::strings {

inline constexpr const char* kNews = "$$$/ornwhatsnewqt/Panel/News=What's New";
inline constexpr const char* kNewsDescription =
    "$$$/ornwhatsnewqt/Panel/NewsDescription=The changes in this application";
inline constexpr const char* kRatings = "$$$/ornwhatsnewqt/Panel/Ratings=Rate Features";
inline constexpr const char* kRatingsDescription =
    "$$$/ornwhatsnewqt/Panel/RatingsDescription=Tell the developers how you like a feature";
inline constexpr const char* kPrint = "$$$/ornwhatsnewqt/Panel/Print=Print";
inline constexpr const char* kPrintDescription =
    "$$$/ornwhatsnewqt/Panel/PrintDescription=Print the changes that are shown";
inline constexpr const char* kDismiss = "$$$/ornwhatsnewqt/Panel/Dismiss=Dismiss";
inline constexpr const char* kDismissDescription =
    "$$$/ornwhatsnewqt/Panel/DismissDescription=Hide this message";
inline constexpr const char* kStateError =
    "$$$/ornwhatsnewqt/Panel/StateError=Cannot remember what you have seen: @0";

inline constexpr const char* kDataError =
    "$$$/ornwhatsnewqt/Panel/DataError=Cannot show what is new: @0";
inline constexpr const char* kAnnounce =
    "$$$/ornwhatsnewqt/Panel/Announce=Open this panel after updates";
inline constexpr const char* kAnnounceDescription =
    "$$$/ornwhatsnewqt/Panel/AnnounceDescription=Show the changes once after each update";

inline constexpr const char* kFilters = "$$$/ornwhatsnewqt/Filter/Filters=Filters";
inline constexpr const char* kOnlyNew = "$$$/ornwhatsnewqt/Filter/OnlyNew=Only new";
inline constexpr const char* kOnlyNewDescription =
    "$$$/ornwhatsnewqt/Filter/OnlyNewDescription=Show only changes that you have not seen";
inline constexpr const char* kThisPlatform = "$$$/ornwhatsnewqt/Filter/ThisPlatform=This platform";
inline constexpr const char* kThisPlatformDescription =
    "$$$/ornwhatsnewqt/Filter/ThisPlatformDescription=Hide changes for other platforms";
inline constexpr const char* kMyVersions = "$$$/ornwhatsnewqt/Filter/MyVersions=My versions";
inline constexpr const char* kMyVersionsDescription =
    "$$$/ornwhatsnewqt/Filter/MyVersionsDescription=Hide changes to versions that you have not "
    "used";

inline constexpr const char* kSearch = "$$$/ornwhatsnewqt/Search/Search=Search";
inline constexpr const char* kSearchDescription =
    "$$$/ornwhatsnewqt/Search/SearchDescription=Search the changes that are shown";
inline constexpr const char* kPrevious = "$$$/ornwhatsnewqt/Search/Previous=Previous match";
inline constexpr const char* kPreviousDescription =
    "$$$/ornwhatsnewqt/Search/PreviousDescription=Select the match before this one";
inline constexpr const char* kNext = "$$$/ornwhatsnewqt/Search/Next=Next match";
inline constexpr const char* kNextDescription =
    "$$$/ornwhatsnewqt/Search/NextDescription=Select the match after this one";
inline constexpr const char* kCloseSearch = "$$$/ornwhatsnewqt/Search/Close=Close search";
inline constexpr const char* kCloseSearchDescription =
    "$$$/ornwhatsnewqt/Search/CloseDescription=Hide the search field";
inline constexpr const char* kMatchNumber = "$$$/ornwhatsnewqt/Search/MatchNumber=@0 of @1";
inline constexpr const char* kNoMatch = "$$$/ornwhatsnewqt/Search/NoMatch=No matches";

inline constexpr const char* kQuestion = "$$$/ornwhatsnewqt/Rating/Question=How do you like it?";
inline constexpr const char* kStars = "$$$/ornwhatsnewqt/Rating/Stars=@0 of 5 stars";
/// The names of the ratings from 1 to 5 stars.
inline constexpr std::array<const char*, 5> kStarNames = {
    "$$$/ornwhatsnewqt/Rating/OneStar=Poor",        "$$$/ornwhatsnewqt/Rating/TwoStars=Fair",
    "$$$/ornwhatsnewqt/Rating/ThreeStars=Good",     "$$$/ornwhatsnewqt/Rating/FourStars=Very good",
    "$$$/ornwhatsnewqt/Rating/FiveStars=Excellent",
};
inline constexpr const char* kComment = "$$$/ornwhatsnewqt/Rating/Comment=Comment (optional)";
inline constexpr const char* kCommentDescription =
    "$$$/ornwhatsnewqt/Rating/CommentDescription=A line that is sent with the rating";
inline constexpr const char* kSend = "$$$/ornwhatsnewqt/Rating/Send=Send rating";
inline constexpr const char* kSendDescription =
    "$$$/ornwhatsnewqt/Rating/SendDescription=Send your rating of @0";
inline constexpr const char* kThanks = "$$$/ornwhatsnewqt/Rating/Thanks=Thank you for your rating.";

}  // namespace ornwhatsnewqt::strings

#endif  // ORNWHATSNEWQT_SRC_PANELSTRINGS_H_
