// Fuzzes the file of a state store, which another program may have written.
//
// The input is the text of the file.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <orncore/string/Conversion.h>
#include <nlohmann/json.hpp>

#include "fuzz/Property.h"
#include "fuzz/StrictJson.h"
#include "hosts/common/StateFormat.h"
#include "hosts/common/StateStore.h"

namespace fuzz {
namespace {

using hosts::common::StateValues;
using nlohmann::json;

void RequireErrorText(std::string_view message) {
  Require(message.find("the state store 'state.json': ") != std::string_view::npos,
          "an error message names the file");
  Require(message.ends_with(" with --state"), "an error message states what the user can do");
  Require(orncore::string::IsWellFormedUTF8(message), "an error message is well-formed UTF-8");
  const auto isControl = [](char16_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); };
  Require(std::ranges::none_of(orncore::string::UTF8to16(message), isControl),
          "an error message is one line without control characters");
}

std::optional<StateValues> Parse(std::string_view text) {
  try {
    return hosts::common::ParseState(text, "state.json");
  } catch (const hosts::common::StateStoreError& error) {
    RequireErrorText(error.what());
    return std::nullopt;
  }
}

// Returns whether a JSON value is a state. This is a second implementation of the rules of
// `ParseState`.
bool IsState(const json& value) {
  return value.is_object() && value.size() == 3 &&
         value.value("format", json()) == "ornwhatsnew state" &&
         value.value("formatVersion", json()).is_number_integer() && value["formatVersion"] == 1 &&
         value.value("values", json()).is_object() &&
         std::ranges::all_of(value["values"], [](const json& text) { return text.is_string(); });
}

void Run(std::string_view text) {
  const std::optional<StateValues> values = Parse(text);
  const json read = ParseStrictly(text);
  RequireEqual(values.has_value(), IsState(read), "states are accepted, other texts are rejected");
  if (!values) return;
  Require(json(*values) == read["values"], "every value is read unchanged");
  const std::string written = hosts::common::FormatState(*values, "state.json");
  Require(Parse(written) == values, "writing and reading a state does not change it");
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Run({reinterpret_cast<const char*>(data), size});
  return 0;
}
