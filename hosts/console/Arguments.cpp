#include "hosts/console/Arguments.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include <ornwhatsnew/Version.h>
#include <CLI/CLI.hpp>

#include "hosts/author/lint/LintConfig.h"
#include "hosts/common/CommandLineHelp.h"
#include "hosts/console/ArgumentOptions.h"
#include "hosts/console/ParseErrors.h"

namespace hosts::console {
namespace {

using ornwhatsnew::DataColumn;

constexpr std::size_t kMaximumWidth = 100'000;
constexpr std::size_t kMaximumLine = 1'000'000'000;

constexpr const char* kExitStatusHelp = R"(Exit status:
   0  success
   1  unexpected error, for example insufficient memory
   2  the command line is not valid
   3  an input file or standard input cannot be used, or
      add: the new row has an error
   4  the state store cannot be read or written
   5  rate: the feature does not exist or cannot be rated
   6  the output cannot be written
   7  console: a command is unknown or failed
  10  status --exit-status: something is new
  11  status --exit-status: something can be rated
  12  status --exit-status: something is new, and something can be rated
The command lint has other exit statuses; run 'ornwhatsnew lint --help'.)";

/// An option for a field of a new change. The name of the option is the short name of the column
/// (`author::kShortColumnNames`) in lower case, with hyphens instead of spaces.
struct ColumnOption {
  const char* name;
  DataColumn column;
  const char* description;
};

const ColumnOption kColumnOptions[] = {
    {"--app-version", DataColumn::kVersion, "The version that introduces the change"},
    {"--grouping-id", DataColumn::kGroupingID, "The key of a feature or section"},
    {"--jira-id", DataColumn::kStoryID, "The key of a story, task, bug, feature or section"},
    {"--salience", DataColumn::kSalience, "A keyword, such as Unreviewed"},
    {"--rating", DataColumn::kRatingRequest, "RequestRating, or a question"},
    {"--first-version", DataColumn::kFirstVersion, "The first relevant version"},
    {"--platform", DataColumn::kPlatform, "The only relevant platform: Mac or Win"},
    {"--url", DataColumn::kURL, "A URL that begins with https://"},
    {"--commit", DataColumn::kSHA, "The ID of the commit"},
    {"--message", DataColumn::kDescription, "The text of the change"},
};

const Choices<PanelFormat> kPanelFormats = {"a format",
                                            {{"text", PanelFormat::kText},
                                             {"plain", PanelFormat::kPlain},
                                             {"html", PanelFormat::kHtml},
                                             {"markdown", PanelFormat::kMarkdown},
                                             {"json", PanelFormat::kJson}}};
const Choices<ColorMode> kColorModes = {
    "a colour mode",
    {{"auto", ColorMode::kAuto}, {"always", ColorMode::kAlways}, {"never", ColorMode::kNever}}};

const Choices<LintFormat> kLintFormats = {"a format",
                                          {{"text", LintFormat::kText},
                                           {"json", LintFormat::kJson},
                                           {"sarif", LintFormat::kSarif},
                                           {"github", LintFormat::kGithub}}};
const Choices<author::Severity> kSeverities = {"a severity",
                                               {{"note", author::Severity::kNote},
                                                {"warning", author::Severity::kWarning},
                                                {"error", author::Severity::kError}}};

constexpr const char* kLintFilesHelp = "The What's New data files; '-' is standard input";
constexpr const char* kBaselineHelp =
    "Report how the edits since OLD affect users. OLD is a\n"
    "file, or git:REV for the file in a commit";
constexpr const char* kLintExitStatusHelp = R"(Exit status of lint:
   0  no finding has at least the severity of --fail-on
   1  a finding has at least the severity of --fail-on
   2  the files could not be checked, for any reason)";

/// Converts the value of `--fix`. The value is empty if the option is absent. CLI11 sets it to
/// "true" if the option has no value.
std::optional<author::FixScope> ParseFixScope(const std::string& word) {
  if (word.empty()) return std::nullopt;
  if (word == "true") return author::FixScope::kSafe;
  if (word != "all")
    throw CLI::ValidationError("--fix",
                               "invalid value '" + word + "'; write '--fix' or '--fix=all'");
  return author::FixScope::kAll;
}

/// Returns whether `name` is the long name of an option of `command` that takes a value.
bool HasValue(const CLI::App& command, const std::string& name) {
  const CLI::Option* const option =
      name.starts_with("--") ? command.get_option_no_throw(name) : nullptr;
  return option != nullptr && option->get_items_expected_max() > 0;
}

