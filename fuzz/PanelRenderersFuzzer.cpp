// Fuzzes the renderers with arbitrary layouts. LayoutInput.h describes the input.
#include <cstddef>
#include <cstdint>

#include <ornwhatsnew/PanelRenderers.h>

#include "fuzz/Input.h"
#include "fuzz/LayoutInput.h"
#include "fuzz/Property.h"
#include "fuzz/TerminalScan.h"
#include "tests/support/RenderedPanel.h"

namespace fuzz {
namespace {

void Run(Input input) {
  const ornwhatsnew::PanelLayout layout = ReadLayout(input);
  RequireEqual(test_support::FirstRenderingError(layout), {},
               "each format shows the text and the links of the layout");
  RequireHarmlessText(ornwhatsnew::RenderPlainText(layout));
  RequireHarmlessPanel(ornwhatsnew::RenderTerminalText(
      layout, {.width = 40, .hasStyles = true, .hasHyperlinks = true}));
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Run(fuzz::Input(data, size));
  return 0;
}
