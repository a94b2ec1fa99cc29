// A host description: a JSON object with the application's version and platform, its beta features,
// permissions, debug entries and dictionary. Our programs run the library inside such a host.
//
//   {
//     "clientVersion": "25.1", "buildNumber": "42", "platform": "Mac",
//     "terminating": false, "usageLogging": true, "internalFeaturesAllowed": false,
//     "betaFeatures": [{"internalKey": "feature.export", "epicKey": "EPIC-7", "name": "Export",
//                       "description": "", "visibility": 0, "enabled": true,
//                       "availableForUser": false}],
//     "debug": {"a key": "a text"},
//     "dictionary": {"$$$/path/key": "a translated text"}
//   }
//
// Every member is optional; the structures below hold the defaults. The folder schema/ has a JSON
// schema, which a description may name under "$schema" for editors.
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

/// One entry of the feature table. All texts are UTF-8.
struct BetaFeatureDescription {
  std::string internalKey;
  std::string epicKey;
  std::string name;
  std::string description;
  std::int32_t visibility = 0;
  bool enabled = false;
  bool availableForUser = false;
};

/// A host. All texts are UTF-8.
struct HostDescription {
  using Texts = std::map<std::string, std::string, std::less<>>;

  std::string clientVersion = "25.1";
  std::string buildNumber = "42";
  std::string platform = "Mac";
  bool terminating = false;
  bool usageLogging = true;
  bool internalFeaturesAllowed = false;
  /// In the order written; a later entry replaces an earlier one with the same internal key.
  std::vector<BetaFeatureDescription> betaFeatures;
  Texts debug;
  /// Translated texts by key. The key is the part of a key text before `=`.
  Texts dictionary;
};

/// The members of a host description, in the order in which error messages list them.
inline constexpr std::array<std::string_view, 9> kHostMembers = {
    "clientVersion",           "buildNumber",  "platform", "terminating", "usageLogging",
    "internalFeaturesAllowed", "betaFeatures", "debug",    "dictionary"};

/// Reads a host description. Throws `JsonError` if the file cannot be read or is not JSON, and for
/// members that are unknown, duplicate, or of the wrong type or range.
HostDescription ReadHostDescription(const std::filesystem::path& file);

/// The same for a text. Error messages begin with `sourceName`.
HostDescription ParseHostDescription(std::string_view json, std::string_view sourceName);

/// Replaces those members of `host` that the object has. Other members of the object are ignored.
/// Throws `JsonError`; `host` may then have some of the new members.
void ReadHostMembers(const JsonReader& object, HostDescription& host);

/// Configures the process's services by the description: client information, features, permissions,
/// dictionary, termination and usage logging. The debug entries replace the content of the debug
/// database, which is then in memory.
void InstallHost(const HostDescription& host);

/// The same without the debug database, which stays unchanged.
void InstallHostServices(const HostDescription& host);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_HOSTDESCRIPTION_H_
