// Computes the hash by which a content security policy identifies an inline style sheet.
#ifndef HOSTS_COMMON_SHA256_H_
#define HOSTS_COMMON_SHA256_H_

#include <string>
#include <string_view>

namespace hosts::common {

/// Returns the SHA-256 hash of `bytes` in Base64, with padding.
std::string Sha256InBase64(std::string_view bytes);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_SHA256_H_
