// The program's commands. Each `Run` function executes one command, writes its result to standard
// output or to a file, and returns the exit status of the program. On failure, it throws
// `ToolError`, `author::OptionError`, `common::StateStoreError` or `common::JsonError`.
#ifndef HOSTS_CONSOLE_COMMANDS_H_
#define HOSTS_CONSOLE_COMMANDS_H_

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <ornwhatsnew/utility/SharedTypes.h>

#include "hosts/author/DataFileWriter.h"
#include "hosts/author/lint/Lint.h"
#include "hosts/author/lint/LintFix.h"
#include "hosts/common/ToolError.h"

namespace hosts::console {

using common::ExitStatus;
using common::ToolError;

enum class ColorMode { kAuto, kAlways, kNever };
enum class OutputFormat { kText, kJson };
enum class PanelFormat { kText, kPlain, kHtml, kMarkdown, kJson };

/// The files that a command uses. If `state` is absent, the command uses the user's default store.
struct SourceArguments {
  std::filesystem::path data;
  std::filesystem::path host;
  std::optional<std::filesystem::path> state;
};

struct ShowArguments {
  SourceArguments sources;
  ornwhatsnew::DisplayOptions options;
  PanelFormat format = PanelFormat::kText;
  ColorMode color = ColorMode::kAuto;
  std::optional<std::size_t> width;  ///< in columns; 0: no wrapping; absent: depends on the output
  bool storesNothing = false;        ///< true: do not mark the shown content as seen
};

struct StatusArguments {
  SourceArguments sources;
  ornwhatsnew::DisplayOptions options;
  OutputFormat format = OutputFormat::kText;
  bool setsExitStatus = false;
};

struct WhyArguments {
  SourceArguments sources;
  ornwhatsnew::DisplayOptions options;
  // If `line` and `key` are both absent, the command explains the whole data file. At most one of
  // them is present.
  std::optional<std::size_t> line;
  std::optional<std::string> key;
};

struct RateArguments {
  SourceArguments sources;
  std::string key;
};

struct StateShowArguments {
  std::optional<std::filesystem::path> state;
  OutputFormat format = OutputFormat::kText;
};

struct StateResetArguments {
  std::optional<std::filesystem::path> state;
};

struct ImportArguments {
  std::filesystem::path table;
  std::filesystem::path output = "-";   ///< "-" is standard output
  std::optional<std::string> encoding;  ///< absent: detected
};

struct AddArguments {
  std::filesystem::path data;
  author::DataFields fields;
};

struct MessagesArguments {
  std::vector<std::filesystem::path> data;
  std::optional<std::filesystem::path> host;
};

enum class LintFormat { kText, kJson, kSarif, kGithub };

struct LintArguments {
  std::vector<std::string> files;  ///< "-" is standard input
  std::optional<std::string> host;
  LintFormat format = LintFormat::kText;
  ColorMode color = ColorMode::kAuto;
  author::Severity failOn = author::Severity::kError;
  author::SeverityOverrides severities;
  std::optional<std::string> baseline;  ///< a file, or "git:REV"
  std::optional<author::FixScope> fix;  ///< absent: correct no mistake
  bool isDryRun = false;                ///< print a diff and change no file
  std::optional<author::LintCode> explained;
  bool listsCodes = false;
};

struct PreviewArguments {
  std::filesystem::path data;
  std::filesystem::path host;
  std::optional<std::filesystem::path> seen;  ///< an earlier data file, which a user has seen
  std::filesystem::path output;               ///< "-" is standard output
  bool watches = false;                       ///< rewrite the page if an input file changes
};

struct ConsoleArguments {
  std::optional<std::filesystem::path> host;  ///< absent: the library's default services
  std::string line;                           ///< empty: read lines from standard input
};

/// Prints the findings in the data files. If `fix` is present, first corrects the files. If
/// `isDryRun` is true, prints a diff instead of the findings and changes no file. Returns
/// `kLintFindings` if a finding has at least the severity `failOn`. On any failure, throws
/// `ToolError` with the status `kLintFailed`.
///
/// If `explained` is present, prints the explanation of this code. Otherwise, if `listsCodes` is
/// true, prints all codes. In both cases, checks no file.
ExitStatus Run(const LintArguments& arguments);
/// Writes a page with the panels of several users and the findings of `lint`. Replaces the output
/// file atomically. If `watches` is true, rewrites the page whenever an input file changes, until
/// the user interrupts the program.
ExitStatus Run(const PreviewArguments& arguments);
/// Prints the panel, and then marks its content as seen. Stores nothing if `storesNothing` is
/// true, if the output fails, or if the reader of the output closes it early.
ExitStatus Run(const ShowArguments& arguments);
/// Prints whether `show --only-new` would show any item, and whether `show --rating` would, each
/// with the same filters. Stores nothing. If `setsExitStatus` is false, returns `kDone`. Otherwise,
/// returns `kSomethingNew`, `kSomethingToRate`, `kNewAndToRate`, or `kDone` if neither command
/// would show an item.
ExitStatus Run(const StatusArguments& arguments);
/// Prints which features and changes the command `show` would print with the same options, and why
/// it would hide the others. Stores nothing. Throws `author::OptionError` if the data file does not
/// have the line, or if no feature or section has the key.
ExitStatus Run(const WhyArguments& arguments);
/// Marks a feature as rated in the state store. Throws `ToolError` if the user cannot rate this
/// feature.
ExitStatus Run(const RateArguments& arguments);
/// Prints the stored state.
ExitStatus Run(const StateShowArguments& arguments);
/// Deletes the stored state.
ExitStatus Run(const StateResetArguments& arguments);
/// Converts a spreadsheet's table to a data file, and writes the data file. Reports the encoding,
/// each cell in which characters were replaced, and the first 1,000 errors to standard error. If
/// the table has an error, throws `ToolError` and does not write the data file.
ExitStatus Run(const ImportArguments& arguments);
/// Adds a change to the end of a data file. Reports the findings of `lint` on the new row to
/// standard error. If a finding is an error, throws `ToolError` and does not change the file.
ExitStatus Run(const AddArguments& arguments);
/// Prints a gettext template with the key texts of data files, of a feature table and of the
/// library.
ExitStatus Run(const MessagesArguments& arguments);
/// Runs the console command in `arguments`. If there is none, runs each line of standard input as a
/// console command. Returns `kCommand` if a command is unknown or fails.
ExitStatus Run(const ConsoleArguments& arguments);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_COMMANDS_H_
