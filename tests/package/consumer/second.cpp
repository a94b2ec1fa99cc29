// The program's second source, so that whatever a header defines is there twice.
#ifdef EVERY_HEADER
#include <every_header.h>
#endif

#include <ornwhatsnew/FeatureListData.h>

bool AnyRunOf(const ornwhatsnew::StyleRunMap& runs, ornwhatsnew::StyleID style);

bool AnyRunOf(const ornwhatsnew::StyleRunMap& runs, ornwhatsnew::StyleID style) {
  return runs.contains(style);
}
