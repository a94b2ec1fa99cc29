// Reads host descriptions. A host description is a JSON object with the application's version and
// platform, its beta features, permissions, links, debug entries and dictionary. The programs of
// this project configure the library's services from it.
//
//   {
//     "clientVersion": "25.1", "buildNumber": "42", "platform": "Mac",
//     "terminating": false, "usageLogging": true, "internalFeaturesAllowed": false,
//     "betaFeatures": [{"internalKey": "feature.export", "epicKey": "EPIC-7", "name": "Export",
//                       "description": "", "visibility": 0, "enabled": true,
//                       "availableForUser": false}],
//     "links": {"issueLink": "https://issues.example/browse/@0", "commitLink": "",
//               "privacyPage": "https://account.example/privacy", "issuePrefix": "MAP-"},
//     "debug": {"a key": "a value"},
//     "dictionary": {"$$$/path/key": "a translated text"},
//     "dictionaryFiles": ["de.mo"]
//   }
//
// Every member is optional. The structures below contain the defaults. The member "$schema" may
// contain the path of the JSON schema (see schema/), so that an editor can check the description.
#ifndef HOSTS_COMMON_HOSTDESCRIPTION_H_
#define HOSTS_COMMON_HOSTDESCRIPTION_H_

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <ornappsupport/links/PanelLinks.h>

namespace hosts::common {

class JsonReader;

/// One entry of the feature table. All strings are UTF-8.
struct BetaFeatureDescription {
  std::string internalKey;
  std::string epicKey;
  std::string name;
  std::string description;
  std::int32_t visibility = 0;
  bool enabled = false;
  bool availableForUser = false;
};

/// The content of a host description. The strings in `links` are UTF-16, and all others are UTF-8.
struct HostDescription {
  using Texts = std::map<std::string, std::string, std::less<>>;

  std::string clientVersion = "25.1";
  std::string buildNumber = "42";
  std::string platform = "Mac";
  bool terminating = false;
  bool usageLogging = true;
  bool internalFeaturesAllowed = false;
  /// The beta features in file order. If two features have the same internal key, the later one
  /// applies.
  std::vector<BetaFeatureDescription> betaFeatures;
  /// The links of the panel, and the prefix of issue keys. They must be valid
  /// (`ornappsupport::links::AreValid`).
  ornappsupport::links::PanelLinks links;
  /// The debug entries by key.
  Texts debug;
  /// The translations by key. The key is the part of a key text before `=`.
  Texts dictionary;
  /// The paths of compiled gettext catalogs (.mo) with more translations. A relative path is
  /// relative to the folder of the description.
  std::vector<std::string> dictionaryFiles;
};

/// The names of the members of a host description, in the order in which error messages list them.
inline constexpr std::array<std::string_view, 11> kHostMembers = {
    "clientVersion",           "buildNumber",  "platform", "terminating", "usageLogging",
    "internalFeaturesAllowed", "betaFeatures", "links",    "debug",       "dictionary",
    "dictionaryFiles"};

/// Returns the host description in a file. Adds the translations of its dictionary files to its
/// dictionary. A translation in the description takes precedence over one in a file, and an earlier
/// file takes precedence over a later one. Throws `JsonError` if a file cannot be read, if
/// `ParseHostDescription` rejects the description, or if `ParseGettextCatalog` rejects a dictionary
/// file.
HostDescription ReadHostDescription(const std::filesystem::path& file);

/// Returns the paths of the dictionary files of `host`, the host description in `file`.
std::vector<std::filesystem::path> DictionaryPaths(const HostDescription& host,
                                                   const std::filesystem::path& file);

/// Parses a host description from a JSON string. Does not read its dictionary files. Error messages
/// begin with `sourceName`. Throws `JsonError` in these cases:
/// - `json` is not a JSON object, contains NUL, is nested too deeply, or has too many array
///   elements.
/// - A number is beyond the range of a double.
/// - A member is unknown or duplicate, has the wrong type, or is out of range.
/// - `SetPanelLinks` does not accept a link.
/// - The version, the build number or the platform contains a control character.
HostDescription ParseHostDescription(std::string_view json, std::string_view sourceName);

/// Replaces each member of `host` that `object` contains. Ignores unknown members of `object`.
/// Unlike `ParseHostDescription`, accepts control characters in the version, the build number and
/// the platform.
///
/// On failure, throws `JsonError`, and some members of `host` may already have been replaced. These
/// are failures:
/// - `object` is not a JSON object.
/// - A member has the wrong type or is out of range.
/// - A beta feature or the links have an unknown member.
/// - `SetPanelLinks` does not accept a link.
void ReadHostMembers(const JsonReader& object, HostDescription& host);

/// Configures the services of this process from `host`: client information, features, permissions,
/// links, dictionary, termination and usage logging. Replaces the store of the debug database with
/// a store in memory that contains the debug entries of `host`.
void InstallHost(const HostDescription& host);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_HOSTDESCRIPTION_H_
