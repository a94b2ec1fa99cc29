// Fuzzes the layout of a panel with arbitrary data files and translations of the library's
// templates.
//
// The input consists of a line of switches (World.h) and of parts. The first part is the data file.
// Each other part is a translation: one byte that selects a template, and the translated text.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <ornwhatsnew/FeatureListData.h>

#include "fuzz/Input.h"
#include "fuzz/Property.h"
#include "fuzz/World.h"
#include "tests/support/LayoutCheck.h"
#include "tests/support/PlainPanel.h"

namespace fuzz {
namespace {

constexpr unsigned kRatingView = 0x10;

void RequireLayout(ornwhatsnew::FeatureListData& list, World& world, unsigned options) {
  test_support::FakeStateStore& state = world.Host().State();
  const auto panel = test_support::FormatWithLibrary(list, state, options, u"");
  RequireEqual(test_support::FirstLayoutError(list, state, options, panel), {},
               "the layout has the same content as the text and the style runs");
}

void Run(Input input) {
  World world(input.ReadLine());
  const std::string dataText(input.ReadPart());
  while (!input.Rest().empty()) {
    const std::string_view part = input.ReadPart();
    if (!part.empty()) world.TranslateTemplate(Switch(part, 0), part.substr(1));
  }
  ornwhatsnew::FeatureListData list(dataText, world.Host().Getter(), world.Host().Setter());
  RequireLayout(list, world, world.Options());
  RequireLayout(list, world, world.Options() ^ kRatingView);
  list.RefreshInternalSeenState();
  RequireLayout(list, world, world.Options() ^ kRatingView);
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Run(fuzz::Input(data, size));
  return 0;
}
