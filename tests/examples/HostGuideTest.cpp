// Compares the tables of key texts in docs/host-guide.md with the sources of the library.
#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/common/TextFile.h"
#include "tests/examples/WalkThrough.h"
#include "tests/support/TemplateKeys.h"

namespace examples {
namespace {

using Texts = std::map<std::string, std::string>;

// Finds the key texts in `source`, the content of a C++ source file. Adds the default text of each
// one to `texts`, under the key of the key text.
void AddDefaultTexts(const std::string& source, Texts& texts) {
  // Match adjacent string literals as one literal, because the compiler concatenates them.
  static const std::regex adjacentLiterals(R"re((?:u?"(?:[^"\\\n]|\\.)*"\s*)+)re");
  static const std::regex betweenLiterals(R"re("\s*u?")re");
  const std::sregex_iterator end;
  for (std::sregex_iterator match(source.begin(), source.end(), adjacentLiterals); match != end;
       ++match) {
    const std::string text = std::regex_replace(match->str(), betweenLiterals, "");
    const std::size_t key = text.find("$$$/");
    const std::size_t equals = text.find('=');
    if (key > 2 || equals == std::string::npos) continue;
    // Omit the text after #{comment}, which is for translators.
    texts[text.substr(key, equals - key)] =
        text.substr(equals + 1, text.find("#{comment}") - equals - 1);
  }
}

Texts DefaultTextsOfLibrary() {
  Texts texts;
  for (const char* module : {"orncore", "ornappsupport", "ornui", "ornwhatsnew"}) {
    const auto folder = std::filesystem::path(SOURCE_FOLDER) / module;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      const auto extension = entry.path().extension();
      if (extension != ".h" && extension != ".cpp") continue;
      AddDefaultTexts(hosts::common::ReadTextFile(entry.path()), texts);
    }
  }
  return texts;
}

// Returns the keys of key texts that are in the first column of a table in `page`.
std::set<std::string> KeysInTables(const std::string& page) {
  constexpr std::string_view kRow = "| `$$$/";
  constexpr std::string_view kCell = "| `";
  std::set<std::string> keys;
  for (const std::string& line : SplitLines(page)) {
    if (!line.starts_with(kRow)) continue;
    keys.insert(line.substr(kCell.size(), line.find('`', kCell.size()) - kCell.size()));
  }
  return keys;
}

TEST(HostGuide, ListsTheKeysWhoseDefaultTextsNameTheMaker) {
  const Texts texts = DefaultTextsOfLibrary();
  for (const char* key : test_support::kTemplateKeys) EXPECT_TRUE(texts.contains(key)) << key;

  std::set<std::string> keys;
  const std::regex maker("tarsa", std::regex::icase);
  for (const auto& [key, text] : texts) {
    if (std::regex_search(text, maker)) keys.insert(key);
  }
  EXPECT_EQ(KeysInTables(hosts::common::ReadTextFile(HOST_GUIDE)), keys);
}

}  // namespace
}  // namespace examples
