// Tests that frequent queries, and functions that run for every row, allocate no memory. Tests that
// loading a list, and creating its text or layout, allocate at most a fixed number of times for
// each change.
#include <string>

#include <gtest/gtest.h>

#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "tests/support/Allocations.h"
#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Matchers.h"

namespace ornwhatsnew {
namespace {

using test_support::ChangeRow;
using test_support::CountAllocations;
using test_support::DataFile;

// A string that is too long for the small-string optimization, so that each copy allocates memory.
const std::string kLong(200, 'x');

ChangeRow LongRow(const std::string& groupingID) {
  return {.version = "26.0.0.0",
          .groupingID = groupingID,
          .ratingRequest = "RequestRating",
          .firstVersion = "24.0.0.0",
          .platform = "Mac",
          .url = "https://a.example/" + kLong,
          .sha = kLong,
          .description = kLong};
}

TEST(Allocation, ComparesAsciiKeywordsWithoutAllocating) {
  const std::string upper(200, 'X');
  bool equal = false;
  EXPECT_EQ(CountAllocations([&] { equal = CaseInsensitiveEqual(kLong, upper); }), 0U);
  EXPECT_TRUE(equal);
  EXPECT_EQ(CountAllocations([&] { equal = IsSpecialCaseSection(kLong); }), 0U);
  EXPECT_FALSE(equal);
}

TEST(Allocation, ComputesVersionNumbersWithoutAllocating) {
  std::int64_t number = 0;
  EXPECT_EQ(CountAllocations([&] { number = VersionNumber("25.1.0.123"); }), 0U);
  EXPECT_EQ(number, 25001000123);
}

TEST(Allocation, ComputesIdentitiesWithoutAllocating) {
  const auto item = test_support::MakeItem({kLong, kLong, kLong, "$$$/private/" + kLong + "=x"},
                                           {LongRow("EPIC-1"), LongRow("EPIC-1")});
  Guid guid;
  EXPECT_EQ(CountAllocations([&] { guid = item->GetAllChanges()[0]->GetItemSeenGuid(); }), 0U);
  EXPECT_EQ(CountAllocations([&] { guid = item->GetAllChanges()[0]->GetItemRatedGuid(); }), 0U);
  EXPECT_EQ(CountAllocations([&] { guid = item->GetItemSeenGuid(); }), 0U);
  EXPECT_EQ(CountAllocations([&] { guid = item->GetItemRatedGuid(); }), 0U);
  EXPECT_NE(guid, Guid());
}

class ListAllocation : public test_support::FakeHostTest {
 protected:
  ListAllocation() {
    for (const char* key : {"1", "2", "3"}) {
      host_.AddFeature({.internalKey = std::string("feature") + key,
                        .epicKey = std::string("EPIC-") + key,
                        .name = kLong,
                        .description = kLong});
    }
    DataFile file;
    for (int i = 0; i < 20; ++i) file.Row(LongRow("EPIC-" + std::to_string(1 + i % 3)));
    file.Row(LongRow("BUGFIX"));
    list_ = std::make_unique<FeatureListData>(file.Text(), host_.Getter(), host_.Setter());
    test_support::Format(*list_);
    list_->RefreshInternalSeenState();  // all shown items and changes are now seen
  }

  std::unique_ptr<FeatureListData> list_;
};

TEST_F(ListAllocation, IsAnythingNewDoesNotAllocateIfEverythingIsSeen) {
  for (const DisplayOptions options :
       {kShowOnlyNew, kShowOnlyNew | kFilterRelevantPlatform | kFilterRelevantVersion}) {
    bool anythingNew = true;
    EXPECT_EQ(CountAllocations([&] { anythingNew = list_->IsAnythingNew(options); }), 0U)
        << testing::PrintToString(options);
    EXPECT_FALSE(anythingNew);
  }
}

TEST_F(ListAllocation, IsAnythingNeedingRatingDoesNotAllocate) {
  bool needed = false;
  EXPECT_EQ(CountAllocations([&] { needed = list_->IsAnythingNeedingRating(); }), 0U);
  EXPECT_TRUE(needed);
  for (const char* key : {"EPIC-1", "EPIC-2", "EPIC-3"}) list_->MarkItemHasBeenRated(key);
  EXPECT_EQ(CountAllocations([&] { needed = list_->IsAnythingNeedingRating(); }), 0U);
  EXPECT_FALSE(needed);
}

// Counts the allocations for a small and a large file. The tests limit the count for the small file
// and the difference between the counts. The difference excludes the allocations that every file
// needs, so its limit is stricter.
class LargeListAllocation : public ListAllocation {
 protected:
  static constexpr int kFewRows = 1'000;
  static constexpr int kManyRows = 10'000;

  static std::string FileOf(int rows) {
    DataFile file;
    for (int i = 0; i < rows; ++i) file.Row(LongRow("EPIC-" + std::to_string(1 + i % 3)));
    return file.Text();
  }

  std::size_t CountLoad(int rows) {
    const std::string text = FileOf(rows);
    return CountAllocations([&] { list_->InitWithData(text); });
  }

  std::size_t CountDisplay(int rows) {
    list_->InitWithData(FileOf(rows));
    StyleRunMap runs;
    UTF16String text;
    const std::size_t count =
        CountAllocations([&] { text = list_->GetFormattedTextForDisplay({}, {}, runs, nullptr); });
    EXPECT_EQ(runs[kStyleInternalCode].size(), static_cast<std::size_t>(rows));
    return count;
  }
};

TEST_F(LargeListAllocation, LayoutAllocatesAtMostEightTimesPerChange) {
  constexpr std::size_t kPerChange = 8;  // as many as for the text, and one for the spans
  const auto count = [this](int rows) {
    list_->InitWithData(FileOf(rows));
    PanelLayout layout;
    const std::size_t allocations =
        CountAllocations([&] { layout = list_->GetLayoutForDisplay({}); });
    EXPECT_GT(layout.paragraphs.size(), static_cast<std::size_t>(rows));
    return allocations;
  };
  const std::size_t few = count(kFewRows);
  const std::size_t many = count(kManyRows);
  EXPECT_LE(few, kPerChange * kFewRows + 300);
  EXPECT_LE(many - few, kPerChange * (kManyRows - kFewRows) + 50);
}

TEST_F(LargeListAllocation, LoadingAllocatesOncePerChangeAndOncePerLongField) {
  constexpr std::size_t kPerChange = 4;  // the change, its description, commit and URL
  const std::size_t few = CountLoad(kFewRows);
  const std::size_t many = CountLoad(kManyRows);
  EXPECT_LE(few, kPerChange * kFewRows + 300);
  EXPECT_LE(many - few, kPerChange * (kManyRows - kFewRows) + 50);
}

TEST_F(LargeListAllocation, DisplayingAllocatesAtMostSevenTimesPerChange) {
  constexpr std::size_t kPerChange = 7;  // two for the platform, five for the version range
  const std::size_t few = CountDisplay(kFewRows);
  const std::size_t many = CountDisplay(kManyRows);
  EXPECT_LE(few, kPerChange * kFewRows + 300);
  EXPECT_LE(many - few, kPerChange * (kManyRows - kFewRows) + 50);
}

}  // namespace
}  // namespace ornwhatsnew
