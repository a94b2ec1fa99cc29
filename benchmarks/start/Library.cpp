// Loads the library, which registers itself meanwhile, and checks that it did.
#include <algorithm>

#include <orncore/config/InitializerRegistrar.h>
#include <ornwhatsnew/WhatsNew.h>

int main(int argc, char**) {
  // Never true, but the linker does not know: it keeps the library for it.
  if (argc > 1'000) ornwhatsnew::GetWhatsNew({}, nullptr, {}, {});
  return std::ranges::count(orncore::config::GetRegisteredInitializers(),
                            "ornwhatsnew.FeatureListData") == 1
             ? 0
             : 1;
}
