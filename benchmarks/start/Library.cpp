// Loads the library.
#include <ornwhatsnew/WhatsNew.h>

int main(int argc, char**) {
  // The condition is never true. The call prevents the linker from omitting the library.
  if (argc > 1'000) ornwhatsnew::GetWhatsNew({}, nullptr, {}, {});
}
