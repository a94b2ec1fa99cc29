#include "tests/hosts/console/ProgramFixture.h"

namespace hosts::console {

std::string ProgramFile() {
  return ORNWHATSNEW_PROGRAM;
}

ProgramTest::ProgramTest() {
  WriteHost("25.1", false);
  WriteData(
      "24.0,Changes-Since,,,,,,,,\n"
      "25.1,EPIC-7,ORN-9,,RequestRating,,Mac,https://help.tarsa.example/export,abc123,Twice as "
      "fast\n"
      "25.1,EPIC-8,,,How dark is it?,24.0,,,,Every window is dark\n"
      "25.1,BUGFIX,,,,,Win,,,No crash on full disks\n"
      "25.1,EPIC-99,,,,,,,,Nobody knows where this belongs\n");
}

test_support::ProgramCall ProgramTest::Call(const std::vector<std::string>& words) const {
  test_support::ProgramCall call;
  for (const std::string& word : words) {
    if (word == "{data}") {
      call.arguments.push_back(DataFile());
    } else if (word == "{host}") {
      call.arguments.push_back("--host");
      call.arguments.push_back(HostFile());
    } else {
      call.arguments.push_back(word);
    }
  }
  call.environment = {{"HOME", folder_.Path() / "home"},
                      {"XDG_STATE_HOME", folder_.Path() / "state"},
                      {"TERM", "xterm-256color"}};
  return call;
}

test_support::ProgramResult ProgramTest::Run(const std::vector<std::string>& words) const {
  return test_support::RunProgram(ProgramFile(), Call(words));
}

std::string ProgramTest::OutputOf(const std::vector<std::string>& words) const {
  const test_support::ProgramResult result = Run(words);
  EXPECT_EQ(0, result.exitStatus);
  EXPECT_EQ("", result.errors);
  return result.output;
}

void ProgramTest::WriteHost(std::string_view version, bool isInternal) const {
  folder_.Write("host.json", R"({"buildNumber": "42", "clientVersion": ")" + std::string(version) +
                                 R"(", "internalFeaturesAllowed": )" +
                                 (isInternal ? "true" : "false") + R"(, "betaFeatures": [
    {"internalKey": "f.export", "epicKey": "EPIC-7", "name": "Export", "enabled": true,
     "description": "Exports run beside your work."},
    {"internalKey": "f.dark", "epicKey": "EPIC-8", "name": "Darkness", "enabled": true},
    {"internalKey": "f.secret", "epicKey": "EPIC-9", "name": "Secret", "visibility": 1,
     "enabled": true}]})");
}

void ProgramTest::WriteData(std::string_view rows) const {
  folder_.Write("whats new.csv",
                "App Version,Epic,Story,Salience,Rating,First,Platform,URL,SHA,Description\n" +
                    std::string(rows));
}

}  // namespace hosts::console
