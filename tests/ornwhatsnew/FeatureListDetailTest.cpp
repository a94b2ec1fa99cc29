#include <ornwhatsnew/FeatureListDetail.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/Builders.h"

namespace ornwhatsnew {
namespace {

using Detail = FeatureListDetail;

const Detail kFullDetail("description", "version", "epic", "story", "salience", "first", "platform",
                         "rating", "url", "sha");

Detail WithSalience(const std::string& salience) {
  return *test_support::MakeDetail({.salience = salience});
}
Detail WithPlatform(const std::string& platform) {
  return *test_support::MakeDetail({.platform = platform});
}
Detail WithURL(const std::string& url) {
  return *test_support::MakeDetail({.url = url});
}

TEST(FeatureListDetail, GettersReturnTheTenFields) {
  EXPECT_EQ(kFullDetail.GetDescription(), "description");
  EXPECT_EQ(kFullDetail.GetChangeAddedVersion(), "version");
  EXPECT_EQ(kFullDetail.GetJIRAEpicID(), "epic");
  EXPECT_EQ(kFullDetail.GetJIRAStoryBugTaskID(), "story");
  EXPECT_EQ(kFullDetail.GetSalienceOptional(), "salience");
  EXPECT_EQ(kFullDetail.GetRelevantFirstVersionOptional(), "first");
  EXPECT_EQ(kFullDetail.GetRelevantPlatformOptional(), "platform");
  EXPECT_EQ(kFullDetail.GetRatingRequestOptional(), "rating");
  EXPECT_EQ(kFullDetail.GetViewMoreURLOptional(), "url");
  EXPECT_EQ(kFullDetail.GetSHAOptional(), "sha");
}

TEST(FeatureListDetail, GetFieldReturnsTheFieldOfEachKey) {
  EXPECT_EQ(kFullDetail.GetField(Detail::kKeyDescription), "description");
  EXPECT_EQ(kFullDetail.GetField(Detail::kKeyVersionAdded), "version");
  EXPECT_EQ(kFullDetail.GetField(Detail::kKeyJIRAEpicID), "epic");
  EXPECT_EQ(kFullDetail.GetField(Detail::kKeyJIRAStoryBugTaskID), "story");
  EXPECT_EQ(kFullDetail.GetField(Detail::kKeySalienceOptional), "salience");
  EXPECT_EQ(kFullDetail.GetField(Detail::kKeyRelevantFirstVersionOptional), "first");
  EXPECT_EQ(kFullDetail.GetField(Detail::kKeyRelevantPlatformOptional), "platform");
  EXPECT_EQ(kFullDetail.GetField(Detail::kKeyRequestFeedbackOptional), "rating");
  EXPECT_EQ(kFullDetail.GetField(Detail::kKeyViewMoreURL), "url");
  EXPECT_EQ(kFullDetail.GetField(Detail::kKeySHANum), "sha");
}

TEST(FeatureListDetail, FieldKeysNeverChange) {
  EXPECT_EQ(Detail::kKeyDescription, "kDescription");
  EXPECT_EQ(Detail::kKeyJIRAEpicID, "kJIRAEpicID");
  EXPECT_EQ(Detail::kKeyJIRAStoryBugTaskID, "kJIRAStoryBugTaskID");
  EXPECT_EQ(Detail::kKeyVersionAdded, "kVersionAdded");
  EXPECT_EQ(Detail::kKeySalienceOptional, "kSalienceOptional");
  EXPECT_EQ(Detail::kKeyRelevantFirstVersionOptional, "kRelevantFirstVersionOptional");
  EXPECT_EQ(Detail::kKeyRelevantPlatformOptional, "kRelevantPlatformOptional");
  EXPECT_EQ(Detail::kKeyRequestFeedbackOptional, "kRequestFeedbackOptional");
  EXPECT_EQ(Detail::kKeyViewMoreURL, "kViewMoreURL");
  EXPECT_EQ(Detail::kKeySHANum, "kSHANum");
}

TEST(FeatureListDetail, KeywordsMatchTheDataFile) {
  EXPECT_EQ(Detail::kSalienceHeadline, "Headline");
  EXPECT_EQ(Detail::kSalienceDetail, "Detail");
  EXPECT_EQ(Detail::kSalienceHideBetaFeature, "HideBetaFeature");
  EXPECT_EQ(Detail::kSalienceHideBetaFeatureFromExternal, "HideBetaFeatureFromExternal");
  EXPECT_EQ(Detail::kSalienceUnhideBetaFeature, "UnhideBetaFeature");
  EXPECT_EQ(Detail::kSalienceUnreviewed, "Unreviewed");
  EXPECT_EQ(Detail::kSalienceRatingHideBetaFeatureDescription, "RatingHidesBetaFeatureDescription");
  EXPECT_EQ(Detail::kRequestRating, "RequestRating");
  EXPECT_EQ(Detail::kPlatformWin, "Win");
  EXPECT_EQ(Detail::kPlatformMac, "Mac");
}

TEST(FeatureListDetail, ThrowsOutOfRangeForAnUnknownKey) {
  try {
    kFullDetail.GetField("kFeatureName");
    FAIL() << "GetField did not throw";
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "unordered_map::at: key not found");
  }
}

TEST(FeatureListDetail, CopiesFieldsFromViewsInColumnOrder) {
  const Detail detail(Detail::Fields{"version", "epic", "story", "salience", "rating", "first",
                                     "platform", "url", "sha", "description"});
  for (const DataColumnInfo& column : kDataColumns) {
    EXPECT_EQ(detail.GetField(column.fieldKey), kFullDetail.GetField(column.fieldKey));
  }
}

TEST(FeatureListDetail, HasOnlyTheFlagsThatWereSet) {
  Detail detail = kFullDetail;
  EXPECT_FALSE(detail.HasDuplicateURL());
  EXPECT_FALSE(detail.DetailInternalCouldNotMatchBetaFeature());
  detail.SetHasDuplicateURL(true);
  EXPECT_TRUE(detail.HasDuplicateURL());
  EXPECT_FALSE(detail.DetailInternalCouldNotMatchBetaFeature());
  detail.SetHasDuplicateURL(false);
  detail.SetCouldNotMatchBetaFeature(true);
  EXPECT_FALSE(detail.HasDuplicateURL());
  EXPECT_TRUE(detail.DetailInternalCouldNotMatchBetaFeature());
}

TEST(FeatureListDetail, SaliencesSetOverridesInAnyLetterCase) {
  const struct {
    const char* salience;
    bool hidden;
    bool internal;
    bool normal;
    bool unreviewed;
  } cases[] = {
      {"", false, false, false, false},
      {"Headline", false, false, false, false},
      {"HideBetaFeature", true, false, false, false},
      {"hidebetafeature", true, false, false, false},
      {"HIDEBETAFEATUREFROMEXTERNAL", false, true, false, false},
      {"unhideBetaFeature", false, false, true, false},
      {"UNREVIEWED", false, false, false, true},
      {"HideBetaFeature ", false, false, false, false},
  };
  for (const auto& [salience, hidden, internal, normal, unreviewed] : cases) {
    const Detail detail = WithSalience(salience);
    EXPECT_EQ(detail.DetailForcingItemToHiddenOverride(), hidden) << salience;
    EXPECT_EQ(detail.DetailForcingItemToInternalOverride(), internal) << salience;
    EXPECT_EQ(detail.DetailForcingItemToNormalVisibility(), normal) << salience;
    EXPECT_EQ(detail.DetailInternalOverrideUnreviewed(), unreviewed) << salience;
  }
}

TEST(FeatureListDetail, ClassifiesTheSalienceInAnyLetterCase) {
  using enum Detail::Salience;
  const std::pair<const char*, Detail::Salience> cases[] = {
      {"", kNone},
      {"headLine", kHeadline},
      {"DETAIL", kDetail},
      {"hidebetafeature", kHideBetaFeature},
      {"HideBetaFeatureFromExternal", kHideBetaFeatureFromExternal},
      {"unreviewed", kUnreviewed},
      {"RATINGHIDESBETAFEATUREDESCRIPTION", kRatingHidesBetaFeatureDescription},
      {"unhideBetaFeature", kUnhideBetaFeature},
      {"RatingHideBetaFeatureDescription", kUnknown},
      {"Headline ", kUnknown},
  };
  for (const auto& [text, salience] : cases) {
    EXPECT_EQ(WithSalience(text).GetSalience(), salience) << text;
  }
}

TEST(FeatureListDetail, ClassifiesThePlatformInAnyLetterCase) {
  using enum Detail::Platform;
  const std::pair<const char*, Detail::Platform> cases[] = {
      {"", kNone}, {"mac", kMac}, {"MAC", kMac}, {"wIn", kWin}, {"Linux", kOther}, {" ", kOther}};
  for (const auto& [text, platform] : cases) {
    EXPECT_EQ(WithPlatform(text).GetPlatform(), platform) << text;
    EXPECT_EQ(WithPlatform(text).HasUsablePlatform(), platform == kMac || platform == kWin) << text;
  }
}

TEST(FeatureListDetail, IsRelevantToVersionsSinceTheFirstAndBeforeTheAddedOne) {
  const auto detail = test_support::MakeDetail({.version = "25.0", .firstVersion = "24.0"});
  const std::int64_t version24 = 24'000;
  const std::int64_t version25 = 25'000;
  const auto isRelevantTo = [&detail](std::vector<std::int64_t> versions) {
    return detail->IsRelevantToVersions(versions);
  };
  EXPECT_FALSE(isRelevantTo({}));
  EXPECT_FALSE(isRelevantTo({version24 - 1}));
  EXPECT_TRUE(isRelevantTo({version24}));
  EXPECT_TRUE(isRelevantTo({version25 - 1}));
  EXPECT_FALSE(isRelevantTo({version25}));
  EXPECT_FALSE(isRelevantTo({1, version25}));
  EXPECT_TRUE(isRelevantTo({1, version24 + 5, version25}));
}

TEST(FeatureListDetail, IsRelevantToAllVersionsIfTheFirstVersionIsEmpty) {
  EXPECT_TRUE(test_support::MakeDetail({.version = "25.0"})->IsRelevantToVersions({}));
}

TEST(FeatureListDetail, SalienceKeywordIsWellFormedInAnyLetterCase) {
  for (const char* salience :
       {"HEADLINE", "headline", "Detail", "HideBetaFeature", "HideBetaFeatureFromExternal",
        "Unreviewed", "RatingHidesBetaFeatureDescription"}) {
    EXPECT_FALSE(WithSalience(salience).HasMalformedSalience()) << salience;
  }
}

TEST(FeatureListDetail, EmptySalienceIsWellFormed) {
  EXPECT_FALSE(WithSalience("").HasMalformedSalience());
}

TEST(FeatureListDetail, UnhideSalienceCountsAsMalformed) {
  EXPECT_TRUE(WithSalience("UnhideBetaFeature").HasMalformedSalience());
}

TEST(FeatureListDetail, UnknownSalienceIsMalformed) {
  for (const char* salience : {"Loud", "Headline ", " ", "RatingHideBetaFeatureDescription"}) {
    EXPECT_TRUE(WithSalience(salience).HasMalformedSalience()) << salience;
  }
}

TEST(FeatureListDetail, KnownPlatformIsWellFormedInAnyLetterCase) {
  for (const char* platform : {"mac", "Mac", "MAC", "win", "WIN"}) {
    EXPECT_FALSE(WithPlatform(platform).HasMalformedPlatform()) << platform;
  }
}

TEST(FeatureListDetail, UnknownPlatformIsMalformed) {
  for (const char* platform : {"Linux", "macOS", "Windows", "Mac,Win", " Mac"}) {
    EXPECT_TRUE(WithPlatform(platform).HasMalformedPlatform()) << platform;
  }
}

TEST(FeatureListDetail, EmptyPlatformIsWellFormed) {
  EXPECT_FALSE(WithPlatform("").HasMalformedPlatform());
}

TEST(FeatureListDetail, URLWithAnUpperCaseSchemeIsMalformed) {
  EXPECT_TRUE(WithURL("HTTPS://a.example").HasMalformedURL());
}

TEST(FeatureListDetail, OnlyAnHttpsURLIsWellFormed) {
  EXPECT_FALSE(WithURL("https://a.example").HasMalformedURL());
  EXPECT_FALSE(WithURL("https://").HasMalformedURL());
  for (const char* url : {"", "http://a.example", " https://a.example", "https:/", "a.example"}) {
    EXPECT_TRUE(WithURL(url).HasMalformedURL()) << url;
  }
}

TEST(FeatureListDetail, NumberOfAnEmptyVersionIsZero) {
  EXPECT_EQ(kFullDetail.ParseVersionStringToNumber(""), 0);
}

TEST(FeatureListDetail, NonNumericComponentCountsAsZero) {
  EXPECT_EQ(kFullDetail.ParseVersionStringToNumber("1.x.3"), 1000003);
}

TEST(FeatureListDetail, ComponentOfAThousandOrMoreCarriesIntoThePrecedingOne) {
  EXPECT_EQ(kFullDetail.ParseVersionStringToNumber("2000"), 2000);
  EXPECT_EQ(kFullDetail.ParseVersionStringToNumber("1.2000"), 3000);
}

TEST(FeatureListDetail, VersionsOfDifferentLengthsHaveDifferentNumbers) {
  EXPECT_EQ(kFullDetail.ParseVersionStringToNumber("25.1"), 25001);
  EXPECT_EQ(kFullDetail.ParseVersionStringToNumber("25.1.0"), 25001000);
  EXPECT_EQ(kFullDetail.ParseVersionStringToNumber("25.1.3"), 25001003);
  EXPECT_EQ(kFullDetail.ParseVersionStringToNumber("25.1.0.123"), 25001000123);
}

}  // namespace
}  // namespace ornwhatsnew
