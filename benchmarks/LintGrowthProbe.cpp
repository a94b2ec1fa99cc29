// Checks and corrects a generated data file, formats the findings, and prints the size of the file
// and the peak memory use. `./dev check growth` checks this peak, and counts the instructions for
// files of 100 KB and 1 MB.
#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "benchmarks/support/ByteCounter.h"
#include "benchmarks/support/NumberedCopies.h"
#include "hosts/author/lint/Lint.h"
#include "hosts/author/lint/LintFix.h"
#include "hosts/common/HostDescription.h"
#include "hosts/console/LintText.h"

namespace {

using hosts::author::LintHost;
using hosts::author::LintReport;

/// A part of a data file: `begin`, and then copies of `item`. In each copy, the index of the copy
/// replaces each "#".
struct Part {
  std::string begin;
  std::string item;
};

/// The parts of a data file. All parts have about the same size.
using Shape = std::vector<Part>;

const std::string kHeader = "Version,Grouping ID,3,4,5,6,7,8,9,Message\n";
const std::string kText = kHeader + "4.3,MISC,,,,,,,,";

const std::map<std::string_view, Shape>& Shapes() {
  static const std::map<std::string_view, Shape> shapes = {
      {"closing-tags", {{kText, "</b>"}}},
      {"second-links", {{kHeader + "4.3,MISC,,,,,,", "http"}}},
      {"quoted-link", {{kText, "https://"}, {"\"x", "\""}}},
      {"line-ends", {{"", "4.3,MISC,,,,,,,,Text #\r"}}},
      {"blank-line-ends", {{kHeader, "\r"}, {"4.3,MISC,,,,,,,,Text", " more text"}}},
      {"many-fields", {{kHeader, "a,"}}},
      {"long-name",
       {{"Version,Grouping ID,", "x"}, {",4,5,6,7,8,9,10\n", "4.3,MISC,,Wrong,,,,http://,,#\n"}}},
      {"long-grouping-id",
       {{kHeader + "4.3,", "\u00E9"}, {",,,,,,,,Text\n", "A line without a comma\n"}}},
      {"unknown-keys", {{kHeader, "4.3,KEY-#,,,,,,,,A text about the map #\n"}}},
  };
  return shapes;
}

std::string Text(const Shape& shape, std::size_t bytes) {
  std::string text;
  for (std::size_t i = 0; i < shape.size(); ++i) {
    text += shape[i].begin;
    benchmarks::AppendNumberedCopies(text, shape[i].item, bytes * (i + 1) / shape.size());
  }
  return text;
}

/// Installs and returns a host with one feature for each 100 bytes of the data file.
LintHost Host(std::size_t bytes) {
  LintHost host;
  host.file = "host.json";
  for (std::size_t i = 0; i < bytes / 100; ++i) {
    const std::string number = std::to_string(i);
    host.description.betaFeatures.push_back(
        {"feature." + number, "EPIC-" + number, "Feature " + number, "", 0, true, true});
  }
  hosts::common::InstallHost(host.description);
  return host;
}

/// Checks and corrects `text`, and formats the findings. Returns false if the corrected text or the
/// text of the findings is empty.
bool Checks(const std::string& text, const LintHost& host) {
  const std::string name = "data.csv";
  LintReport report = hosts::author::LintDataFile(name, text, &host);
  const hosts::author::FixedFile fixed =
      hosts::author::FixDataFile(name, text, report, hosts::author::FixScope::kAll, &host);
  hosts::author::FinishReport(report);
  constexpr bool kIsStyled = true;
  return !fixed.text.empty() &&
         !hosts::console::LintText(report, {{name, text}}, kIsStyled).empty();
}

}  // namespace

int main(int argc, char** argv) {
  const auto shape = Shapes().find(argc == 3 ? argv[1] : "");
  const auto bytes = argc == 3 ? std::strtoul(argv[2], nullptr, 10) : 0;
  if (shape == Shapes().end() || bytes == 0) {
    std::cerr << "usage: lint_growth_probe SHAPE BYTES\nshapes:";
    for (const auto& [name, known] : Shapes()) std::cerr << ' ' << name;
    std::cerr << '\n';
    return 2;
  }
  const std::string text = Text(shape->second, bytes);
  const LintHost host = Host(bytes);
  const std::size_t before = benchmarks::LiveBytes();
  benchmarks::RestartPeak();
  if (!Checks(text, host)) return 1;
  // Add the size of the text, because the caller of `LintDataFile` keeps the text in memory.
  std::cout << text.size() << ' ' << benchmarks::PeakBytes() - before + text.size() << '\n';
}
