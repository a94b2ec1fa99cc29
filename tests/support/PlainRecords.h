// The changes and items of the plain implementation. They compute their identities and their
// visibility without the library. They share the host's services and the `Guid` class with the
// library.
#ifndef TESTS_SUPPORT_PLAINRECORDS_H_
#define TESTS_SUPPORT_PLAINRECORDS_H_

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include <orncore/utility/Guid.h>
#include <ornwhatsnew/FeatureListItem.h>

namespace test_support {

using PlainGuids = std::set<orncore::utility::Guid>;
using PlainVersions = std::set<std::string>;

/// A change: the ten fields of its row and two flags.
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

  /// Return whether a field is malformed. An empty platform or salience is not; an empty URL is.
  bool HasMalformedPlatform() const;
  bool HasMalformedSalience() const;
  bool HasMalformedURL() const;

  /// Return the identities of the change.
  orncore::utility::Guid Seen() const;
  orncore::utility::Guid Rated() const;

  /// Returns whether the change is shown with these display options. `versions` are the versions
  /// that the user has run.
  bool IsShown(unsigned options, const PlainGuids& seen, const PlainVersions& versions) const;

  friend bool operator==(const PlainChange&, const PlainChange&) = default;
};

/// A feature or a section.
struct PlainItem {
  std::string groupingKey = {};
  std::string internalKey = {};
  bool internalOverride = false;
  std::int32_t visibility = 0;
  std::string name = {};
  std::string description = {};
  std::string viewMoreURL = {};
  std::vector<PlainChange> changes = {};

  /// Appends a change. May set the link and the internal override.
  void Add(PlainChange change);

  /// Return the identities of the item.
  orncore::utility::Guid Seen() const;
  orncore::utility::Guid Rated() const;

  /// Returns whether the item is shown with these display options. Queries the host's services.
  bool IsShown(unsigned options, const PlainGuids& seen, const PlainVersions& versions) const;
};

/// Returns whether usage logging is off for a user who is not an internal user. Such a user cannot
/// rate features.
bool PlainAnalyticsDisabled();
/// Returns whether the list shows an internal user the features that are switched off, too.
bool PlainShowsAllOffFeatures();

/// Return copies of the records of the library.
PlainChange PlainCopy(const ornwhatsnew::FeatureListDetail& change);
PlainItem PlainCopy(const ornwhatsnew::FeatureListItem& item);

}  // namespace test_support

#endif  // TESTS_SUPPORT_PLAINRECORDS_H_
