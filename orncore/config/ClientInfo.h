// The version, the build number and the platform of the running application.
//
// A host sets them once, at start:
//
//   orncore::config::SetClientInfo(std::make_shared<orncore::config::FixedClientInfo>(
//       u"25.1", u"42", "Mac"));
//
// or derives its own ClientInfo.
#ifndef ORNCORE_CONFIG_CLIENTINFO_H_
#define ORNCORE_CONFIG_CLIENTINFO_H_

#include <memory>

#include <orncore/Export.h>
#include <orncore/string/Conversion.h>

namespace orncore::config {

using string::UTF16String;
using string::UTF8String;

/// The interface that a host implements to describe itself.
///
/// Threads: called on the threads that call the functions below.
class ORN_EXPORT ClientInfo {
 public:
  ClientInfo() = default;
  ClientInfo(const ClientInfo&) = delete;
  ClientInfo& operator=(const ClientInfo&) = delete;
  virtual ~ClientInfo();

  /// Returns the version without the build number, such as "25.1".
  virtual UTF16String GetClientVersion() const = 0;
  /// Returns the build number, such as "42".
  virtual UTF16String GetClientBuildNumber() const = 0;
  /// Returns the platform that the application runs on, UTF-8, as data files name it: "Mac" or
  /// "Win".
  virtual UTF8String GetClientPlatform() const = 0;
};

/// Three fixed strings. `ClientInfo` documents the overridden methods.
///
/// Threads: safe to use from any thread, because it never changes.
class ORN_EXPORT FixedClientInfo final : public ClientInfo {
 public:
  /// Stores a dotted version such as "25.1", a build number such as "42", and "Mac" or "Win".
  FixedClientInfo(UTF16String version, UTF16String buildNumber, UTF8String platform);
  ~FixedClientInfo() override;

  UTF16String GetClientVersion() const override;
  UTF16String GetClientBuildNumber() const override;
  UTF8String GetClientPlatform() const override;

 private:
  UTF16String version_;
  UTF16String buildNumber_;
  UTF8String platform_;
};

/// Replaces what the functions below return. Null restores the defaults: version "25.1", build
/// number "42", platform "Mac". Safe to call from any thread; so are the functions below.
ORN_EXPORT void SetClientInfo(std::shared_ptr<const ClientInfo> clientInfo);

/// Returns the host's version. Queries the host at every call and caches nothing.
ORN_EXPORT UTF16String GetClientVersion();
/// Returns the host's build number.
ORN_EXPORT UTF16String GetClientBuildNumber();
/// Returns the host's platform, UTF-8.
ORN_EXPORT UTF8String GetClientPlatform();

}  // namespace orncore::config

#endif  // ORNCORE_CONFIG_CLIENTINFO_H_
