// Includes every header in a second source file, so that the linker reports functions that a header
// defines without `inline`.
#ifdef EVERY_HEADER
#include <every_header.h>
#endif

#include <ornwhatsnew/FeatureListData.h>

bool AnyRunOf(const ornwhatsnew::StyleRunMap& runs, ornwhatsnew::StyleID style);

bool AnyRunOf(const ornwhatsnew::StyleRunMap& runs, ornwhatsnew::StyleID style) {
  return runs.contains(style);
}
