// Decodes Base64, the encoding of data files that are not UTF-8.
#ifndef TESTS_CONFORMANCE_BASE64_H_
#define TESTS_CONFORMANCE_BASE64_H_

#include <optional>
#include <string>
#include <string_view>

namespace conformance {

/// Returns the bytes of Base64 text in the standard alphabet, padded with `=` to groups of four
/// characters. Returns nullopt if `text` is malformed or if a bit after the last byte is set.
std::optional<std::string> DecodeBase64(std::string_view text);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_BASE64_H_
