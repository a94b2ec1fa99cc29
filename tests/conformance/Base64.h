// Decodes Base64. Scenarios use Base64 for data files that are not UTF-8.
#ifndef TESTS_CONFORMANCE_BASE64_H_
#define TESTS_CONFORMANCE_BASE64_H_

#include <optional>
#include <string>
#include <string_view>

namespace conformance {

/// Decodes Base64 in the standard alphabet, padded with `=` to groups of four characters. Returns
/// nullopt if `text` is malformed or if an unused bit after the last byte is set.
std::optional<std::string> DecodeBase64(std::string_view text);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_BASE64_H_
