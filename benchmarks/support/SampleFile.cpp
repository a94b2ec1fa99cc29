#include "benchmarks/support/SampleFile.h"

#include <array>
#include <cstdint>
#include <map>
#include <random>
#include <span>
#include <string_view>

namespace benchmarks {
namespace {

using Texts = std::span<const std::string_view>;

constexpr std::array<std::string_view, 32> kWords = {
    "export", "faster", "map",   "layers",  "when",     "dragging", "pins",    "between",
    "the",    "legend", "now",   "shows",   "colour",   "labels",   "every",   "route",
    "fixed",  "crash",  "print", "preview", "search",   "finds",    "places",  "button",
    "opens",  "area",   "zoom",  "keeps",   "contours", "no",       "overlap", "a"};
constexpr std::array<std::string_view, 6> kForeignWords = {
    "caf\u00E9", "don\u2019t", "\u201CSmart\u201D", "\u5730\u56F3", "\u00DCbersicht", "\U0001F5FA"};
constexpr std::array<std::string_view, 6> kSaliences = {"", "", "", "Headline", "Detail", "Detail"};
constexpr std::array<std::string_view, 5> kPlatforms = {"", "", "", "Mac", "Win"};

// Generates the same values in every run. It uses the modulo operator, because the distributions of
// the standard library differ between implementations.
class RandomSource {
 public:
  std::size_t Below(std::size_t count) { return engine_() % count; }
  bool Percent(std::size_t percent) { return Below(100) < percent; }
  std::string_view OneOf(Texts texts) { return texts[Below(texts.size())]; }
  std::string Number(std::size_t first, std::size_t count) {
    return std::to_string(first + Below(count));
  }
  std::string Version() {
    std::string version = Number(20, 6);
    version += '.';
    version += Number(0, 12);
    return version;
  }
  std::string HexDigits(std::size_t count) {
    std::string digits;
    while (digits.size() < count) digits += "0123456789abcdef"[Below(16)];
    return digits;
  }

 private:
  std::mt19937_64 engine_{1};
};

std::string Description(RandomSource& source) {
  const bool quoted = source.Percent(25);
  const bool foreign = source.Percent(12);
  const std::size_t words = 11 + source.Below(16);
  std::string text = quoted ? "\"" : "";
  for (std::size_t word = 0; word < words; ++word) {
    if (word > 0) text += quoted && word % 6 == 0 ? ", " : " ";
    text += foreign && word % 7 == 3 ? source.OneOf(kForeignWords) : source.OneOf(kWords);
  }
  if (quoted) text += '"';
  return text;
}

// Draws one random value in each statement, because the order in which an expression evaluates its
// operands is unspecified.
void AppendRow(RandomSource& source, std::string& text) {
  text += source.Version();
  text += '.';
  text += source.Number(0, 5);
  text += ',';
  const bool isBugfix = source.Percent(10);
  text += isBugfix ? "BUGFIX" : "EPIC-" + source.Number(kFirstEpic, kEpicCount);
  text += ',';
  if (source.Percent(60)) text += "STORY-" + source.Number(1000, 90000);
  text += ',';
  text += source.OneOf(kSaliences);
  text += ',';
  if (source.Percent(6)) text += "RequestRating";
  text += ',';
  if (source.Percent(30)) text += source.Version();
  text += ',';
  text += source.OneOf(kPlatforms);
  text += ',';
  if (source.Percent(50)) text += "https://discuss.example/t/" + source.Number(10000, 90000);
  text += ',';
  if (source.Percent(80)) text += source.HexDigits(40);
  text += ',';
  text += Description(source);
  text += '\n';
}

std::string MakeFile(std::size_t rows) {
  std::string text =
      "App Version,Grouping ID,Story ID,Salience,Ask For Rating,Earliest Version,Only Platform,"
      "URL,Changelist ID,Message\n";
  text.reserve(text.size() + rows * 210);
  RandomSource source;
  for (std::size_t row = 0; row < rows; ++row) AppendRow(source, text);
  return text;
}

}  // namespace

const std::string& SampleFile(std::size_t rows) {
  static std::map<std::size_t, std::string> files;
  const auto [file, isNew] = files.try_emplace(rows);
  if (isNew) file->second = MakeFile(rows);
  return file->second;
}

}  // namespace benchmarks
