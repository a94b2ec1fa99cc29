// Loads the library.
#include <ornwhatsnew/WhatsNew.h>

int main(int argc, char**) {
  // This call prevents the linker from omitting the library. The program does not execute the call,
  // because it is started without arguments.
  if (argc > 1'000) ornwhatsnew::GetWhatsNew({}, nullptr, {}, {});
}
