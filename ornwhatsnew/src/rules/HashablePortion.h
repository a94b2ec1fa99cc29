// Finds the part of a string from which identities are computed.
#ifndef ORNWHATSNEW_SRC_RULES_HASHABLEPORTION_H_
#define ORNWHATSNEW_SRC_RULES_HASHABLEPORTION_H_

#include <string_view>
#include <utility>

namespace ornwhatsnew {

/// The prefix of a key text.
inline constexpr std::string_view kZStringPrefix = "$$$/";

/// Returns the result of `ExtractHashablePortion` as two consecutive parts, without copying. The
/// parts are views into `text` or into a constant, and can be empty. The function is inline,
/// because the computation of an identity can call it for each field.
inline std::pair<std::string_view, std::string_view> SplitHashablePortion(
    std::string_view text) noexcept {
  constexpr std::string_view kPrivatePrefix = "$$$/private/";
  if (!text.starts_with(kZStringPrefix)) return {text, {}};
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) return {text, {}};
  const std::string_view key = text.substr(0, equals);
  if (!key.starts_with(kPrivatePrefix)) return {key, {}};
  return {kZStringPrefix, key.substr(kPrivatePrefix.size())};
}

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RULES_HASHABLEPORTION_H_
