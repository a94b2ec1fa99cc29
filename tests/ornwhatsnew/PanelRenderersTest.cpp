// Parses rendered panels and compares them with their layouts.
#include <ornwhatsnew/PanelRenderers.h>

#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <ornwhatsnew/FeatureListData.h>

#include "tests/support/LayoutBuilder.h"
#include "tests/support/RandomSource.h"
#include "tests/support/RandomWorld.h"
#include "tests/support/RenderedPanel.h"

namespace ornwhatsnew {
namespace {

using test_support::FirstRenderingError;
using test_support::LayoutBuilder;
using test_support::RandomSource;

TEST(PanelRenderers, RandomPanelsKeepTheirContent) {
  for (std::uint64_t seed = 1; seed <= 150; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    RandomSource random(seed);
    test_support::RandomWorld world(random);
    FeatureListData list(world.DataFile(), world.Host().Getter(), world.Host().Setter());
    for (const DisplayOptions options : {DisplayOptions(), kRatingView}) {
      ASSERT_EQ("", FirstRenderingError(list.GetLayoutForDisplay(options)));
      list.RefreshInternalSeenState();
    }
  }
}

// Returns a random string of HTML and CommonMark syntax, characters that the renderers replace, and
// words.
std::u16string HostileText(RandomSource& random) {
  static const std::u16string kFragments[] = {
      u"<",          u">",        u"&",      u"&lt;",       u"&#39;",  u"\"",     u"'",
      u"<!--",       u"<script>", u"]]>",    u"*",          u"**",     u"_",      u"`",
      u"``",         u"[",        u"]",      u"](",         u"(",      u")",      u"!",
      u"#",          u"-",        u"+",      u"=",          u"===",    u"---",    u"1.",
      u"2)",         u"~~~",      u"|",      u":-",         u"\\",     u"://",    u"http://x.de",
      u"www.",       u" ",        u"    ",   u"\t",         u"\n",     u"\u2028", u"\r",
      u"\u2029",     u"\x1B",     u"\u009B", u"\u202E",     u"\u2069", u"\uFFFF", u"a",
      u"Word",       u"\u05D0",   u"7",      u"\U0001F600", u"\u00A0", u"\uFEFF", u"\u3000",
      u"\U0001FFFF", u"a@b.c",    u"$x$",    u"{y}",        u"^"};
  std::u16string text;
  for (std::size_t i = random.Below(6); i > 0; --i) text += random.Pick(kFragments);
  // The full stop keeps an unpaired surrogate from forming a pair with the next span.
  if (random.OneIn(8)) text += random.HostileUTF16(3) + u'.';
  return text;
}

std::u16string RandomLink(RandomSource& random) {
  switch (random.Below(4)) {
    case 0:
      return u"https://x.example/" + HostileText(random);
    case 1:
      return u"https://x.example/(a)&amp;b*_[]!'~";
    case 2:
      return HostileText(random);
    default:
      return {};
  }
}

TEST(PanelRenderers, HostileLayoutsKeepTheirContent) {
  for (std::uint64_t seed = 1; seed <= 3000; ++seed) {
    RandomSource random(seed);
    LayoutBuilder builder;
    for (std::size_t i = random.Below(6); i > 0; --i) {
      builder.Begin(static_cast<ParagraphKind>(random.Below(5)), random.Flip() ? "a" : "b");
      for (std::size_t j = random.Below(4); j > 0; --j) {
        const auto style = static_cast<StyleID>(random.Below(14));
        builder.Span(HostileText(random), random.Flip() ? std::optional(style) : std::nullopt,
                     RandomLink(random));
      }
      if (random.OneIn(4)) builder.Rating(HostileText(random), HostileText(random));
    }
    ASSERT_EQ("", FirstRenderingError(builder.Layout())) << "seed " << seed;
  }
}

}  // namespace
}  // namespace ornwhatsnew
