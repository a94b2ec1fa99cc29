// Base64 as scenarios use it for data files that are not UTF-8.
#ifndef TESTS_CONFORMANCE_BASE64_H_
#define TESTS_CONFORMANCE_BASE64_H_

#include <optional>
#include <string>
#include <string_view>

namespace conformance {

/// The bytes that a text in the standard alphabet stands for, padded with `=` to whole groups of
/// four; nothing when it is not of this form, or has bits set behind the last byte.
std::optional<std::string> DecodeBase64(std::string_view text);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_BASE64_H_
