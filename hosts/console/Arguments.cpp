#include "hosts/console/Arguments.h"

#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include <ornwhatsnew/Version.h>
#include <CLI/CLI.hpp>

namespace hosts::console {
namespace {

using ornwhatsnew::DisplayOptions;

constexpr std::size_t kWidestWidth = 100'000;

constexpr std::string_view kExitStatusHelp = R"(Exit status:
   0  done
   1  something unexpected, such as memory running out
   2  the command line is not understood
   3  the data file, the host description or standard input cannot be used
   4  the state store cannot be read or written
   5  rate: there is no such feature to rate
   6  standard output cannot be written
   7  console: a command is unknown or failed
  10  status --exit-status: something is new
  11  status --exit-status: something can be rated
  12  status --exit-status: both)";

/// The flags of the display options, which CLI11 sets one by one.
struct OptionFlags {
  bool onlyNew = false;
  bool platform = false;
  bool relevantVersions = false;
  bool headlines = false;
  bool rating = false;

  DisplayOptions Options() const {
    DisplayOptions options;
    if (onlyNew) options = options | ornwhatsnew::kShowOnlyNew;
    if (platform) options = options | ornwhatsnew::kFilterRelevantPlatform;
    if (relevantVersions) options = options | ornwhatsnew::kFilterRelevantVersion;
    if (headlines) options = options | ornwhatsnew::kFilterHeadlinesOnly;
    if (rating) options = options | ornwhatsnew::kRatingView;
    return options;
  }
};

void AddState(CLI::App& command, std::optional<std::filesystem::path>& state) {
  command
      .add_option("--state", state,
                  "The state store to use; ':memory:' remembers nothing. Default: "
                  "ornwhatsnew/state.db in $XDG_STATE_HOME, or else in ~/.local/state")
      ->type_name("FILE");
}

void AddSources(CLI::App& command, SourceArguments& sources) {
  command.add_option("DATA", sources.data, "The What's New data file")->required()->type_name("");
  command.add_option("--host", sources.host, "The host description, a JSON file")
      ->required()
      ->type_name("FILE");
  AddState(command, sources.state);
}

void AddFilters(CLI::App& command, OptionFlags& flags) {
  command.add_flag("--platform", flags.platform, "Leave out changes for other platforms");
  command.add_flag("--relevant-versions", flags.relevantVersions,
                   "Leave out changes to versions that you never ran");
  command.add_flag("--headlines", flags.headlines,
                   "Leave out every change whose salience is well formed");
}

template <class Choice>
using Choices = std::vector<std::pair<std::string, Choice>>;

/// An option that takes one of a few words; anything else is refused, naming them.
template <class Choice>
CLI::Option* AddChoice(CLI::App& command, const std::string& name, const Choices<Choice>& choices,
                       Choice& chosen, const std::string& description) {
  const auto choose = [name, choices, &chosen](const std::string& word) {
    std::string known;
    for (const auto& [candidate, choice] : choices) {
      if (candidate == word) {
        chosen = choice;
        return;
      }
      known += (known.empty() ? "" : ", ") + candidate;
    }
    throw CLI::ValidationError(name, "'" + word + "' is none of " + known);
  };
  return command.add_option_function<std::string>(name, choose, description);
}

void AddFormat(CLI::App& command, OutputFormat& format) {
  const Choices<OutputFormat> formats = {{"text", OutputFormat::kText},
                                         {"json", OutputFormat::kJson}};
  AddChoice(command, "--format", formats, format, "text (default) or json")->type_name("FORMAT");
}

void AddColor(CLI::App& command, ColorMode& color) {
  const Choices<ColorMode> modes = {
      {"auto", ColorMode::kAuto}, {"always", ColorMode::kAlways}, {"never", ColorMode::kNever}};
  AddChoice(command, "--color", modes, color,
            "Colours and links: auto (default: on a terminal; without colours when NO_COLOR is "
            "set), always or never")
      ->type_name("WHEN");
}

std::string FullName(const CLI::App& command) {
  const CLI::App* const parent = command.get_parent();
  return (parent == nullptr ? "" : FullName(*parent) + " ") + command.get_name();
}

/// What is wrong where one of the command's own commands should be named.
std::string LackOfCommand(const CLI::App& command) {
  std::string known;
  for (const CLI::App* candidate : command.get_subcommands([](const CLI::App*) { return true; })) {
    known += (known.empty() ? "" : ", ") + candidate->get_name();
  }
  const std::vector<std::string> words = command.remaining();
  const std::string problem =
      words.empty()
          ? "No command is given"
          : std::string("There is no ") +
                (words.front().starts_with('-') ? "option '" : "command '") + words.front() + "'";
  return problem + "; the commands of '" + FullName(command) + "' are " + known;
}

/// The parser and what it fills.
class CommandLine {
 public:
  CommandLine() {
    app_.require_subcommand(1);
    app_.set_version_flag("--version", "ornwhatsnew " + std::string(ornwhatsnew::kVersionText));
    AddShow();
    AddStatus();
    AddRate();
    AddStateCommands();
    AddConsole();
    // Set last, since commands added later would take it over.
    app_.footer(std::string(kExitStatusHelp));
  }

