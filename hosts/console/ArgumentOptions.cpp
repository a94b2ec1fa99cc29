#include "hosts/console/ArgumentOptions.h"

#include <charconv>
#include <system_error>

namespace hosts::console {
namespace {

using ornwhatsnew::DisplayOptions;

struct OptionFlag {
  const char* name;
  DisplayOptions option;
  const char* description;
};

const OptionFlag kOnlyNewFlag = {"--only-new", ornwhatsnew::kShowOnlyNew,
                                 "Show only what you have not seen yet"};
const OptionFlag kRatingFlag = {"--rating", ornwhatsnew::kRatingView, common::kRatingHelp};
const OptionFlag kFilterFlags[] = {
    {"--platform", ornwhatsnew::kFilterRelevantPlatform, "Omit changes for other platforms"},
    {"--relevant-versions", ornwhatsnew::kFilterRelevantVersion,
     "Omit changes that are relevant only to versions that\n"
     "you never used"},
    {"--headlines", ornwhatsnew::kFilterHeadlinesOnly,
     "Omit all changes except those with a malformed\n"
     "salience"},
};

const Choices<OutputFormat> kFormats = {
    "a format", {{"text", OutputFormat::kText}, {"json", OutputFormat::kJson}}};

void AddFlag(CLI::App& command, const OptionFlag& flag, DisplayOptions& options) {
  command.add_flag_callback(
      flag.name, [&options, option = flag.option] { options = options | option; },
      flag.description);
}

}  // namespace

void AddData(CLI::App& command, std::filesystem::path& data) {
  command.add_option("DATA", data, common::kDataHelp)->required()->type_name("");
}

void AddState(CLI::App& command, std::optional<std::filesystem::path>& state) {
  command.add_option("--state", state, common::kStateHelp)->type_name("FILE");
}

void AddSources(CLI::App& command, SourceArguments& sources) {
  AddData(command, sources.data);
  AddHost(command, sources.host)->required();
  AddState(command, sources.state);
}

void AddFilters(CLI::App& command, DisplayOptions& options) {
  for (const OptionFlag& flag : kFilterFlags) AddFlag(command, flag, options);
}

void AddDisplayOptions(CLI::App& command, DisplayOptions& options) {
  AddFlag(command, kOnlyNewFlag, options);
  AddFilters(command, options);
  AddFlag(command, kRatingFlag, options);
}

void AddFormat(CLI::App& command, OutputFormat& format) {
  AddChoice(command, "--format", kFormats, format, "Print the result as text (default) or json")
      ->type_name("FORMAT");
}

// Does not use the conversion of CLI11, because that reads "010" as an octal number and accepts
// hexadecimal numbers, spaces and signs.
CLI::Option* AddNumber(CLI::App& command, const std::string& name,
                       std::optional<std::size_t>& number, std::size_t minimum, std::size_t maximum,
                       const std::string& description) {
  const auto parse = [=, &number](const std::string& word) {
    std::size_t value = 0;
    const char* const end = word.data() + word.size();
    const auto [parsed, error] = std::from_chars(word.data(), end, value);
    if (error != std::errc() || parsed != end || value < minimum || value > maximum) {
      throw CLI::ValidationError(name, "'" + word + "' is not a number from " +
                                           std::to_string(minimum) + " to " +
                                           std::to_string(maximum));
    }
    number = value;
  };
  return command.add_option_function<std::string>(name, parse, description);
}

}  // namespace hosts::console
