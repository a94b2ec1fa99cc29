#include "hosts/console/ShellCommand.h"

#include <string_view>

#include <orncore/string/SafeText.h>

namespace hosts::console {
namespace {

/// Returns `word` in the quotes `$'...'`, in which a shell interprets octal escapes.
std::string QuoteWithEscapes(std::string_view word) {
  std::string quoted = "$'";
  for (const char character : word) {
    const auto byte = static_cast<unsigned char>(character);
    const bool isPrintableAscii = byte >= 0x20 && byte < 0x7F;
    if (isPrintableAscii && character != '\'' && character != '\\') {
      quoted += character;
      continue;
    }
    // Use octal escapes with three digits, because a shell reads at most three digits of an octal
    // escape. In some shells, a hexadecimal escape also includes all hexadecimal digits that follow
    // it.
    quoted += '\\';
    for (const unsigned shift : {6U, 3U, 0U})
      quoted += static_cast<char>('0' + (byte >> shift & 7U));
  }
  return quoted + "'";
}

/// Returns a command-line option with its value, followed by a space. Joins name and value with "="
/// if the value begins with a dash, so that the value does not look like an option.
std::string Option(const std::string& name, const std::string& value) {
  return name + (value.starts_with('-') ? "=" : " ") + ShellWord(value) + " ";
}

}  // namespace

std::string ShellWord(const std::string& word) {
  constexpr std::string_view kPlain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-./:,+@%";
  const bool isPlain = !word.empty() && word.find_first_not_of(kPlain) == std::string::npos;
  if (isPlain) return word;
  if (orncore::string::EscapeInvisible(word) != word) return QuoteWithEscapes(word);
  std::string quoted = "'";
  for (const char character : word) {
    if (character == '\'') {
      quoted += "'\\''";
    } else {
      quoted += character;
    }
  }
  return quoted + "'";
}

std::string RatingCommand(const std::string& key, const SourceArguments& sources) {
  std::string command = "ornwhatsnew rate " + Option("--host", sources.host.native());
  if (sources.state) command += Option("--state", sources.state->native());
  // The program does not parse words after "--" as options, even if they begin with a dash.
  return command + "-- " + ShellWord(key) + " " + ShellWord(sources.data.native());
}

}  // namespace hosts::console