  Request Parse(int argc, const char* const* argv) {
    try {
      app_.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
      return AnswerTo(error);
    }
    return Chosen();
  }

 private:
  void AddShow() {
    show_ = app_.add_subcommand("show", "Show what is new, and remember that it was shown");
    AddSources(*show_, showArguments_.sources);
    show_->add_flag("--only-new", showFlags_.onlyNew, "Only what you have not seen yet");
    AddFilters(*show_, showFlags_);
    show_->add_flag("--rating", showFlags_.rating, "Only what you have seen and can rate");
    AddFormat(*show_, showArguments_.format);
    AddColor(*show_, showArguments_.color);
    show_
        ->add_option("--width", showArguments_.width,
                     "Wrap at this many columns; 0 never wraps. Default: the terminal's width, no "
                     "wrapping elsewhere")
        ->check(CLI::Range(std::size_t{0}, kWidestWidth).description(""))
        ->type_name("COLUMNS");
  }

  void AddStatus() {
    status_ = app_.add_subcommand("status", "Say whether anything is new or can be rated");
    AddSources(*status_, statusArguments_.sources);
    AddFilters(*status_, statusFlags_);
    AddFormat(*status_, statusArguments_.format);
    status_->add_flag("--exit-status", statusArguments_.saysItByExitStatus,
                      "Say it by the exit status, too");
  }

  void AddRate() {
    rate_ = app_.add_subcommand("rate", "Remember that you have rated a feature");
    rate_->add_option("KEY", rateArguments_.key, "The feature's key")->required()->type_name("");
    AddSources(*rate_, rateArguments_.sources);
  }

  void AddStateCommands() {
    state_ = app_.add_subcommand("state", "Look at, or forget, what is remembered");
    state_->require_subcommand(1);
    stateShow_ = state_->add_subcommand("show", "Say what is remembered");
    AddState(*stateShow_, stateShowArguments_.state);
    AddFormat(*stateShow_, stateShowArguments_.format);
    stateReset_ = state_->add_subcommand("reset", "Forget everything that is remembered");
    AddState(*stateReset_, stateResetArguments_.state);
  }

  void AddConsole() {
    console_ = app_.add_subcommand(
        "console",
        "Run a command of the console, or those that standard input holds, one a line; 'help' "
        "lists them");
    console_->add_option("--host", consoleArguments_.host, "The host description, a JSON file")
        ->type_name("FILE");
    console_->prefix_command();
    console_->footer("All words behind the options are the command: console ValidateWhatsNew FILE");
  }

  Answer AnswerTo(const CLI::ParseError& error) {
    std::ostringstream out;
    std::ostringstream problem;
    const bool isError = app_.exit(error, out, problem) != 0;
    if (!isError) return {out.str(), false};
    const CLI::App& command = ParsedCommand();
    const bool lacksCommand =
        command.get_require_subcommand_min() > 0 && command.get_subcommands().empty() &&
        error.get_exit_code() == static_cast<int>(CLI::ExitCodes::RequiredError);
    return {(lacksCommand ? LackOfCommand(command) : std::string(error.what())) + ". '" +
                FullName(command) + " --help' tells what there is.",
            true};
  }

  /// The innermost command that was understood.
  const CLI::App& ParsedCommand() const {
    const CLI::App* command = &app_;
    while (!command->get_subcommands().empty()) command = command->get_subcommands().back();
    return *command;
  }

  Request Chosen() {
    if (show_->parsed()) {
      showArguments_.options = showFlags_.Options();
      return showArguments_;
    }
    if (status_->parsed()) {
      statusArguments_.options = statusFlags_.Options();
      return statusArguments_;
    }
    if (rate_->parsed()) return rateArguments_;
    if (stateShow_->parsed()) return stateShowArguments_;
    if (stateReset_->parsed()) return stateResetArguments_;
    for (const std::string& word : console_->remaining()) {
      if (!consoleArguments_.line.empty()) consoleArguments_.line += ' ';
      consoleArguments_.line += word;
    }
    return consoleArguments_;
  }

  CLI::App app_{"Shows the What's New list of an application.", "ornwhatsnew"};
  CLI::App* show_ = nullptr;
  CLI::App* status_ = nullptr;
  CLI::App* rate_ = nullptr;
  CLI::App* state_ = nullptr;
  CLI::App* stateShow_ = nullptr;
  CLI::App* stateReset_ = nullptr;
  CLI::App* console_ = nullptr;
  OptionFlags showFlags_;
  OptionFlags statusFlags_;
  ShowArguments showArguments_;
  StatusArguments statusArguments_;
  RateArguments rateArguments_;
  StateShowArguments stateShowArguments_;
  StateResetArguments stateResetArguments_;
  ConsoleArguments consoleArguments_;
};

}  // namespace

Request ParseArguments(int argc, const char* const* argv) {
  return CommandLine().Parse(argc, argv);
}

}  // namespace hosts::console
