// Fuzzes the strings of authors and translators: checks the localiser and the panel.
//
// The input consists of a line of switches and of parts: a key text, its translation, and
// arguments. The line contains the switches of World.h, and one more switch that selects the
// template to translate.
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <orncore/config/Localizer.h>

#include "fuzz/Input.h"
#include "fuzz/ListPair.h"
#include "fuzz/Property.h"
#include "fuzz/World.h"
#include "tests/support/PlainText.h"

namespace fuzz {
namespace {

using orncore::config::Localizer;
using orncore::config::MapDictionary;
using test_support::PlainUTF8to16;

// Returns `text` with each markup sequence replaced by its character. Omits `#{comment}` and
// everything after it.
std::u16string PlainExpand(std::u16string_view text) {
  static const std::map<std::u16string_view, char16_t> kMarkup = {
      {u"#{endl}", 0x0A}, {u"#{tab}", 0x09}, {u"#{mdash}", 0x2014}, {u"#{ndash}", 0x2013},
      {u"^B", 0x2022},    {u"^{", 0x2018},   {u"^}", 0x2019},       {u"^[", 0x201C},
      {u"^]", 0x201D},    {u"^^", 0x5E}};
  std::u16string expanded;
  while (!text.empty() && !text.starts_with(u"#{comment}")) {
    std::size_t length = 1;
    char16_t replacement = text.front();
    for (const auto& [sequence, character] : kMarkup) {
      if (!text.starts_with(sequence)) continue;
      length = sequence.size();
      replacement = character;
    }
    expanded += replacement;
    text.remove_prefix(length);
  }
  return expanded;
}

std::u16string PlainFill(std::u16string_view text, const std::vector<std::u16string>& arguments) {
  std::u16string filled;
  while (!text.empty()) {
    const std::size_t number = text.size() > 1 ? std::size_t{text[1]} - u'0' : 10;
    if (text.front() == u'@' && number < 10 && number < arguments.size()) {
      filled += arguments[number];
      text.remove_prefix(2);
    } else {
      filled += text.front();
      text.remove_prefix(1);
    }
  }
  return filled;
}

std::u16string PlainZString(std::string_view keyText) {
  const std::size_t equals = keyText.find('=');
  if (equals == std::string_view::npos) return PlainUTF8to16(keyText);
  return PlainExpand(PlainUTF8to16(keyText.substr(equals + 1)));
}

void RequireLocalised(std::string_view keyText, std::string_view translation,
                      const std::vector<std::u16string>& arguments) {
  Localizer& localizer = Localizer::Get();
  localizer.SetDictionary(nullptr);
  Require(localizer.ZString(keyText) == PlainZString(keyText),
          "without a dictionary, the localiser returns the default text");

  const std::string key(keyText.substr(0, keyText.find('=')));
  localizer.SetDictionary(
      std::make_shared<MapDictionary>(MapDictionary::Texts{{key, std::string(translation)}}));
  const std::u16string expected = PlainExpand(PlainUTF8to16(translation));
  Require(localizer.ZString(keyText) == expected, "the localiser returns the translation");
  Require(localizer.ZString(keyText, arguments) == PlainFill(expected, arguments),
          "each argument is inserted once");
  localizer.SetDictionary(nullptr);
}

std::string DataText(std::string_view message) {
  std::string text = "version,grouping,story,salience,rating,first,platform,url,sha,description\n";
  for (const char* ids : {"EPIC-1,ORN-9", "ORN-7,orn-12", "BUGFIX,", "nowhere,"}) {
    text += "25.1,";
    text += ids;
    text += ",Loud,How?,24.0,Mac,https://a.example,abc,";
    text += message;
    text += '\n';
  }
  return text;
}

void Run(Input input) {
  const std::string_view switches = input.ReadLine();
  const std::string_view keyText = input.ReadPart();
  const std::string_view translation = input.ReadPart();
  std::vector<std::u16string> arguments;
  for (const std::string_view part : input.ReadParts()) arguments.push_back(PlainUTF8to16(part));
  RequireLocalised(keyText, translation, arguments);

  World world(switches);
  world.TranslateTemplate(Switch(switches, kWorldSwitches), translation);
  world.Host().AddTranslation(keyText.substr(0, keyText.find('=')), translation);
  world.Host().AddFeature({.internalKey = "named",
                           .epicKey = std::string(keyText),
                           .name = std::string(keyText),
                           .description = std::string(translation)});
  ListPair lists(world);
  lists.Load(DataText(keyText));
  lists.Display(world.Options());
  lists.Display(world.Options() ^ 0x10);
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Run(fuzz::Input(data, size));
  return 0;
}
