// Reads host descriptions. A host description is a JSON object with the application's version and
// platform, its beta features, permissions, debug entries and dictionary. The programs of this
// project configure the library's services from it.
//
//   {
//     "clientVersion": "25.1", "buildNumber": "42", "platform": "Mac",
//     "terminating": false, "usageLogging": true, "internalFeaturesAllowed": false,
//     "betaFeatures": [{"internalKey": "feature.export", "epicKey": "EPIC-7", "name": "Export",
//                       "description": "", "visibility": 0, "enabled": true,
//                       "availableForUser": false}],
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

/// The content of a host description. All strings are UTF-8.
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
  /// The debug entries by key.
  Texts debug;
  /// The translations by key. The key is the part of a key text before `=`.
  Texts dictionary;
  /// The names of compiled gettext catalogs (.mo) with more translations. A relative name starts at
  /// the folder of the description.
  std::vector<std::string> dictionaryFiles;
};

/// The names of the members of a host description, in the order in which error messages list them.
inline constexpr std::array<std::string_view, 10> kHostMembers = {
    "clientVersion",           "buildNumber",  "platform", "terminating", "usageLogging",
    "internalFeaturesAllowed", "betaFeatures", "debug",    "dictionary",  "dictionaryFiles"};

/// Reads a host description from a file. Adds the translations of its dictionary files to its
/// dictionary. A translation in the description takes precedence over one in a file, and a file
/// over those after it. Throws `JsonError` if a file cannot be read or has the wrong content.
HostDescription ReadHostDescription(const std::filesystem::path& file);

/// Parses a host description from a JSON string. Does not read its dictionary files. Error messages
/// begin with `sourceName`. Throws `JsonError` if `json` is not valid JSON, contains NUL, or is
/// nested too deeply. Also throws it if a member is unknown, duplicate, or of the wrong type or
/// range, or if the version, the build number or the platform contains a control character.
HostDescription ParseHostDescription(std::string_view json, std::string_view sourceName);

/// Replaces each member of `host` that `object` contains. Ignores unknown members of `object`, and
/// accepts control characters in every string.
/// Throws `JsonError` if `object` is not a JSON object, if a member has the wrong type or range, or
/// if a beta feature has an unknown member. Some members of `host` may already be replaced then.
void ReadHostMembers(const JsonReader& object, HostDescription& host);

/// Configures the services of this process from `host`: client information, features, permissions,
/// dictionary, termination and usage logging. Replaces the store of the debug database with a store
/// in memory that contains the debug entries of `host`.
void InstallHost(const HostDescription& host);

/// Configures the same services as `InstallHost`, but does not change the debug database.
void InstallHostServices(const HostDescription& host);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_HOSTDESCRIPTION_H_
