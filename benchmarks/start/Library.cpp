// Loads the library.
#include <ornwhatsnew/WhatsNew.h>

int main(int argc, char**) {
  // The program is started without arguments, so the condition is false. The call prevents the
  // linker from omitting the library.
  if (argc > 1'000) ornwhatsnew::GetWhatsNew({}, nullptr, {}, {});
}