/// Returns the subcommand of `command` with the name `name`. If there is none, returns `command`.
const CLI::App* SubcommandOrSelf(const CLI::App& command, const std::string& name) {
  const auto hasName = [&name](const CLI::App* app) { return app->get_name() == name; };
  const std::vector<const CLI::App*> found = command.get_subcommands(hasName);
  return found.empty() ? &command : found.front();
}

/// Makes CLI11 reject a value after a flag of `command` or of its subcommands, as in "--watch=3".
/// The only flag with an optional value is `--fix`.
void ForbidFlagValues(CLI::App& command) {
  for (CLI::Option* const option : command.get_options()) {
    const bool isFlag = option->get_items_expected_max() == 0 && option->get_name() != "--fix";
    if (isFlag) option->disable_flag_override();
  }
  for (CLI::App* const subcommand : command.get_subcommands({})) ForbidFlagValues(*subcommand);
}

/// Parses the command line with CLI11, which stores the arguments of the selected command in a
/// member of this class.
class CommandLine {
 public:
  CommandLine() {
    app_.get_formatter()->column_width(common::kHelpNameColumns);
    app_.require_subcommand(1);
    app_.set_version_flag("--version", "ornwhatsnew " + std::string(ornwhatsnew::kVersionText));
    AddShow();
    AddStatus();
    AddWhy();
    AddRate();
    AddStateCommands();
    AddImport();
    AddAdd();
    AddMessages();
    AddConsole();
    AddLint();
    AddPreview();
    ForbidFlagValues(app_);
    // Set the footer last. A subcommand that is added after the footer is set would inherit it.
    app_.footer(kExitStatusHelp);
  }

  Request Parse(std::span<const char* const> words) {
    try {
      app_.parse(WordsForParser(words));
    } catch (const CLI::ParseError& error) {
      return AnswerTo(app_, error);
    }
    return request_;
  }

 private:
  template <class Arguments>
  CLI::App& AddCommand(CLI::App& parent, const char* name, const char* description,
                       const Arguments& arguments) {
    CLI::App* const command = parent.add_subcommand(name, description);
    command->callback([this, &arguments] { request_ = arguments; });
    return *command;
  }

  void AddShow() {
    CLI::App& command =
        AddCommand(app_, "show", "Show the What's New panel, and mark its content as seen", show_);
    AddSources(command, show_.sources);
    AddDisplayOptions(command, show_.options);
    command.add_flag("--no-remember", show_.storesNothing,
                     "Do not mark the shown items and changes as seen");
    AddChoice(command, "--format", kPanelFormats, show_.format,
              "The format of the output: text (default), plain, html,\n"
              "markdown or json")
        ->type_name("FORMAT");
    AddChoice(command, "--color", kColorModes, show_.color,
              "Whether --format text uses colours and links: auto\n"
              "(default), always or never. auto: only on a terminal,\n"
              "and without colours if NO_COLOR is set")
        ->type_name("WHEN");
    AddNumber(command, "--width", show_.width, 0, kMaximumWidth,
              "Wrap lines at this column in the formats text and\n"
              "plain. 0: do not wrap. Default: the width of the\n"
              "terminal for text on a terminal, otherwise 0")
        ->type_name("COLUMNS");
  }

  void AddStatus() {
    CLI::App& command =
        AddCommand(app_, "status", "Report whether anything is new or can be rated", status_);
    AddSources(command, status_.sources);
    AddFilters(command, status_.options);
    AddFormat(command, status_.format);
    command.add_flag("--exit-status", status_.setsExitStatus,
                     "Report in the exit status whether anything is new or\n"
                     "can be rated");
  }

  void AddWhy() {
    CLI::App& command =
        AddCommand(app_, "why", "Explain why features and changes are shown or hidden", why_);
    AddSources(command, why_.sources);
    AddNumber(command, "--line", why_.line, 1, kMaximumLine,
              "Explain only the row on this line of the data file")
        ->type_name("N");
    command.add_option("--key", why_.key, "Explain only the feature or section with this key")
        ->type_name("KEY");
    AddDisplayOptions(command, why_.options);
    // Do not use `excludes` of CLI11, which changes the help of both options.
    command.callback([this] {
      if (why_.line && why_.key) throw CLI::ValidationError("--key", "cannot be used with --line");
      request_ = why_;
    });
  }

