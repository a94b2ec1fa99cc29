// Tests the command `why`. The tests in tests/hosts/author/why check the content of its report.
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/common/TextFile.h"
#include "tests/hosts/console/ProgramFixture.h"

namespace hosts::console {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

using WhyCommand = ProgramTest;

TEST_F(WhyCommand, ExplainsAllChangesWithTheFiltersOfShow) {
  EXPECT_EQ(
      "  LINE  STATUS  FEATURE   TEXT                              REASON\n"
      "        hidden  EPIC-9    Secret                            its visibility is 1, and no "
      "change has the salience UnhideBetaFeature\n"
      "        shown   EPIC-7    Export\n"
      "     3  shown   EPIC-7    Twice as fast\n"
      "        shown   EPIC-8    Darkness\n"
      "     4  hidden  EPIC-8    Every window is dark              '24.0', '25.1' and the "
      "user's '25.1.0.42' have different numbers of components, so they cannot be compared\n"
      "        hidden  BUGFIX    Bug fixes                         none of its changes is shown\n"
      "     5  hidden  BUGFIX    No crash on full disks            only relevant on Win; this host "
      "is Mac\n"
      "        hidden  INTERNAL  Internal notes                    only internal users see it\n"
      "     6  hidden  INTERNAL  Nobody knows where this belongs   its IDs match no "
      "feature or section, so it is hidden with its section\n"
      "\n"
      "shown: 2 of 5 features and sections, 1 of 4 changes\n",
      OutputOf({"why", "{data}", "{host}", "--platform", "--relevant-versions"}));
}

TEST_F(WhyCommand, ExplainsOneLineOrOneKey) {
  EXPECT_THAT(OutputOf({"why", "{data}", "{host}", "--line", "5", "--platform"}),
              EndsWith("/whats new.csv:5: a change of the section 'BUGFIX': 'No crash on full "
                       "disks'\nnot shown: only relevant on Win; this host is Mac\n"));
  EXPECT_THAT(OutputOf({"why", "{data}", "{host}", "--key=EPIC-9"}),
              HasSubstr("the feature 'EPIC-9': 'Secret'\nnot shown: its visibility is 1"));
}

TEST_F(WhyCommand, UsesTheStoredStateAndNeverChangesIt) {
  const std::vector<std::string> why = {"why",        "{data}", "{host}", "--only-new",
                                        "--platform", "--line", "3"};
  EXPECT_THAT(OutputOf(why), EndsWith("\nshown\n"));
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "state"));
  OutputOf({"show", "{data}", "{host}"});
  const std::string state = common::ReadTextFile(StateFile());
  EXPECT_THAT(OutputOf(why), EndsWith("\nnot shown: seen already\n"));
  EXPECT_EQ(state, common::ReadTextFile(StateFile()));
}

TEST_F(WhyCommand, NamesTheVersionsThatTheUserRanWithTheRunningOneFirst) {
  WriteHost("24.5", false);
  OutputOf({"show", "{data}", "{host}"});
  WriteHost("25.1", false);
  WriteData("26.0.0.0,EPIC-8,,,,25.9.0.0,,,,Every window is dark\n");
  EXPECT_THAT(OutputOf({"why", "{data}", "{host}", "--relevant-versions", "--line", "2"}),
              EndsWith("; this user ran '25.1.0.42' and '24.5.0.42'\n"));
}

TEST_F(WhyCommand, AnUnknownLineOrKeyIsAnInvalidCommandLine) {
  const auto line = Run({"why", "{data}", "{host}", "--line", "9"});
  EXPECT_EQ(2, line.exitStatus);
  EXPECT_EQ("", line.output);
  EXPECT_EQ("ornwhatsnew: cannot explain '" + DataFile().native() +
                "': it has no line 9; use a number from 1 to 6\n",
            line.errors);
  const auto key = Run({"why", "{data}", "{host}", "--key", "EPIC\u200B-7"});
  EXPECT_EQ(2, key.exitStatus);
  EXPECT_THAT(key.errors, EndsWith("': no feature or section has the key 'EPIC\\u200b-7'; the most "
                                   "similar key is 'EPIC-7'\n"));
}

}  // namespace
}  // namespace hosts::console
