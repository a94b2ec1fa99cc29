// Reads a generated host description, and prints the size of the description and the peak memory
// use. `./dev check growth` checks this peak, and counts the instructions of the reader for
// descriptions of 100 KB and 1 MB.
#include <cstdlib>
#include <iostream>
#include <map>
#include <string>
#include <string_view>

#include "benchmarks/support/ByteCounter.h"
#include "hosts/common/HostDescription.h"
#include "hosts/common/JsonDocument.h"

namespace {

/// A description that consists of `begin`, many copies of `item`, and `end`. In each copy, a
/// different number replaces each "#". `isValid` is whether the reader must accept the description.
struct Shape {
  std::string begin;
  std::string item;
  std::string end;
  bool isValid;
};

std::string Repeated(std::string_view text, int count) {
  std::string repeated;
  for (int i = 0; i < count; ++i) repeated += text;
  return repeated;
}

const std::map<std::string_view, Shape>& Shapes() {
  static const std::map<std::string_view, Shape> shapes = {
      {"objects",
       {R"({"betaFeatures":[)", R"({"internalKey":"f.#","epicKey":"EPIC-#","name":"Feature #"},)",
        "{}]}", true}},
      {"texts",
       {R"({"dictionary":{)", R"("$$$/herbarium/#":"A translated text",)", R"("":""}})", true}},
      {"duplicates", {R"({"debug":{)", R"("a":"","b":"",)", R"("":""}})", false}},
      {"duplicate-objects", {R"({"betaFeatures":[)", R"({"name":"","name":""},)", "{}]}", false}},
      {"late-duplicate",
       {R"({"dictionary":{"a":"",)", R"("$$$/herbarium/#":"",)", R"("a":""}})", false}},
      {"deep",
       {R"({"debug":[)", Repeated(R"({"name":)", 97) + "0" + Repeated("}", 97) + ",", "0]}",
        false}},
      {"long-paths", {R"({"betaFeatures":[{")", "name#", R"(":[{"a":0,"a":0}]}]})", false}},
  };
  return shapes;
}

std::string Description(const Shape& shape, std::size_t bytes) {
  std::string text = shape.begin;
  for (std::size_t number = 0; text.size() + shape.end.size() < bytes; ++number) {
    for (const char character : shape.item) {
      if (character == '#') {
        text += std::to_string(number);
      } else {
        text += character;
      }
    }
  }
  return text + shape.end;
}

bool Reads(std::string_view text) {
  try {
    hosts::common::ParseHostDescription(text, "host.json");
    return true;
  } catch (const hosts::common::JsonError&) {
    return false;
  }
}

}  // namespace

int main(int argc, char** argv) {
  const auto shape = Shapes().find(argc == 3 ? argv[1] : "");
  const auto bytes = argc == 3 ? std::strtoul(argv[2], nullptr, 10) : 0;
  if (shape == Shapes().end() || bytes == 0) {
    std::cerr << "usage: json_growth_probe SHAPE BYTES\nshapes:";
    for (const auto& [name, known] : Shapes()) std::cerr << ' ' << name;
    std::cerr << '\n';
    return 2;
  }
  const std::string text = Description(shape->second, bytes);
  const std::size_t before = benchmarks::LiveBytes();
  benchmarks::RestartPeak();
  if (Reads(text) != shape->second.isValid) return 1;
  // Add the size of the text, because the caller of the reader keeps the text in memory.
  std::cout << text.size() << ' ' << benchmarks::PeakBytes() - before + text.size() << '\n';
}
