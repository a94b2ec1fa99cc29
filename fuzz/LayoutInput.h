// Reads a layout from a fuzzer's input.
//
// Each part of the input is a span or a rating request. It consists of one byte for its style and
// paragraph, one byte for its link, and its text. The lowest four bits of the first byte are the
// style; 15 means that the span has no style. The next three bits are:
//
//   0 to 4  the span begins a paragraph of this kind
//   5       the part is a rating request, and its text is the question
//   6, 7    the span continues the last paragraph. If there is none, or if it is a rating request,
//           the span begins a paragraph of kind 4
//
// The lowest two bits of the second byte are the kind of the link:
//
//   0  no link
//   1  the text is the link
//   2  the link is composed of "https://", `kComposedHost` and the text. Each of four bits
//      inserts a long element: 0x04 slashes, 0x08 user information, 0x10 a subdomain, 0x20 a
//      port. Each long element is longer than `ornwhatsnew::kMaximumPrintedTarget`, so the
//      renderer must shorten an unsafe link that contains it. The bit 0x80 inserts the text,
//      without the characters `/`, `?`, `#` and `\`, as user information.
//   3  a fixed link
//
// The text is UTF-8. U+E000 to U+E7FF represent surrogates, which can be unpaired.
#ifndef FUZZ_LAYOUTINPUT_H_
#define FUZZ_LAYOUTINPUT_H_

#include <string>
#include <string_view>

#include <ornwhatsnew/PanelLayout.h>

#include "fuzz/Input.h"

namespace fuzz {

/// Reads all remaining parts of `input` as a layout.
ornwhatsnew::PanelLayout ReadLayout(Input& input);

/// The host name in a composed link. If the link has a subdomain, its host name ends with this
/// string.
inline constexpr std::string_view kComposedHost = "host.example";

/// Returns whether `part` has a composed link.
bool HasComposedLink(std::string_view part);

/// Returns the text of `part`, which begins after the first two bytes.
std::string_view PartText(std::string_view part);

/// Returns the link of `part`, or an empty string if it has none. The link can be ill-formed UTF-8.
std::string PartLink(std::string_view part);

}  // namespace fuzz

#endif  // FUZZ_LAYOUTINPUT_H_