  void AddRate() {
    CLI::App& command = AddCommand(app_, "rate", "Record that you rated a feature", rate_);
    command.add_option("KEY", rate_.key, "The feature's key")->required()->type_name("");
    AddSources(command, rate_.sources);
  }

  void AddStateCommands() {
    CLI::App* const state = app_.add_subcommand("state", "Show or delete the stored state");
    state->require_subcommand(1);
    CLI::App& show = AddCommand(*state, "show", "Show the stored state", stateShow_);
    AddState(show, stateShow_.state);
    AddFormat(show, stateShow_.format);
    CLI::App& reset = AddCommand(*state, "reset", "Delete the stored state", stateReset_);
    AddState(reset, stateReset_.state);
  }

  void AddImport() {
    CLI::App& command =
        AddCommand(app_, "import", "Convert a CSV file from a spreadsheet to a data file", import_);
    command.add_option("TABLE", import_.table, "The CSV file of the spreadsheet")
        ->required()
        ->type_name("");
    command
        .add_option("-o,--output", import_.output,
                    "The data file to write; '-' is standard output\n"
                    "(default)")
        ->type_name("FILE");
    command
        .add_option("--encoding", import_.encoding,
                    "The encoding of the CSV file. By default, its byte\n"
                    "order mark determines the encoding. A file without a\n"
                    "byte order mark is UTF-8 if it is valid UTF-8, and\n"
                    "otherwise Windows-1252")
        ->type_name("NAME");
  }

  void AddAdd() {
    CLI::App& command = AddCommand(app_, "add", "Add a change to a data file", add_);
    AddData(command, add_.data);
    for (const ColumnOption& option : kColumnOptions) {
      std::string& field = add_.fields[ornwhatsnew::ColumnIndex(option.column)];
      command.add_option(option.name, field, option.description)->type_name("TEXT");
    }
    command.get_option("--grouping-id")->required();
  }

  void AddMessages() {
    CLI::App& command = AddCommand(app_, "messages", "Print a template for translators", messages_);
    command.add_option("DATA", messages_.data, "What's New data files")->required()->type_name("");
    AddHost(command, messages_.host);
  }

  void AddConsole() {
    CLI::App& command = AddCommand(app_, "console", "Run console commands", console_);
    AddHost(command, console_.host);
    command.footer(
        "All words after the options are one console command:\n"
        "  ornwhatsnew console help\n"
        "Without a command, each line of standard input is one command.\n"
        "The command 'help' lists the console commands.\n"
        "ValidateWhatsNew always succeeds, even if it cannot read the file.\n"
        "A script cannot use this command to check a file.");
    consoleCommand_ = &command;
  }

  void AddLint() {
    CLI::App& command = AddCommand(app_, "lint", "Find mistakes in data files", lint_);
    CLI::Option* const files = command.add_option("DATA", lint_.files, kLintFilesHelp);
    files->type_name("");
    AddHost(command, lint_.host);
    AddChoice(command, "--format", kLintFormats, lint_.format,
              "The format of the output: text (default), json, sarif\n"
              "or github")
        ->type_name("STYLE");
    AddChoice(command, "--color", kColorModes, lint_.color,
              "Use colours: auto (default), always or never")
        ->type_name("WHEN");
    AddChoice(command, "--fail-on", kSeverities, lint_.failOn,
              "Exit with status 1 if a finding has at least this\n"
              "severity: note, warning or error (default)")
        ->type_name("LEVEL");
    AddSeverity(command);
    command.add_option("--baseline", lint_.baseline, kBaselineHelp)->type_name("OLD");
    AddFix(command);
    AddExplain(command);
    command.callback([this, files] {
      const bool needsFile = !lint_.explained && !lint_.listsCodes;
      if (needsFile && files->count() == 0) throw CLI::RequiredError("DATA");
      lint_.fix = ParseFixScope(fixWord_);
      request_ = lint_;
    });
    command.footer(kLintExitStatusHelp);
  }

  void AddPreview() {
    CLI::App& command =
        AddCommand(app_, "preview", "Write a web page with the panels of several users", preview_);
    AddData(command, preview_.data);
    AddHost(command, preview_.host)->required();
    command
        .add_option("--seen", preview_.seen,
                    "Add the panel of a user who has seen OLD, an earlier\n"
                    "version of the data file")
        ->type_name("OLD");
    command.add_option("-o,--output", preview_.output, "The page to write; '-' is standard output")
        ->required()
        ->type_name("FILE");
    command.add_flag("--watch", preview_.watches,
                     "Regenerate the page whenever an input file changes,\n"
                     "until you press Ctrl+C");
  }

