// Changes and items as plain data, with a second implementation of their identities and their
// visibility. They share with the library the host's services, the `Guid` class, and the section
// and field names that `PlainCopy` reads from the library's records.
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

/// A change: its ten fields and its two flags.
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

  bool HasMalformedPlatform() const;
  bool HasMalformedSalience() const;
  bool HasMalformedURL() const;

  orncore::utility::Guid Seen() const;
  orncore::utility::Guid Rated() const;

  /// Returns whether the change is shown with these option bits.
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

  /// Appends a change and updates the link and the internal override.
  void Add(PlainChange change);

  orncore::utility::Guid Seen() const;
  orncore::utility::Guid Rated() const;

  /// Returns whether the item is shown with these option bits. Queries the host's services.
  bool IsShown(unsigned options, const PlainGuids& seen, const PlainVersions& versions) const;
};

/// Returns whether the user may not be asked for ratings.
bool PlainAnalyticsDisabled();
/// Returns whether features that are switched off are shown, too.
bool PlainShowsAllOffFeatures();

/// Copies the library's records.
PlainChange PlainCopy(const ornwhatsnew::FeatureListDetail& change);
PlainItem PlainCopy(const ornwhatsnew::FeatureListItem& item);

}  // namespace test_support

#endif  // TESTS_SUPPORT_PLAINRECORDS_H_
