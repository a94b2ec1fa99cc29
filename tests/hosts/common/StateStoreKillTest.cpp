// Kills writer processes at random times. Each pass of a writer is one commit, which adds one
// identity and one version to the state, and sets the last version. After each round of kills, the
// store must open. It must contain only complete passes, and every acknowledged pass. A further
// test checks that concurrent writers lose nothing.
//
// The environment variable ORNWHATSNEW_TEST_KILLS sets the number of kills. `./dev kills` sets a
// high number.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <ornwhatsnew/utility/PersistedList.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "hosts/common/StateStore.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace hosts::common {
namespace {

constexpr unsigned kSeed = 25'142;
constexpr int kWriters = 2;
constexpr int kKills = 200;

std::string Element(int writer, int pass) {
  return std::to_string(writer) + "." + std::to_string(pass);
}

/// Writes passes in a loop, starting with `firstPass`. Sends the number of each committed pass to
/// the pipe `acknowledge`.
[[noreturn]] void WritePasses(const std::filesystem::path& file, int writer, int firstPass,
                              int acknowledge) {
  try {
    for (int pass = firstPass;; ++pass) {
      StateStore store(file);
      const std::string element = Element(writer, pass);
      store.Set(kAllSeenItemsKey, store.Get(kAllSeenItemsKey) + " " + element);
      store.Set(kLastVersionSeenKey, element);
      store.Set(kAllVersionsSeenKey, store.Get(kAllVersionsSeenKey) + " " + element);
      store.Commit();
      if (::write(acknowledge, &pass, sizeof pass) != sizeof pass) ::_exit(2);
    }
  } catch (const std::exception& error) {
    std::cerr << error.what() << std::endl;
  }
  ::_exit(1);
}

/// A process that writes passes until it is killed.
class WriterProcess {
 public:
  WriterProcess(const std::filesystem::path& file, int writer, int firstPass) {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) std::abort();
    process_ = ::fork();
    if (process_ == 0) {
      ::close(ends[0]);
      WritePasses(file, writer, firstPass, ends[1]);
    }
    ::close(ends[1]);
    acknowledged_ = ends[0];
  }

  /// Kills the process. Returns the last pass that it acknowledged, or `none` if it acknowledged no
  /// pass.
  int KillAndRead(int none) const {
    ::kill(process_, SIGKILL);
    int status = 0;
    ::waitpid(process_, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status)) << "a writer ended before it was killed";
    int last = none;
    for (int pass = 0; ::read(acknowledged_, &pass, sizeof pass) == sizeof pass;) last = pass;
    ::close(acknowledged_);
    return last;
  }

 private:
  pid_t process_ = -1;
  int acknowledged_ = -1;
};

/// Returns the last pass of a writer in the sorted `elements`, or -1 if there is none. Expects that
/// all earlier passes of this writer are in `elements` too.
int LastPass(const std::vector<std::string_view>& elements, int writer) {
  int last = -1;
  while (std::ranges::binary_search(elements, Element(writer, last + 1))) ++last;
  const std::string prefix = std::to_string(writer) + ".";
  const auto count = std::ranges::count_if(
      elements, [&prefix](std::string_view element) { return element.starts_with(prefix); });
  EXPECT_EQ(last + 1, count) << "passes of writer " << writer << " are missing";
  return last;
}

/// Returns a random time after which the writers are killed. In a quarter of the calls, it is below
/// 2 ms, so that some kills happen before the first pass is complete. In the other calls, it is
/// below 50 ms.
std::chrono::microseconds TimeToKill(std::mt19937& random) {
  const bool isEarly = random() % 4 == 0;
  return std::chrono::microseconds(random() % (isEarly ? 2'000 : 50'000));
}

/// Starts processes that write to a store, kills them, and checks the store. Remembers, for each
/// writer, the last pass that the store contains.
class KilledStore {
 public:
  explicit KilledStore(std::filesystem::path file) : file_(std::move(file)) {
    lastPasses_.fill(-1);
  }

