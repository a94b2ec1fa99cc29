// Provides the changes and items of the plain implementation. They compute their identities and
// their visibility without the library. They share the host's services and the `Guid` class with
// the library.
#ifndef TESTS_SUPPORT_PLAINRECORDS_H_
#define TESTS_SUPPORT_PLAINRECORDS_H_

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include <orncore/utility/Guid.h>
#include <ornwhatsnew/FeatureListItem.h>

namespace test_support {

/// The bits of the display options, as the plain implementation interprets them.
inline constexpr unsigned kOnlyNewBit = 0x01;
inline constexpr unsigned kPlatformBit = 0x02;
inline constexpr unsigned kVersionBit = 0x04;
inline constexpr unsigned kHeadlinesBit = 0x08;
inline constexpr unsigned kRatingBit = 0x10;

using PlainGuids = std::set<orncore::utility::Guid>;
using PlainVersions = std::set<std::string>;

/// A change in the plain implementation: the ten fields of its row and two flags. `duplicateURL` is
/// true if the change has a URL but its item already had a link. `unmatched` is true if neither the
/// grouping ID nor the story ID is the key of an item.
struct PlainChange {
  std::string description = {};
  std::string versionAdded = {};
  std::string epic = {};
  std::string story = {};
  std::string salience = {};
  std::string firstVersion = {};
  std::string platform = {};
  std::string ratingRequest = {};
  std::string url = {};
  std::string sha = {};
  bool duplicateURL = false;
  bool unmatched = false;

  /// Return whether a field is malformed. An empty platform or salience is well-formed, but an
  /// empty URL is malformed.
  bool HasMalformedPlatform() const;
  bool HasMalformedSalience() const;
  bool HasMalformedURL() const;

  /// Return the seen and the rated identity of the change.
  orncore::utility::Guid Seen() const;
  orncore::utility::Guid Rated() const;

  /// Returns whether the change is shown with these display options. `seen` contains the identities
  /// from the state. `versions` contains the full version of the host, and all full versions in
  /// which the user opened the panel. Queries the host for its platform.
  bool IsShown(unsigned options, const PlainGuids& seen, const PlainVersions& versions) const;

  friend bool operator==(const PlainChange&, const PlainChange&) = default;
};

/// A feature or a section in the plain implementation.
struct PlainItem {
  std::string groupingKey = {};
  std::string internalKey = {};
  bool internalOverride = false;
  std::int32_t visibility = 0;
  std::string name = {};
  std::string description = {};
  std::string viewMoreURL = {};
  std::vector<PlainChange> changes = {};

  /// Appends a change. Sets the internal override if the item is a feature and the salience is
  /// HideBetaFeatureFromExternal. Sets the link if the URL of the change is well-formed and the
  /// item has no link. Sets `duplicateURL` of the change if the change has a URL and the item
  /// already has a link.
  void Add(PlainChange change);

  /// Return the seen and the rated identity of the item.
  orncore::utility::Guid Seen() const;
  orncore::utility::Guid Rated() const;

  /// Returns whether the item is shown with these display options. `seen` and `versions` have the
  /// same meaning as in `PlainChange::IsShown`. Queries the host's services.
  bool IsShown(unsigned options, const PlainGuids& seen, const PlainVersions& versions) const;
};

/// Returns true if usage logging is off and the user is not an internal user. Such a user cannot
/// rate features.
bool PlainAnalyticsDisabled();
/// Returns whether a debug switch shows the user all features that are off. The switch affects only
/// internal users.
bool PlainShowsAllOffFeatures();

/// Return copies of a change and an item of the library.
PlainChange PlainCopy(const ornwhatsnew::FeatureListDetail& change);
PlainItem PlainCopy(const ornwhatsnew::FeatureListItem& item);

}  // namespace test_support

#endif  // TESTS_SUPPORT_PLAINRECORDS_H_
