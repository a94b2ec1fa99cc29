#include "tests/examples/WalkThrough.h"

#include <algorithm>
#include <cstddef>
#include <span>

namespace examples {
namespace {

constexpr std::string_view kDots = "...";

bool MatchesAnyLines(std::string_view line) {
  return line == kDots;
}

// Returns whether `line` matches the line `shown`, in which the first "..." matches any characters.
bool IsShownLine(std::string_view shown, std::string_view line) {
  const std::size_t dots = shown.find(kDots);
  if (dots == std::string_view::npos) return shown == line;
  const std::string_view end = shown.substr(dots + kDots.size());
  return line.size() >= dots + end.size() && line.starts_with(shown.substr(0, dots)) &&
         line.ends_with(end);
}

}  // namespace

Lines SplitLines(std::string_view text) {
  Lines lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  while (!lines.empty() && lines.back().empty()) lines.pop_back();
  return lines;
}

std::vector<ShownCommand> ReadShownCommands(std::string_view page) {
  std::vector<ShownCommand> commands;
  bool isInBlock = false;
  for (const std::string& line : SplitLines(page)) {
    if (line.starts_with("```")) {
      isInBlock = line == "```console";
    } else if (isInBlock && line.starts_with("$ ")) {
      commands.push_back({line.substr(2), {}});
    } else if (isInBlock && !commands.empty()) {
      commands.back().output.push_back(line);
    }
  }
  for (ShownCommand& shown : commands) {
    while (!shown.output.empty() && shown.output.back().empty()) shown.output.pop_back();
  }
  return commands;
}

bool IsShown(const Lines& shown, const Lines& output) {
  std::span<const std::string> expected(shown);
  std::span<const std::string> rest(output);
  bool isAnchored = true;
  while (true) {
    const auto gap = std::ranges::find_if(expected, MatchesAnyLines);
    const auto block = expected.first(static_cast<std::size_t>(gap - expected.begin()));
    const bool isLast = gap == expected.end();
    if (isLast && !isAnchored) {
      return block.size() <= rest.size() &&
             std::ranges::equal(block, rest.last(block.size()), IsShownLine);
    }
    const auto isShownLine = [](std::string_view line, std::string_view shownLine) {
      return IsShownLine(shownLine, line);
    };
    const auto found =
        std::search(rest.begin(), rest.end(), block.begin(), block.end(), isShownLine);
    if (found == rest.end() && !block.empty()) return false;
    if (isAnchored && found != rest.begin()) return false;
    rest = rest.subspan(static_cast<std::size_t>(found - rest.begin()) + block.size());
    if (isLast) return rest.empty();
    expected = expected.subspan(block.size() + 1);
    isAnchored = false;
  }
}

}  // namespace examples
