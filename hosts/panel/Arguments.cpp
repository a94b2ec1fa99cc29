#include "hosts/panel/Arguments.h"

#include <sstream>
#include <string>
#include <vector>

#include <ornwhatsnew/Version.h>
#include <CLI/CLI.hpp>

#include "hosts/common/CommandLineHelp.h"
#include "hosts/common/StandardStreams.h"
#include "hosts/common/ToolError.h"

namespace hosts::panel {
namespace {

constexpr const char* kExitStatusHelp = R"(Exit status:
   0  success
   1  unexpected error, for example insufficient memory
   2  the command line is not valid
   3  the data file or the host description cannot be used
   4  the state store cannot be read or written
   6  the output cannot be written)";

void AddOptions(CLI::App& app, Arguments& arguments) {
  app.get_formatter()->column_width(common::kHelpNameColumns);
  app.add_option("DATA", arguments.data, common::kDataHelp)->required()->type_name("");
  app.add_option("--host", arguments.host, common::kHostHelp)->required()->type_name("FILE");
  app.add_option("--state", arguments.state, common::kStateHelp)->type_name("FILE");
  app.add_flag("--rating", arguments.showsRatings, common::kRatingHelp);
  app.set_version_flag("--version", "ornwhatsnew-panel " + std::string(ornwhatsnew::kVersionText));
  app.footer(kExitStatusHelp);
}

std::string ErrorMessage(const CLI::App& app, const CLI::ParseError& error) {
  const std::vector<std::string> words = app.remaining();
  if (words.empty()) return error.what();
  const bool isOption = words.front().starts_with('-');
  return (isOption ? "unknown option '" : "unexpected argument '") + words.front() + "'";
}

}  // namespace

std::optional<Arguments> ParseArguments(int argc, const char* const* argv) {
  CLI::App app("Shows the What's New panel of an application in a window.", "ornwhatsnew-panel");
  Arguments arguments;
  AddOptions(app, arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& request) {
    std::ostringstream text;
    app.exit(request, text);
    common::WriteOutput(text.str());
    return std::nullopt;
  } catch (const CLI::ParseError& error) {
    throw common::ToolError(
        common::ExitStatus::kUsage,
        ErrorMessage(app, error) + ". Run 'ornwhatsnew-panel --help' for usage.");
  }
  return arguments;
}

}  // namespace hosts::panel
