// Gives the library access to the version, the build number and the platform of the host.
//
// A host sets these values once at startup:
//
//   orncore::config::SetClientInfo(std::make_shared<orncore::config::FixedClientInfo>(
//       u"25.1", u"42", "Mac"));
//
// A host can also implement ClientInfo itself.
#ifndef ORNCORE_CONFIG_CLIENTINFO_H_
#define ORNCORE_CONFIG_CLIENTINFO_H_

#include <memory>

#include <orncore/Export.h>
#include <orncore/string/Conversion.h>

namespace orncore::config {

using string::UTF16String;
using string::UTF8String;

/// The interface that a host implements to return its version, build number and platform.
/// Exceptions that an implementation throws propagate to the code that called the library.
///
/// Threads: the library calls the methods on the thread that uses a list. The console command
/// `ValidateWhatsNew` uses a list on a background thread. If a host uses lists on several threads,
/// the methods must be safe to call from all of them at the same time.
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
  /// Returns the platform of the host in UTF-8. It is "Mac" or "Win", as in column 7 of a data
  /// file, or the name of another system, such as "Linux". Letter case does not matter.
  virtual UTF8String GetClientPlatform() const = 0;
};

/// Returns three fixed strings. `ClientInfo` documents the overridden methods.
///
/// Threads: safe to use from any thread, because the strings never change.
class ORN_EXPORT FixedClientInfo final : public ClientInfo {
 public:
  /// Stores a dotted version such as "25.1", a build number such as "42", and a platform such as
  /// "Mac".
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

/// Replaces the object that `GetClientVersion`, `GetClientBuildNumber` and `GetClientPlatform`
/// query. The library shares ownership of `clientInfo`. Null restores the defaults: version "25.1",
/// build number "42", platform "Mac". Safe to call from any thread.
ORN_EXPORT void SetClientInfo(std::shared_ptr<const ClientInfo> clientInfo);

/// Returns the version of the host. Queries `ClientInfo` at every call and caches nothing. Safe to
/// call from any thread.
ORN_EXPORT UTF16String GetClientVersion();
/// Returns the build number of the host. Queries `ClientInfo` at every call and caches nothing.
/// Safe to call from any thread.
ORN_EXPORT UTF16String GetClientBuildNumber();
/// Returns the platform of the host in UTF-8. Queries `ClientInfo` at every call and caches
/// nothing. Safe to call from any thread.
ORN_EXPORT UTF8String GetClientPlatform();

}  // namespace orncore::config

#endif  // ORNCORE_CONFIG_CLIENTINFO_H_
