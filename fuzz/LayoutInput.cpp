#include "fuzz/LayoutInput.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "tests/support/LayoutBuilder.h"
#include "tests/support/PlainText.h"

namespace fuzz {
namespace {

using ornwhatsnew::ParagraphKind;
using ornwhatsnew::StyleID;

constexpr unsigned kNoStyle = 15;
constexpr unsigned kRatingPart = 5;

std::string ComposedLink(unsigned flags, std::string_view text) {
  constexpr std::size_t kLong = 300;
  std::string link = "https:";
  link += (flags & 0x04) != 0 ? std::string(kLong, '/') + '\\' : "//";
  if ((flags & 0x08) != 0) link += std::string(kLong, 'u') + '@';
  if ((flags & 0x80) != 0) {
    std::string user(text);
    std::erase_if(user,
                  [](char c) { return std::string_view("/?#\\").find(c) != std::string::npos; });
    link += "u" + user + '@';
  }
  if ((flags & 0x10) != 0) link += std::string(kLong, 'h') + '.';
  link += kComposedHost;
  if ((flags & 0x20) != 0) link += ':' + std::string(kLong, '0') + "443";
  return link + '/' + std::string(text);
}

// Replaces U+E000 to U+E7FF with surrogates. If the result ends with a high surrogate, adds a full
// stop. Otherwise, the surrogate could form a pair with the start of the next span.
std::u16string WithSurrogates(std::u16string text) {
  for (char16_t& unit : text) {
    if (unit >= 0xE000 && unit < 0xE800) unit = static_cast<char16_t>(unit - 0x800);
  }
  if (!text.empty() && text.back() >= 0xD800 && text.back() < 0xDC00) text += u'.';
  return text;
}

void AddPart(std::string_view part, test_support::LayoutBuilder& builder) {
  const std::u16string text = WithSurrogates(test_support::PlainUTF8to16(PartText(part)));
  const unsigned style = Switch(part, 0) & 0x0F;
  const unsigned kind = Switch(part, 0) >> 4 & 0x07;
  if (kind == kRatingPart) {
    builder.Rating(text, text);
    return;
  }
  if (kind < kRatingPart || builder.Layout().paragraphs.empty() || builder.Last().rating) {
    builder.Begin(static_cast<ParagraphKind>(std::min(kind, kRatingPart - 1)));
  }
  builder.Span(text, style == kNoStyle ? std::nullopt : std::optional(static_cast<StyleID>(style)),
               test_support::PlainUTF8to16(PartLink(part)));
}

}  // namespace

bool HasComposedLink(std::string_view part) {
  return (Switch(part, 1) & 0x03) == 2;
}

std::string_view PartText(std::string_view part) {
  return part.substr(std::min<std::size_t>(2, part.size()));
}

std::string PartLink(std::string_view part) {
  switch (Switch(part, 1) & 0x03) {
    case 0:
      return {};
    case 1:
      return std::string(PartText(part));
    case 2:
      return ComposedLink(Switch(part, 1), PartText(part));
    default:
      return "https://a.example/?q=1&r=%20;(b)*_";
  }
}

ornwhatsnew::PanelLayout ReadLayout(Input& input) {
  test_support::LayoutBuilder builder;
  for (const std::string_view part : input.ReadParts()) AddPart(part, builder);
  return builder.Layout();
}

}  // namespace fuzz
