// Loads the library and checks that it registered its initialise function.
#include <algorithm>

#include <orncore/config/InitializerRegistrar.h>
#include <ornwhatsnew/WhatsNew.h>

int main(int argc, char**) {
  // The condition is never true. The call prevents the linker from omitting the library.
  if (argc > 1'000) ornwhatsnew::GetWhatsNew({}, nullptr, {}, {});
  return std::ranges::count(orncore::config::GetRegisteredInitializers(),
                            "ornwhatsnew.FeatureListData") == 1
             ? 0
             : 1;
}