  /// Starts the writers, kills them after `timeToKill`, and checks the store with `ExpectKept`.
  /// Each writer begins with the pass after its last pass in the store. Returns the number of
  /// passes that the writers added to the store.
  int KillWriters(std::chrono::microseconds timeToKill) {
    std::vector<WriterProcess> writers;
    for (int i = 0; i < kWriters; ++i) {
      writers.emplace_back(file_, i, lastPasses_[static_cast<std::size_t>(i)] + 1);
    }
    std::this_thread::sleep_for(timeToKill);
    std::array<int, kWriters> acknowledged{};
    for (std::size_t i = 0; i < kWriters; ++i)
      acknowledged[i] = writers[i].KillAndRead(lastPasses_[i]);
    return ExpectKept(acknowledged);
  }

 private:
  /// Expects that the store contains only complete passes: every acknowledged pass, and at most one
  /// other pass of each writer. `acknowledged` has the last acknowledged pass of each writer.
  /// Returns the number of new passes.
  int ExpectKept(const std::array<int, kWriters>& acknowledged) {
    const StateStore store(file_);
    const std::string seen = store.Get(kAllSeenItemsKey);
    EXPECT_EQ(seen, store.Get(kAllVersionsSeenKey));
    const std::vector<std::string_view> elements = ornwhatsnew::SplitPersistedList(seen);
    const std::string lastVersion = store.Get(kLastVersionSeenKey);
    EXPECT_EQ(elements.empty(), lastVersion.empty());
    EXPECT_TRUE(elements.empty() || std::ranges::binary_search(elements, lastVersion));
    int passes = 0;
    for (std::size_t i = 0; i < kWriters; ++i) {
      const int last = LastPass(elements, static_cast<int>(i));
      EXPECT_GE(last, acknowledged[i]) << "an acknowledged pass is missing";
      EXPECT_LE(last, acknowledged[i] + 1);
      passes += last - std::exchange(lastPasses_[i], last);
    }
    return passes;
  }

  std::filesystem::path file_;
  std::array<int, kWriters> lastPasses_{};
};

TEST(StateStoreKill, EveryKillLeavesCompletePassesOnly) {
  const test_support::TemporaryFolder folder;
  std::mt19937 random(kSeed);
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::optional<KilledStore> store;
  int kills = 0;
  int passes = 0;
  for (; kills < test_support::KillsWanted(kKills) && !testing::Test::HasFailure();
       kills += kWriters) {
    // Use a new store after every 20 kills, so that some kills interrupt the creation of a store.
    if (kills % 20 == 0) store.emplace(folder.Path() / std::to_string(kills) / "state.json");
    passes += store->KillWriters(TimeToKill(random));
  }
  std::cout << kills << " killed, " << passes << " passes kept" << std::endl;
  EXPECT_GT(passes, 0);
}

TEST(StateStoreKill, ConcurrentWritersLoseNothing) {
  constexpr int kPasses = 50;
  const test_support::TemporaryFolder folder;
  const std::filesystem::path file = folder.Path() / "state.json";
  std::vector<pid_t> processes;
  for (int writer = 0; writer < kWriters; ++writer) {
    processes.push_back(::fork());
    if (processes.back() != 0) continue;
    try {
      for (int pass = 0; pass < kPasses; ++pass) {
        StateStore store(file, std::chrono::seconds(60));
        store.Set(kAllSeenItemsKey, Element(writer, pass));
        store.Commit();
      }
      ::_exit(0);
    } catch (const std::exception& error) {
      std::cerr << error.what() << std::endl;
    }
    ::_exit(1);
  }
  for (const pid_t process : processes) {
    int status = 0;
    ::waitpid(process, &status, 0);
    EXPECT_EQ(0, status);
  }
  const std::string seen = StateStore(file).Get(kAllSeenItemsKey);
  const std::vector<std::string_view> elements = ornwhatsnew::SplitPersistedList(seen);
  for (int writer = 0; writer < kWriters; ++writer) {
    EXPECT_EQ(kPasses - 1, LastPass(elements, writer));
  }
}

}  // namespace
}  // namespace hosts::common
