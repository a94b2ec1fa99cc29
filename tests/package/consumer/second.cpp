// Includes every header a second time, so that the linker reports non-inline definitions in
// headers.
#ifdef EVERY_HEADER
#include <every_header.h>
#endif

#include <ornwhatsnew/FeatureListData.h>

bool AnyRunOf(const ornwhatsnew::StyleRunMap& runs, ornwhatsnew::StyleID style);

bool AnyRunOf(const ornwhatsnew::StyleRunMap& runs, ornwhatsnew::StyleID style) {
  return runs.contains(style);
}
