// Compares the visibility rules for changes and items with the plain implementation. The tests
// combine all display options with many changes, items, hosts and states.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <ornwhatsnew/FeatureListItem.h>

#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"
#include "tests/support/PlainRecords.h"

namespace ornwhatsnew {
namespace {

using test_support::ChangeRow;
using test_support::MakeDetail;
using test_support::MakeItem;
using test_support::PlainCopy;
using test_support::PlainGuids;
using test_support::PlainVersions;

constexpr unsigned kOptionCombinations = 32;

// Each number describes a host. The bits of the number have these meanings:
//
//    1: The feature is enabled.
//    2: The feature is available to the user.
//    4: The user is an internal user.
//    8: The debug switch that shows disabled features is on.
//   16: Usage logging is off.
//   32: The application is terminating.
//
// The omitted combinations would not test further rules.
constexpr unsigned kHosts[] = {0, 1, 2, 4, 5, 6, 8, 12, 13, 16 + 1, 16 + 5, 32 + 1, 32 + 5};

std::string Describe(const ChangeRow& row) {
  return row.version + '|' + row.salience + '|' + row.ratingRequest + '|' + row.firstVersion + '|' +
         row.platform + '|' + row.description;
}

std::vector<ChangeRow> AllChanges() {
  std::vector<ChangeRow> rows;
  for (const char* description : {"", "Text"}) {
    for (const char* salience : {"", "Headline", "DETAIL", "UnhideBetaFeature", "Loud"}) {
      for (const char* ratingRequest : {"", "RequestRating"}) {
        for (const char* firstVersion : {"", "24.0.0.0", "x"}) {
          for (const char* platform : {"", "Mac", "win", "Linux"}) {
            rows.push_back({.version = "25.0.0.0",
                            .salience = salience,
                            .ratingRequest = ratingRequest,
                            .firstVersion = firstVersion,
                            .platform = platform,
                            .description = description});
          }
        }
      }
    }
  }
  return rows;
}

class VisibilityGrid : public test_support::FakeHostTest {
 protected:
  void ExpectSameForAllOptions(const FeatureListDetail& change, const GuidSet& seen,
                               const VersionSet& versions) {
    const auto plain = PlainCopy(change);
    const PlainGuids plainSeen(seen.begin(), seen.end());
    const PlainVersions plainVersions(versions.begin(), versions.end());
    for (unsigned options = 0; options < kOptionCombinations; ++options) {
      ASSERT_EQ(change.ShouldShowItemToUser(static_cast<unsigned char>(options), seen, versions),
                plain.IsShown(options, plainSeen, plainVersions))
          << "options " << options << ", " << seen.size() << " seen, " << versions.size()
          << " versions";
    }
  }

  void ExpectSameForAllOptions(const FeatureListItem& item, const GuidSet& seen) {
    const auto plain = PlainCopy(item);
    const PlainGuids plainSeen(seen.begin(), seen.end());
    for (unsigned options = 0; options < kOptionCombinations; ++options) {
      ASSERT_EQ(item.ShouldShowItemToUser(static_cast<unsigned char>(options), seen, {"24.1.0.0"}),
                plain.IsShown(options, plainSeen, {"24.1.0.0"}))
          << "options " << options << ", " << seen.size() << " seen";
    }
  }

  // Compares the library with the plain implementation for items with the key `groupingKey`, the
  // visibility `visibility`, and various changes. The set of seen identities is empty at first. The
  // function then adds the seen identity of the first change, the item's seen identity and the
  // item's rated identity. It compares the results at the start and after each addition.
  void ExpectSameItems(const std::string& groupingKey, std::int32_t visibility) {
    const ChangeRow plain = {.description = "Plain"};
    const ChangeRow other = {.platform = "Win", .description = "Other"};
    const ChangeRow hide = {.salience = "HideBetaFeature", .description = "Hide"};
    const ChangeRow unhide = {.salience = "UnhideBetaFeature"};
    const ChangeRow internal = {.salience = "HideBetaFeatureFromExternal"};
    const ChangeRow rating = {.ratingRequest = "RequestRating"};
    const ChangeRow both = {
        .ratingRequest = "How?", .firstVersion = "24.0.0.0", .description = "B"};
    const std::vector<ChangeRow> changeLists[] = {{},
                                                  {plain},
                                                  {other},
                                                  {hide},
                                                  {plain, unhide},
                                                  {unhide, hide},
                                                  {rating},
                                                  {both, other},
                                                  {internal, both},
                                                  {rating, both, unhide}};
    for (const auto& changes : changeLists) {
      SCOPED_TRACE(changes.empty() ? "no change" : Describe(changes.back()));
      const auto item = MakeItem({groupingKey, "feature", "Name", "", visibility}, changes);
      GuidSet seen;
      ExpectSameForAllOptions(*item, seen);
      if (!changes.empty()) seen.insert(item->GetAllChanges()[0]->GetItemSeenGuid());
      ExpectSameForAllOptions(*item, seen);
      seen.insert(item->GetItemSeenGuid());
      ExpectSameForAllOptions(*item, seen);
      seen.insert(item->GetItemRatedGuid());
      ExpectSameForAllOptions(*item, seen);
    }
  }
};

TEST_F(VisibilityGrid, ChangesMatchThePlainImplementation) {
  for (const char* platform : {"Mac", "Win"}) {
    host_.SetPlatform(platform);
    for (const ChangeRow& row : AllChanges()) {
      SCOPED_TRACE(Describe(row));
      const auto change = MakeDetail(row);
      for (const GuidSet& seen : {GuidSet(), GuidSet{change->GetItemSeenGuid()}}) {
        for (const VersionSet& versions :
             {VersionSet(), VersionSet{""}, VersionSet{"24.0.0.0"}, VersionSet{"25.0.0.0"},
              VersionSet{"23.9.0.0", "26.0.0.0", "24.9.0.0"}}) {
          ExpectSameForAllOptions(*change, seen, versions);
          if (HasFatalFailure()) return;
        }
      }
    }
  }
}

TEST_F(VisibilityGrid, ItemsMatchThePlainImplementation) {
  for (const unsigned host : kHosts) {
    SCOPED_TRACE("host " + std::to_string(host));
    host_.AddFeature({.internalKey = "feature",
                      .enabled = (host & 1) != 0,
                      .availableForUser = (host & 2) != 0});
    host_.SetInternalFeaturesAllowed((host & 4) != 0);
    host_.ShowAllOffFeatures((host & 8) != 0);
    host_.SetUsageLogging((host & 16) == 0);
    host_.SetTerminating((host & 32) != 0);
    for (const char* key : {"EPIC-1", "BUGFIX", "internal", "UNREVIEWED"}) {
      SCOPED_TRACE(key);
      for (const std::int32_t visibility : {0, 1, 2}) {
        ExpectSameItems(key, visibility);
        if (HasFatalFailure()) return;
      }
    }
  }
}

}  // namespace
}  // namespace ornwhatsnew
