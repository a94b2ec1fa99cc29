// Reads a generated host description or state store, and prints the size of the generated text and
// the peak memory use. `./dev check growth` checks this peak, and counts the instructions of the
// reader for texts of 100 KB and 1 MB.
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <map>
#include <string>
#include <string_view>

#include "benchmarks/support/ByteCounter.h"
#include "benchmarks/support/NumberedCopies.h"
#include "hosts/common/HostDescription.h"
#include "hosts/common/JsonDocument.h"
#include "hosts/common/StateFormat.h"

namespace {

enum class Reader { kHostDescription, kState };

/// Describes an input that consists of `begin`, many copies of `item`, and `end`. In each copy, the
/// index of the copy replaces each "#". `isValid` states whether the reader must accept the input.
struct Shape {
  std::string begin;
  std::string item;
  std::string end;
  bool isValid;
  Reader reader = Reader::kHostDescription;
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
      {"empty-objects", {R"({"betaFeatures":[)", "{},", "{}]}", false}},
      {"state-empty-arrays", {"[", "[],", "[]]", false, Reader::kState}},
      {"state-nested-arrays",
       {R"({"values":[)", Repeated("[", 97) + Repeated("]", 97) + ",", "0]}", false,
        Reader::kState}},
      {"state-texts",
       {R"({"format":"ornwhatsnew state","formatVersion":1,"values":{)",
        R"("WhatsNew.Key.#":"4.3.0.118 4.2.0.97",)", R"("":""}})", true, Reader::kState}},
      {"long-paths", {R"({"betaFeatures":[{")", "name#", R"(":[{"a":0,"a":0}]}]})", false}},
  };
  return shapes;
}

std::string Text(const Shape& shape, std::size_t bytes) {
  std::string text = shape.begin;
  benchmarks::AppendNumberedCopies(text, shape.item, bytes - std::min(bytes, shape.end.size()));
  return text + shape.end;
}

bool Reads(Reader reader, std::string_view text) {
  try {
    if (reader == Reader::kState) {
      hosts::common::ParseState(text, "state.json");
    } else {
      hosts::common::ParseHostDescription(text, "host.json");
    }
    return true;
  } catch (const hosts::common::JsonError&) {
    return false;
  } catch (const hosts::common::StateStoreError&) {
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
  const std::string text = Text(shape->second, bytes);
  const std::size_t before = benchmarks::LiveBytes();
  benchmarks::RestartPeak();
  if (Reads(shape->second.reader, text) != shape->second.isValid) return 1;
  // Add the size of the text, because the caller of the reader keeps the text in memory.
  std::cout << text.size() << ' ' << benchmarks::PeakBytes() - before + text.size() << '\n';
}
