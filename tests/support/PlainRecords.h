// Changes and items as plain data, with their identities and the question whether a user sees them,
// written the slow and plain way. Nothing here calls the library but for the host's services.
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

/// A change: its ten texts and its two marks.
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

  /// Whether it is listed, for these option bits.
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

  /// Appends a change; URL and override follow.
  void Add(PlainChange change);

  orncore::utility::Guid Seen() const;
  orncore::utility::Guid Rated() const;

  /// Whether it is listed, for these option bits. Asks the host's services.
  bool IsShown(unsigned options, const PlainGuids& seen, const PlainVersions& versions) const;
};

/// Whether the user opted out of usage logging.
bool PlainAnalyticsDisabled();
/// Whether features that are switched off are listed all the same.
bool PlainShowsAllOffFeatures();

/// What the library's records hold.
PlainChange PlainCopy(const ornwhatsnew::FeatureListDetail& change);
PlainItem PlainCopy(const ornwhatsnew::FeatureListItem& item);

}  // namespace test_support

#endif  // TESTS_SUPPORT_PLAINRECORDS_H_
