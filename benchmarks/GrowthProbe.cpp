// Loads a list from a data file with the given number of rows, displays the list, and checks for
// new changes. The command `./dev check growth` counts the instructions of several methods of the
// list.
#include <cstdlib>
#include <iostream>

#include "benchmarks/support/SampleHost.h"

int main(int argc, char** argv) {
  const auto rows = argc == 2 ? std::strtoul(argv[1], nullptr, 10) : 0;
  if (rows == 0) {
    std::cerr << "usage: growth_probe ROWS\n";
    return 2;
  }
  benchmarks::SampleList list(rows);
  ornwhatsnew::StyleRunMap runs;
  const bool shown = !list.Display(runs).empty() && list->GetLayoutForDisplay({}).hasItems;
  list->RefreshInternalSeenState();
  return shown && !list->IsAnythingNew(ornwhatsnew::kShowOnlyNew) ? 0 : 1;
}
