// A host as a JSON object describes it: who the application is, its beta features, its permissions,
// debug entries and dictionary. Our programs run the library inside such a host.
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
// Every member may be absent; the structures below hold the defaults. schema/ holds the same as a
// JSON schema, which a description may name under "$schema" for editors; it is not followed.
#ifndef HOSTS_COMMON_HOSTDESCRIPTION_H_
#define HOSTS_COMMON_HOSTDESCRIPTION_H_

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace orncore::debug {
class MemoryDebugStore;
}  // namespace orncore::debug

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

/// Which of the two state callbacks a list is given.
enum class Callbacks { kBoth, kGetter, kSetter, kNone };

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
  /// From keys, as written before `=`, to translated texts.
  Texts dictionary;
  /// What the host's store holds, and which callbacks there are: only for scenarios. A program
  /// keeps its state in a store of its own.
  Texts state;
  Callbacks callbacks = Callbacks::kBoth;
};

/// A description that cannot be used. `what()` is one line: the file, the path inside it (or line
/// and column where it is not JSON), what was expected and what stands there.
class HostDescriptionError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads a program's host description. Throws `HostDescriptionError` for a file that cannot be
/// read, for text that is not JSON, and for members that are unknown, doubled, or of the wrong type
/// or range; `state` and `callbacks` count as such. Nothing is installed.
HostDescription ReadHostDescription(const std::filesystem::path& file);

/// The same from a text; `sourceName` stands in errors for the file.
HostDescription ParseHostDescription(std::string_view json, std::string_view sourceName);

/// Which members an object may have.
enum class HostMembers {
  kProgram,         ///< all but `state` and `callbacks`, and `$schema`, which is not kept
  kScenario,        ///< all
  kScenarioChange,  ///< all but `callbacks`: what may change while a list lives
};

/// Replaces those members of `host` that the object has, each whole. Names in `others` may stand
/// among them and are left to the caller. Throws `JsonError` (see JsonReader.h); `host` may then
/// hold some of the new members.
void ReadHostMembers(const JsonReader& object, HostMembers members,
                     std::span<const std::string_view> others, HostDescription& host);

/// Makes the process's services answer as the host describes: client information, features,
/// permissions, dictionary, termination and usage logging. The debug entries become the whole
/// content of a debug database in memory, which is returned for whoever wants to look into it.
/// `state` and `callbacks` concern no service.
std::shared_ptr<orncore::debug::MemoryDebugStore> InstallHost(const HostDescription& host);

/// The same without the debug database, which stays as it is.
void InstallHostButDebugEntries(const HostDescription& host);
/// Only the debug database: these entries become its whole content.
std::shared_ptr<orncore::debug::MemoryDebugStore> InstallDebugEntries(
    const HostDescription::Texts& entries);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_HOSTDESCRIPTION_H_
