#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <ostream>
#include <sstream>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <orncore/config/InitializerRegistrar.h>
#include <orncore/console/CommandRegistry.h>
#include <orncore/debug/DebugDatabase.h>
#include <orncore/debug/Log.h>
#include <orncore/filesupport/AsyncRead.h>
#include <orncore/string/Conversion.h>
#include <ornwhatsnew/FeatureListData.h>

#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TemporaryFolder.h"

namespace ornwhatsnew {
namespace {

using orncore::config::EInitializerContextFlags;
using orncore::console::CommandRegistry;
using orncore::debug::DebugDatabase;
using orncore::string::UTF16to8;
using orncore::string::UTF8to16;
using test_support::DataFile;
using test_support::TemporaryFolder;

constexpr std::chrono::seconds kLongestDelay{20};

class ValidateCommand : public test_support::FakeHostTest {
 protected:
  ValidateCommand() { orncore::config::InitializeContexts(EInitializerContextFlags::kConsole); }
  ~ValidateCommand() override {
    orncore::config::ShutdownContexts(EInitializerContextFlags::kConsole);
  }

  // Runs the command with this argument, stores its result in `result_`, and returns its output.
  std::string Validate(const std::string& argument) {
    std::basic_ostringstream<char16_t> output;
    result_ = CommandRegistry::Instance().RunLine(UTF8to16("ValidateWhatsNew " + argument), output);
    return UTF16to8(output.str());
  }

  // Runs the command while another task occupies the executor, and returns the output. Another
  // thread joins the executor after `delay`. If the command has already submitted its read, the
  // join cancels the read.
  std::string ValidateWhileJoining(const std::string& argument, std::chrono::milliseconds delay) {
    auto& executor = orncore::filesupport::GetDefaultExecutor();
    executor.Submit([](const std::stop_token& stop) {
      std::mutex mutex;
      std::condition_variable_any wake;
      std::unique_lock lock(mutex);
      wake.wait(lock, stop, [] { return false; });
    });
    const std::jthread joiner([&executor, delay] {
      std::this_thread::sleep_for(delay);
      executor.Join();
    });
    return Validate(argument);
  }

  std::string Path(const char* name) const { return (folder_.Path() / name).string(); }

