// Base64 for data files in scenarios that are not UTF-8.
#ifndef TESTS_CONFORMANCE_BASE64_H_
#define TESTS_CONFORMANCE_BASE64_H_

#include <optional>
#include <string>
#include <string_view>

namespace conformance {

/// Decodes a text in the standard alphabet, padded with `=` to groups of four. Returns nullopt if
/// it is malformed or has bits set after the last byte.
std::optional<std::string> DecodeBase64(std::string_view text);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_BASE64_H_