  void AddSeverity(CLI::App& command) {
    const auto add = [this](const std::string& word) {
      const std::string problem = author::AddSeverity(word, lint_.severities);
      if (!problem.empty()) throw CLI::ValidationError("--severity", problem);
    };
    command
        .add_option_function<std::vector<std::string>>(
            "--severity",
            [add](const std::vector<std::string>& words) { std::ranges::for_each(words, add); },
            "The severity of a code: CODE=off, note, warning or\n"
            "error. Can be repeated")
        ->type_name("CODE=LEVEL")
        ->expected(1)
        ->take_all();
  }

  void AddFix(CLI::App& command) {
    command.add_flag("--fix", fixWord_,
                     "Correct mistakes that have only one possible\n"
                     "correction. --fix=all also makes corrections that\n"
                     "announce a change again");
    command.add_flag("--dry-run", lint_.isDryRun, "With --fix, print a diff and change no file");
  }

  void AddExplain(CLI::App& command) {
    command
        .add_option_function<std::string>(
            "--explain",
            [this](const std::string& word) {
              lint_.explained = author::FindLintCode(word);
              if (!lint_.explained) {
                throw CLI::ValidationError("--explain", author::UnknownCodeMessage(word));
              }
            },
            "Explain a code")
        ->type_name("CODE");
    command.add_flag("--list-codes", lint_.listsCodes, "List all codes");
  }

  /// Returns the words of the command line in reverse order, as the parser of CLI11 expects them.
  ///
  /// Splits `--name=value` into two words if the option requires a value. Without this split, CLI11
  /// would use the next word as the value of `--name=`, instead of an empty value.
  ///
  /// Moves the words of a console command to `console_`, because CLI11 would parse the options
  /// among them.
  std::vector<std::string> WordsForParser(std::span<const char* const> rest) {
    std::vector<std::string> words;
    const CLI::App* command = &app_;
    for (; !rest.empty() && !IsEndOfOptions(*command, rest.front()); rest = rest.subspan(1)) {
      const std::string word = rest.front();
      const std::size_t nameEnd = word.find('=');
      if (!HasValue(*command, word.substr(0, nameEnd))) {
        words.push_back(word);
        command = SubcommandOrSelf(*command, word);
      } else if (nameEnd != std::string::npos) {
        words.push_back(word.substr(0, nameEnd));
        words.push_back(word.substr(nameEnd + 1));
      } else {
        words.push_back(word);
        if (rest.size() == 1) continue;
        rest = rest.subspan(1);
        words.emplace_back(rest.front());
      }
    }
    if (command == consoleCommand_) {
      SetConsoleLine(rest);
    } else {
      words.insert(words.end(), rest.begin(), rest.end());
    }
    std::ranges::reverse(words);
    return words;
  }

  /// Returns whether `word` ends the options of `command`: whether it is "--" or the first word of
  /// a console command.
  bool IsEndOfOptions(const CLI::App& command, std::string_view word) const {
    return word == "--" || (&command == consoleCommand_ && !word.starts_with('-'));
  }

  void SetConsoleLine(std::span<const char* const> words) {
    if (!words.empty() && words.front() == std::string_view("--")) words = words.subspan(1);
    for (const char* const word : words) {
      if (!console_.line.empty()) console_.line += ' ';
      console_.line += word;
    }
  }

  CLI::App app_{"Shows the What's New panel of an application.", "ornwhatsnew"};
  Request request_;
  ShowArguments show_;
  StatusArguments status_;
  WhyArguments why_;
  RateArguments rate_;
  StateShowArguments stateShow_;
  StateResetArguments stateReset_;
  ImportArguments import_;
  AddArguments add_;
  MessagesArguments messages_;
  ConsoleArguments console_;
  LintArguments lint_;
  PreviewArguments preview_;
  std::string fixWord_;
  const CLI::App* consoleCommand_ = nullptr;
};

}  // namespace

Request ParseArguments(int argc, const char* const* argv) {
  const std::span words(argv, static_cast<std::size_t>(argc));
  return CommandLine().Parse(words.subspan(words.empty() ? 0 : 1));
}

}  // namespace hosts::console
