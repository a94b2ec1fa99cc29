#include <orncore/config/ClientInfo.h>

#include <utility>

#include "orncore/src/utility/ServiceHolder.h"

namespace orncore::config {
namespace {

constexpr const char16_t* kDefaultVersion = u"25.1";
constexpr const char16_t* kDefaultBuildNumber = u"42";
constexpr const char* kDefaultPlatform = "Mac";

utility::ServiceHolder<const ClientInfo> clientInfoHolder;

}  // namespace

ClientInfo::~ClientInfo() = default;

FixedClientInfo::FixedClientInfo(UTF16String version, UTF16String buildNumber, UTF8String platform)
    : version_(std::move(version)),
      buildNumber_(std::move(buildNumber)),
      platform_(std::move(platform)) {}

FixedClientInfo::~FixedClientInfo() = default;

UTF16String FixedClientInfo::GetClientVersion() const {
  return version_;
}

UTF16String FixedClientInfo::GetClientBuildNumber() const {
  return buildNumber_;
}

UTF8String FixedClientInfo::GetClientPlatform() const {
  return platform_;
}

void SetClientInfo(std::shared_ptr<const ClientInfo> clientInfo) {
  clientInfoHolder.Set(std::move(clientInfo));
}

UTF16String GetClientVersion() {
  const auto clientInfo = clientInfoHolder.Get();
  return clientInfo ? clientInfo->GetClientVersion() : UTF16String(kDefaultVersion);
}

UTF16String GetClientBuildNumber() {
  const auto clientInfo = clientInfoHolder.Get();
  return clientInfo ? clientInfo->GetClientBuildNumber() : UTF16String(kDefaultBuildNumber);
}

UTF8String GetClientPlatform() {
  const auto clientInfo = clientInfoHolder.Get();
  return clientInfo ? clientInfo->GetClientPlatform() : UTF8String(kDefaultPlatform);
}

}  // namespace orncore::config