  TemporaryFolder folder_;
  std::optional<int> result_;
};

TEST_F(ValidateCommand, WithoutArgumentPrintsOnlyTheUsageLine) {
  EXPECT_EQ(Validate(""),
            "ValidateWhatsNew filepath - Parse a What's New file to validate changes before "
            "commiting to version control\n");
  EXPECT_EQ(result_, 0);
}

TEST_F(ValidateCommand, ReportsThatAFileWasRead) {
  const std::string path =
      folder_.Write("data.csv", DataFile().Row({.groupingID = "MISC"}).Text()).string();
  EXPECT_EQ(Validate(path), "Reading What's New file at \"" + path + "\" finished\n");
  EXPECT_EQ(result_, 0);
}

TEST_F(ValidateCommand, ReportsAMissingFileWithANegativeResult) {
  const std::string path = Path("missing.csv");
  EXPECT_EQ(Validate(path), "Failed to read What's New file at \"" + path +
                                "\" with result: " + std::to_string(-ENOENT) + "\n");
  EXPECT_EQ(result_, 0);
}

TEST_F(ValidateCommand, ReportsADirectoryWithANegativeResult) {
  const std::string path = folder_.Path().string();
  EXPECT_EQ(Validate(path), "Failed to read What's New file at \"" + path +
                                "\" with result: " + std::to_string(-EISDIR) + "\n");
  EXPECT_EQ(result_, 0);
}

TEST_F(ValidateCommand, ReportsThatAnEmptyFileWasRead) {
  const std::string path = folder_.Write("empty.csv", "").string();
  EXPECT_EQ(Validate(path), "Reading What's New file at \"" + path + "\" finished\n");
  EXPECT_EQ(result_, 0);
}

TEST_F(ValidateCommand, ReportsThatAFileOfArbitraryBytesWasRead) {
  const std::string path =
      folder_.Write("bytes.csv", std::string("\xFF\x00\",\n,\xED\xA0\x80,\"", 11)).string();
  EXPECT_EQ(Validate(path), "Reading What's New file at \"" + path + "\" finished\n");
}

TEST_F(ValidateCommand, UsesTheWholeArgumentAsOnePath) {
  const std::string path = folder_.Write(" two  words,\"quoted\" .csv", "").string();
  EXPECT_EQ(Validate(path), "Reading What's New file at \"" + path + "\" finished\n");
}

TEST_F(ValidateCommand, PrintsTheFullPathForARelativePath) {
  const std::string name = "no such file of a relative path.csv";
  const std::string full = (std::filesystem::current_path() / name).string();
  EXPECT_NE(Validate(name).find('"' + full + '"'), std::string::npos);
}

// The command reads the state from the debug database, but its output does not depend on the state.
// Therefore the test records the queries.
TEST_F(ValidateCommand, ReadsTheStateOfTheDebugDatabaseAndNeverWritesIt) {
  class RecordingStore final : public orncore::debug::DebugStore {
   public:
    std::optional<std::string> Find(std::string_view key) const override {
      queriedKeys.emplace_back(key);
      return "24.0";
    }
    void Store(std::string_view, std::string_view) override { ADD_FAILURE(); }
    mutable std::vector<std::string> queriedKeys;
  };
  const auto store = std::make_shared<RecordingStore>();
  DebugDatabase::Instance().SetStore(store);
  host_.AddFeature({.internalKey = "export", .epicKey = "EPIC-1", .name = "Export"});
  Validate(folder_.Write("data.csv", DataFile().Row({.groupingID = "EPIC-1"}).Text()).string());
  EXPECT_EQ(store->queriedKeys,
            (std::vector<std::string>{"WhatsNew.LastVersionSeenWhatsNew",
                                      "WhatsNew.AllVersionSeenWhatsNew", "WhatsNew.AllSeenItems"}));
}

TEST_F(ValidateCommand, LogsAnExceptionOfTheParseAndPrintsNothing) {
  class FailingStore final : public orncore::debug::DebugStore {
   public:
    std::optional<std::string> Find(std::string_view) const override {
      throw std::runtime_error("the store failed");
    }
    void Store(std::string_view, std::string_view) override {}
  };
  DebugDatabase::Instance().SetStore(std::make_shared<FailingStore>());
  std::string logged;
  orncore::debug::SetLogSink([&logged](std::string_view line) { logged += line; });
  EXPECT_EQ(Validate(folder_.Write("data.csv", "").string()), "");
  EXPECT_EQ(result_, 0);
  EXPECT_NE(logged.find("the store failed"), std::string::npos) << logged;
}

TEST_F(ValidateCommand, LogsACancelledReadAndPrintsNothing) {
  const std::string path = folder_.Write("data.csv", DataFile().Row({}).Text()).string();
  std::string logged;
  orncore::debug::SetLogSink([&logged](std::string_view line) { logged += line; });
  // On a busy machine the executor may be joined before the command submits the read. In this case
  // the read succeeds, and the loop retries with a longer delay.
  std::string output = "not yet";
  for (std::chrono::milliseconds delay{1}; !output.empty() && delay < kLongestDelay; delay *= 2) {
    logged.clear();
    output = ValidateWhileJoining(path, delay);
  }
  EXPECT_EQ(output, "");
  EXPECT_EQ(result_, 0);
  EXPECT_NE(logged.find("Future Is Cancelled"), std::string::npos) << logged;

  EXPECT_EQ(Validate(path), "Reading What's New file at \"" + path + "\" finished\n");
}

/// Counts the flushes of its stream.
class CountingBuffer : public std::basic_stringbuf<char16_t> {
 public:
  int flushes = 0;

 private:
  int sync() override {
    ++flushes;
    return 0;
  }
};

TEST_F(ValidateCommand, FlushesItsOutput) {
  CountingBuffer buffer;
  std::basic_ostream<char16_t> output(&buffer);
  CommandRegistry::Instance().RunLine(UTF8to16("ValidateWhatsNew " + Path("missing.csv")), output);
  EXPECT_EQ(buffer.flushes, 1);
}

std::atomic<bool> hasThreadEnded = false;

/// A thread-local object of this class reports the end of its thread. Its destructor runs before a
/// join of the thread returns.
class ThreadEnd {
 public:
  ThreadEnd() = default;
  ~ThreadEnd() { hasThreadEnded = true; }
  ThreadEnd(const ThreadEnd&) = delete;
  ThreadEnd& operator=(const ThreadEnd&) = delete;
};

TEST_F(ValidateCommand, TheEndOfItsContextEndsTheThreadOfTheRead) {
  hasThreadEnded = false;
  Validate(folder_.Write("data.csv", "").string());
  orncore::filesupport::GetDefaultExecutor().Submit([](const std::stop_token&) {
    static const thread_local ThreadEnd end;
    static_cast<void>(end);
  });
  EXPECT_FALSE(hasThreadEnded);
  orncore::config::ShutdownContexts(EInitializerContextFlags::kConsole);
  EXPECT_TRUE(hasThreadEnded);
}

}  // namespace
}  // namespace ornwhatsnew
