#include "tests/ornwhatsnewqt/QtTests.h"

#include <cstdlib>
#include <iostream>
#include <map>
#include <string>
#include <string_view>

namespace {

using test_support::RegisteredMain;

// A local static variable, because the constructors of global `RegisteredMain` objects use the map.
// A global map might be constructed after these objects.
std::map<std::string_view, RegisteredMain::Main>& registeredMains() {
  static std::map<std::string_view, RegisteredMain::Main> mains;
  return mains;
}

int reportError(std::string_view error) {
  std::cerr << error << "; run 'ornwhatsnewqt_tests --list' for the names\n";
  return EXIT_FAILURE;
}

}  // namespace

test_support::RegisteredMain::RegisteredMain(const char* name, Main main) {
  registeredMains().emplace(name, main);
}

int main(int argc, char** argv) {
  const auto& mains = registeredMains();
  if (argc < 2) return reportError("missing name of a test class");
  const std::string_view name = argv[1];
  if (name == "--list") {
    for (const auto& entry : mains) std::cout << entry.first << '\n';
    return EXIT_SUCCESS;
  }
  const auto found = mains.find(name);
  if (found == mains.end()) return reportError("unknown test class '" + std::string(name) + "'");
  // QTest and the application use the name of the class as the name of the program.
  return found->second(argc - 1, argv + 1);
}
