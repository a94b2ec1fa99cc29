#include <initializer_list>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/console/Arguments.h"

namespace hosts::console {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

Request Parse(std::initializer_list<const char*> arguments) {
  std::vector<const char*> words = {"ornwhatsnew"};
  words.insert(words.end(), arguments);
  return ParseArguments(static_cast<int>(words.size()), words.data());
}

template <class Arguments>
Arguments ParseAs(std::initializer_list<const char*> arguments) {
  return std::get<Arguments>(Parse(arguments));
}

TEST(Arguments, ShowReadsDataAndHost) {
  const auto show = ParseAs<ShowArguments>({"show", "d.csv", "--host", "h.json"});
  EXPECT_EQ("d.csv", show.sources.data);
  EXPECT_EQ("h.json", show.sources.host);
  EXPECT_FALSE(show.sources.state.has_value());
  EXPECT_FALSE(show.width.has_value());
  EXPECT_EQ(ornwhatsnew::DisplayOptions(), show.options);
  EXPECT_EQ(PanelFormat::kText, show.format);
  EXPECT_EQ(ColorMode::kAuto, show.color);
}

struct OptionCase {
  const char* name;
  ornwhatsnew::DisplayOptions option;
};

class ShowOptions : public testing::TestWithParam<OptionCase> {};

TEST_P(ShowOptions, EachSetsOneDisplayOption) {
  const auto show = ParseAs<ShowArguments>({"show", "d", "--host", "h", GetParam().name});
  EXPECT_EQ(GetParam().option, show.options);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ShowOptions,
    testing::Values(OptionCase{"--only-new", ornwhatsnew::kShowOnlyNew},
                    OptionCase{"--platform", ornwhatsnew::kFilterRelevantPlatform},
                    OptionCase{"--relevant-versions", ornwhatsnew::kFilterRelevantVersion},
                    OptionCase{"--headlines", ornwhatsnew::kFilterHeadlinesOnly},
                    OptionCase{"--rating", ornwhatsnew::kRatingView}));

TEST(Arguments, ShowReadsEveryOption) {
  const auto show =
      ParseAs<ShowArguments>({"show", "d", "--host", "h", "--only-new", "--rating", "--color",
                              "always", "--format", "json", "--width", "0", "--state", "s"});
  EXPECT_EQ(ornwhatsnew::kShowOnlyNew | ornwhatsnew::kRatingView, show.options);
  EXPECT_EQ(ColorMode::kAlways, show.color);
  EXPECT_EQ(PanelFormat::kJson, show.format);
  EXPECT_EQ(0U, show.width);
  EXPECT_EQ("s", show.sources.state);
  EXPECT_EQ(ColorMode::kNever,
            ParseAs<ShowArguments>({"show", "d", "--host", "h", "--color", "never"}).color);
}

TEST(Arguments, ShowHasFiveFormats) {
  const std::vector<std::pair<const char*, PanelFormat>> formats = {
      {"text", PanelFormat::kText},
      {"plain", PanelFormat::kPlain},
      {"html", PanelFormat::kHtml},
      {"markdown", PanelFormat::kMarkdown},
      {"json", PanelFormat::kJson}};
  for (const auto& [name, format] : formats) {
    EXPECT_EQ(format,
              ParseAs<ShowArguments>({"show", "d", "--host", "h", "--format", name}).format);
  }
}

TEST(Arguments, StatusRateAndStateReadTheirOptions) {
  const auto status =
      ParseAs<StatusArguments>({"status", "d", "--host", "h", "--exit-status", "--platform"});
  EXPECT_TRUE(status.setsExitStatus);
  EXPECT_EQ(ornwhatsnew::kFilterRelevantPlatform, status.options);
  const auto rate = ParseAs<RateArguments>({"rate", "ORN-7", "d", "--host", "h"});
  EXPECT_EQ("ORN-7", rate.key);
  EXPECT_EQ("d", rate.sources.data);
  EXPECT_EQ("s", ParseAs<StateShowArguments>({"state", "show", "--state", "s"}).state);
  EXPECT_EQ("s", ParseAs<StateResetArguments>({"state", "reset", "--state", "s"}).state);
}

TEST(Arguments, PreviewReadsItsOptions) {
  auto preview = ParseAs<PreviewArguments>({"preview", "d", "--host", "h", "-o", "p"});
  EXPECT_EQ("d", preview.data);
  EXPECT_EQ("h", preview.host);
  EXPECT_EQ("p", preview.output);
  EXPECT_FALSE(preview.seen.has_value());
  EXPECT_FALSE(preview.watches);
  preview = ParseAs<PreviewArguments>(
      {"preview", "--seen", "s", "--watch", "--host=h", "d", "--output", "-"});
  EXPECT_EQ("s", preview.seen);
  EXPECT_EQ("-", preview.output);
  EXPECT_TRUE(preview.watches);
}

TEST(Arguments, WhyReadsALineOrAKeyAndTheOptionsOfShow) {
  const auto all = ParseAs<WhyArguments>({"why", "d", "--host", "h"});
  EXPECT_FALSE(all.line.has_value());
  EXPECT_FALSE(all.key.has_value());
  const auto line = ParseAs<WhyArguments>({"why", "d", "--host", "h", "--line", "012", "--rating",
                                           "--only-new", "--headlines", "--state", "s"});
  EXPECT_EQ("d", line.sources.data);
  EXPECT_EQ("s", line.sources.state);
  EXPECT_EQ(12U, line.line);
  EXPECT_EQ(
      ornwhatsnew::kRatingView | ornwhatsnew::kShowOnlyNew | ornwhatsnew::kFilterHeadlinesOnly,
      line.options);
  EXPECT_EQ("K", ParseAs<WhyArguments>({"why", "d", "--host", "h", "--key=K"}).key);
}

TEST(Arguments, AnEmptyStateIsNotTheDefault) {
  EXPECT_EQ("", ParseAs<StateShowArguments>({"state", "show", "--state", ""}).state);
  EXPECT_EQ("", ParseAs<StateShowArguments>({"state", "show", "--state="}).state);
}

TEST(Arguments, AnEmptyValueIsNotTheNextWord) {
  const auto show = ParseAs<ShowArguments>({"show", "--state=", "d", "--host=", "--only-new"});
  EXPECT_EQ("", show.sources.state);
  EXPECT_EQ("d", show.sources.data);
  EXPECT_EQ("", show.sources.host);
  EXPECT_TRUE(show.options.Has(ornwhatsnew::kShowOnlyNew));
}

TEST(Arguments, AValueMayLookLikeAnOption) {
  const auto show = ParseAs<ShowArguments>({"show", "--state", "--host=", "--host=--a=b", "d"});
  EXPECT_EQ("--host=", show.sources.state);
  EXPECT_EQ("--a=b", show.sources.host);
  EXPECT_EQ("d", show.sources.data);
}

TEST(Arguments, WordsAfterTwoDashesAreNotOptions) {
  const auto rate = ParseAs<RateArguments>({"rate", "--host", "h", "--", "--state=", "-d"});
  EXPECT_EQ("--state=", rate.key);
  EXPECT_EQ("-d", rate.sources.data);
  EXPECT_FALSE(rate.sources.state.has_value());
}

TEST(Arguments, WidthIsADecimalNumber) {
  const auto width = [](const char* word) {
    return ParseAs<ShowArguments>({"show", "d", "--host", "h", "--width", word}).width;
  };
  EXPECT_EQ(10U, width("010"));
  EXPECT_EQ(0U, width("0"));
  EXPECT_EQ(100'000U, width("100000"));
}

TEST(Arguments, ShowStoresNothingWithNoRemember) {
  EXPECT_FALSE(ParseAs<ShowArguments>({"show", "d", "--host", "h"}).storesNothing);
  EXPECT_TRUE(ParseAs<ShowArguments>({"show", "d", "--host", "h", "--no-remember"}).storesNothing);
}

TEST(Arguments, ConsoleJoinsAllWordsAfterItsOptions) {
  const auto console = ParseAs<ConsoleArguments>(
      {"console", "--host", "h", "ValidateWhatsNew", "--my", "file.csv", "--host", "x"});
  EXPECT_EQ("h", console.host);
  EXPECT_EQ("ValidateWhatsNew --my file.csv --host x", console.line);
  EXPECT_EQ("", ParseAs<ConsoleArguments>({"console"}).line);
}

TEST(Arguments, ConsoleSkipsTwoDashesBeforeTheCommand) {
  EXPECT_EQ("help", ParseAs<ConsoleArguments>({"console", "--", "help"}).line);
  EXPECT_EQ("--host -- x", ParseAs<ConsoleArguments>({"console", "--", "--host", "--", "x"}).line);
  EXPECT_EQ("help --", ParseAs<ConsoleArguments>({"console", "--host=h", "help", "--"}).line);
  EXPECT_EQ("", ParseAs<ConsoleArguments>({"console", "--"}).line);
}

TEST(Arguments, HelpAndVersionAreTextToPrint) {
  for (const char* help : {"--help", "-h"}) {
    const auto answer = ParseAs<Answer>({help});
    EXPECT_FALSE(answer.isError);
    EXPECT_THAT(answer.text, HasSubstr("Exit status:"));
  }
  EXPECT_THAT(ParseAs<Answer>({"show", "--help"}).text, HasSubstr("--only-new"));
  EXPECT_THAT(ParseAs<Answer>({"lint", "--help"}).text, HasSubstr("Exit with status 1 if a"));
  EXPECT_THAT(ParseAs<Answer>({"--version"}).text, HasSubstr("ornwhatsnew "));
}

class BadArguments : public testing::TestWithParam<std::vector<const char*>> {};

TEST_P(BadArguments, GiveAnErrorThatMentionsTheHelp) {
  std::vector<const char*> words = GetParam();
  words.insert(words.begin(), "ornwhatsnew");
  const Request request = ParseArguments(static_cast<int>(words.size()), words.data());
  ASSERT_TRUE(std::holds_alternative<Answer>(request));
  EXPECT_TRUE(std::get<Answer>(request).isError);
  EXPECT_THAT(std::get<Answer>(request).text, HasSubstr(" --help' for usage."));
}

using Words = std::vector<const char*>;
INSTANTIATE_TEST_SUITE_P(
    Cases, BadArguments,
    testing::Values(Words{}, Words{"unknown"}, Words{"show"}, Words{"show", "d"},
                    Words{"show", "--host", "h"}, Words{"show", "d", "more", "--host", "h"},
                    Words{"show", "d", "--host", "h", "--unknown"},
                    Words{"show", "d", "--host", "h", "--color", "maybe"},
                    Words{"show", "d", "--host", "h", "--format", "xml"},
                    Words{"show", "d", "--host", "h", "--width", "-1"},
                    Words{"show", "d", "--host", "h", "--width", "wide"}, Words{"state"},
                    Words{"rate", "d", "--host", "h"}, Words{"preview", "d", "--host", "h"},
                    Words{"preview", "d", "-o", "p"}, Words{"console", "--host"}));

std::string ErrorOf(std::initializer_list<const char*> arguments) {
  const auto answer = ParseAs<Answer>(arguments);
  EXPECT_TRUE(answer.isError);
  return answer.text;
}

TEST(Arguments, FixIsSafeUnlessItsValueIsAll) {
  EXPECT_EQ(std::nullopt, ParseAs<LintArguments>({"lint", "d"}).fix);
  EXPECT_EQ(author::FixScope::kSafe, ParseAs<LintArguments>({"lint", "d", "--fix"}).fix);
  EXPECT_EQ(author::FixScope::kAll, ParseAs<LintArguments>({"lint", "d", "--fix=all"}).fix);
  EXPECT_EQ(
      "--fix: invalid value 'some'; write '--fix' or '--fix=all'. Run 'ornwhatsnew lint --help' "
      "for usage.",
      ErrorOf({"lint", "d", "--fix=some"}));
}

TEST(Arguments, NameAnUnknownCommandOrOption) {
  EXPECT_EQ("unknown command 'frob'. Run 'ornwhatsnew --help' for usage.",
            ErrorOf({"frob", "more"}));
  EXPECT_EQ("unknown command 'frob'. Run 'ornwhatsnew state --help' for usage.",
            ErrorOf({"state", "frob"}));
  EXPECT_EQ("unknown option '--frob'. Run 'ornwhatsnew --help' for usage.", ErrorOf({"--frob"}));
}

TEST(Arguments, ReportAWrongNumberOfValues) {
  EXPECT_EQ("--line can be given only once. Run 'ornwhatsnew why --help' for usage.",
            ErrorOf({"why", "d", "--host", "h", "--line", "1", "--line", "2"}));
  EXPECT_EQ("--output can be given only once. Run 'ornwhatsnew import --help' for usage.",
            ErrorOf({"import", "d", "-o", "a", "--output=b"}));
  EXPECT_EQ("--host requires a value. Run 'ornwhatsnew why --help' for usage.",
            ErrorOf({"why", "d", "--host"}));
  EXPECT_EQ("--watch takes no value. Run 'ornwhatsnew preview --help' for usage.",
            ErrorOf({"preview", "d", "--host", "h", "-o", "p", "--watch=3"}));
  EXPECT_EQ("--only-new takes no value. Run 'ornwhatsnew why --help' for usage.",
            ErrorOf({"why", "d", "--host", "h", "--only-new=x"}));
}

TEST(Arguments, ReportAMissingCommand) {
  EXPECT_EQ("no command given. Run 'ornwhatsnew --help' for usage.", ErrorOf({}));
  EXPECT_EQ("no command given. Run 'ornwhatsnew state --help' for usage.", ErrorOf({"state"}));
}

TEST(Arguments, ListUnexpectedWordsInTheirOrder) {
  EXPECT_EQ("unexpected arguments 'b' 'c' 'd'. Run 'ornwhatsnew show --help' for usage.",
            ErrorOf({"show", "a", "b", "c", "d", "--host", "h"}));
  EXPECT_EQ("unexpected argument 'x'. Run 'ornwhatsnew state reset --help' for usage.",
            ErrorOf({"state", "reset", "x"}));
  EXPECT_EQ("unexpected arguments 'b' '--host'. Run 'ornwhatsnew show --help' for usage.",
            ErrorOf({"show", "--host", "h", "--", "a", "b", "--host"}));
}

TEST(Arguments, NameAnUnknownOptionOfACommand) {
  EXPECT_EQ("unknown option '--frob'. Run 'ornwhatsnew show --help' for usage.",
            ErrorOf({"show", "d", "--host", "h", "--frob"}));
  EXPECT_EQ("unknown option '--frob=x'. Run 'ornwhatsnew console --help' for usage.",
            ErrorOf({"console", "--frob=x", "help"}));
}

TEST(Arguments, NameAnUnknownOptionBeforeAMissingArgument) {
  EXPECT_EQ("unknown option '-d.csv'. Run 'ornwhatsnew status --help' for usage.",
            ErrorOf({"status", "-d.csv", "--host", "h"}));
  EXPECT_EQ("unknown option '--hots'. Run 'ornwhatsnew show --help' for usage.",
            ErrorOf({"show", "d", "--hots", "h"}));
  EXPECT_EQ("--host is required. Run 'ornwhatsnew show --help' for usage.",
            ErrorOf({"show", "--", "d", "--host", "h"}));
}

TEST(Arguments, NameAnInvalidWidth) {
  for (const std::string word :
       {"0x10", "-1", "+5", " 5", "5 ", "1e2", "5.0", "", "100001", "99999999999999999999999"}) {
    EXPECT_EQ("--width: '" + word +
                  "' is not a number from 0 to 100000. Run 'ornwhatsnew show --help' for usage.",
              ErrorOf({"show", "d", "--host", "h", "--width", word.c_str()}));
  }
}

TEST(Arguments, NameAnInvalidLine) {
  for (const std::string word : {"0", "-1", "x", "", "1000000001"}) {
    EXPECT_EQ("--line: '" + word +
                  "' is not a number from 1 to 1000000000. Run 'ornwhatsnew why --help' for usage.",
              ErrorOf({"why", "d", "--host", "h", "--line", word.c_str()}));
  }
  EXPECT_EQ("--key: cannot be used with --line. Run 'ornwhatsnew why --help' for usage.",
            ErrorOf({"why", "d", "--host", "h", "--line", "1", "--key", "K"}));
}

TEST(Arguments, ErrorsMentionTheHelpOfTheirCommand) {
  EXPECT_THAT(ErrorOf({"show", "d"}), HasSubstr("'ornwhatsnew show --help'"));
  EXPECT_THAT(ErrorOf({"state", "show", "--frob"}), HasSubstr("'ornwhatsnew state show --help'"));
}

TEST(Arguments, ChoicesAcceptOnlyTheListedWords) {
  for (const std::string word : {"blue", "1", "", "Always", "auto "}) {
    EXPECT_EQ("--color: '" + word +
                  "' is not a colour mode; write auto, always or never. Run 'ornwhatsnew show "
                  "--help' for usage.",
              ErrorOf({"show", "d", "--host", "h", "--color", word.c_str()}));
    EXPECT_EQ("--format: '" + word +
                  "' is not a format; write text or json. Run 'ornwhatsnew state show --help' for "
                  "usage.",
              ErrorOf({"state", "show", "--format", word.c_str()}));
  }
  EXPECT_THAT(ErrorOf({"show", "d", "--host", "h", "--format", "xml"}),
              StartsWith("--format: 'xml' is not a format; write text, plain, html, markdown or"));
  EXPECT_THAT(ErrorOf({"lint", "d", "--format", "xml"}),
              StartsWith("--format: 'xml' is not a format; write text, json, sarif or github."));
  EXPECT_EQ(
      "--fail-on: 'off' is not a severity; write note, warning or error. Run 'ornwhatsnew lint "
      "--help' for usage.",
      ErrorOf({"lint", "d", "--fail-on", "off"}));
}

TEST(Arguments, HelpOfConsoleSaysHowToRunCommandsAndThatValidatingSucceeds) {
  EXPECT_THAT(ParseAs<Answer>({"console", "--help"}).text,
              EndsWith("\nAll words after the options are one console command:\n"
                       "  ornwhatsnew console help\n"
                       "Without a command, each line of standard input is one command.\n"
                       "The command 'help' lists the console commands.\n"
                       "ValidateWhatsNew always succeeds, even if it cannot read the file.\n"
                       "A script cannot use this command to check a file.\n"));
}

std::string HelpOf(const std::vector<std::string>& command) {
  Words words = {"ornwhatsnew"};
  for (const std::string& word : command) words.push_back(word.c_str());
  words.push_back("--help");
  return std::get<Answer>(ParseArguments(static_cast<int>(words.size()), words.data())).text;
}

/// Returns the names under the heading "Subcommands:" of a help text.
std::vector<std::string> SubcommandsIn(const std::string& help) {
  constexpr std::string_view kHeading = "\nSubcommands:\n";
  const std::size_t heading = help.find(kHeading);
  if (heading == help.npos) return {};
  std::vector<std::string> names;
  std::istringstream lines(help.substr(heading + kHeading.size()));
  for (std::string line; std::getline(lines, line) && line.starts_with("  ");) {
    names.push_back(line.substr(2, line.find(' ', 2) - 2));
  }
  return names;
}

/// Returns the words of each command, such as {"state", "reset"}. The first element is empty and
/// represents the program without a command.
std::vector<std::vector<std::string>> AllCommands() {
  std::vector<std::vector<std::string>> commands = {{}};
  for (std::size_t i = 0; i < commands.size(); ++i) {
    const std::vector<std::string> command = commands[i];
    for (const std::string& name : SubcommandsIn(HelpOf(command))) {
      commands.push_back(command);
      commands.back().push_back(name);
    }
  }
  return commands;
}

TEST(Arguments, HelpFitsATerminalOf80Columns) {
  const auto commands = AllCommands();
  EXPECT_THAT(commands, testing::IsSupersetOf<std::vector<std::string>>(
                            {{}, {"preview"}, {"state", "reset"}}));
  for (const std::vector<std::string>& command : commands) {
    std::istringstream lines(HelpOf(command));
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 80U) << line;
  }
}

}  // namespace
}  // namespace hosts::console
