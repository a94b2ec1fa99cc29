// Recognises surrogates in UTF-16.
#ifndef ORNWHATSNEW_SRC_PANEL_SURROGATES_H_
#define ORNWHATSNEW_SRC_PANEL_SURROGATES_H_

namespace ornwhatsnew {

/// Returns whether `unit` is the first unit of a surrogate pair.
constexpr bool IsHighSurrogate(char16_t unit) {
  return (unit & 0xFC00) == 0xD800;
}

/// Returns whether `unit` is the second unit of a surrogate pair.
constexpr bool IsLowSurrogate(char16_t unit) {
  return (unit & 0xFC00) == 0xDC00;
}

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_PANEL_SURROGATES_H_
