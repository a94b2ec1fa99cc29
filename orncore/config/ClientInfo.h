// Who the running application is: its version, its build number and its platform.
//
// A host says so once, at start:
//
//   orncore::config::SetClientInfo(std::make_shared<orncore::config::FixedClientInfo>(
//       u"25.1", u"42", "Mac"));
//
// or derives its own ClientInfo, which is asked anew at every call.
#ifndef ORNCORE_CONFIG_CLIENTINFO_H_
#define ORNCORE_CONFIG_CLIENTINFO_H_

#include <memory>

#include <orncore/Export.h>
#include <orncore/string/Types.h>

namespace orncore::config {

using string::UTF16String;
using string::UTF8String;

/// What the host tells of itself: the interface that it implements.
///
/// Threads: called on whatever thread asks.
class ORN_EXPORT ClientInfo {
 public:
  ClientInfo() = default;
  ClientInfo(const ClientInfo&) = delete;
  ClientInfo& operator=(const ClientInfo&) = delete;
  virtual ~ClientInfo();

  /// The version without the build number, such as "25.1".
  virtual UTF16String GetClientVersion() const = 0;
  /// The build number, such as "42".
  virtual UTF16String GetClientBuildNumber() const = 0;
  /// The platform that the application runs on, UTF-8, as data files name it: "Mac", "Win", ....
  virtual UTF8String GetClientPlatform() const = 0;
};

/// Three fixed texts. What it overrides is described at the interface.
///
/// Threads: never changes after its construction.
class ORN_EXPORT FixedClientInfo final : public ClientInfo {
 public:
  /// Answers these: a dotted version such as `25.1`, a build number such as `42`, and "Mac" or
  /// "Win".
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

/// Replaces what the three functions below answer; null: version "25.1", build number "42",
/// platform "Mac", as at the start. Not while another thread asks.
ORN_EXPORT void SetClientInfo(std::shared_ptr<const ClientInfo> clientInfo);

/// The host's version, asked anew at every call and never cached. Safe from any thread while none
/// replaces the client information; so are the two below.
ORN_EXPORT UTF16String GetClientVersion();
/// The host's build number.
ORN_EXPORT UTF16String GetClientBuildNumber();
/// The host's platform, UTF-8.
ORN_EXPORT UTF8String GetClientPlatform();

}  // namespace orncore::config

#endif  // ORNCORE_CONFIG_CLIENTINFO_H_
