// Programs killed in the middle of their work. After each kill the store must open again, hold
// whole display passes only, and lack none that a program was told is kept.
//
// ORNWHATSNEW_TEST_KILLS sets the number of kills; `./dev kills` sets it high.
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

std::string Piece(int writer, int pass) {
  return std::to_string(writer) + "." + std::to_string(pass);
}

/// Writes one pass after the other and says through the pipe which ones are kept.
[[noreturn]] void WritePasses(const std::filesystem::path& file, int writer, int firstPass,
                              int acknowledge) {
  try {
    for (int pass = firstPass;; ++pass) {
      StateStore store(file);
      const std::string piece = Piece(writer, pass);
      store.Set(kAllSeenItemsKey, store.Get(kAllSeenItemsKey) + " " + piece);
      store.Set(kLastVersionSeenKey, piece);
      store.Set(kAllVersionsSeenKey, store.Get(kAllVersionsSeenKey) + " " + piece);
      store.Commit();
      if (::write(acknowledge, &pass, sizeof pass) != sizeof pass) ::_exit(2);
    }
  } catch (const std::exception& error) {
    std::cerr << error.what() << std::endl;
  }
  ::_exit(1);
}

/// A process that writes passes until it is killed.
class Writer {
 public:
  Writer(const std::filesystem::path& file, int writer, int firstPass) {
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

  /// Kills it; answers the last pass that it was told is kept, or `none`.
  int KillAndRead(int none) const {
    ::kill(process_, SIGKILL);
    int status = 0;
    ::waitpid(process_, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status)) << "a writer ended by itself";
    int last = none;
    for (int pass = 0; ::read(acknowledged_, &pass, sizeof pass) == sizeof pass;) last = pass;
    ::close(acknowledged_);
    return last;
  }

 private:
  pid_t process_ = -1;
  int acknowledged_ = -1;
};

/// The last pass of a writer among the pieces; expects all before it, from the first, to be there.
int LastWholePass(const std::vector<std::string_view>& pieces, int writer) {
  int last = -1;
  while (std::ranges::binary_search(pieces, Piece(writer, last + 1))) ++last;
  const std::string prefix = std::to_string(writer) + ".";
  const auto count = std::ranges::count_if(
      pieces, [&prefix](std::string_view piece) { return piece.starts_with(prefix); });
  EXPECT_EQ(last + 1, count) << "passes of writer " << writer << " are missing";
  return last;
}

/// Mostly while passes are being written, and now and then while the first one is prepared.
std::chrono::microseconds TimeToKill(std::mt19937& random) {
  const bool isEarly = random() % 4 == 0;
  return std::chrono::microseconds(random() % (isEarly ? 2'000 : 50'000));
}

/// One store, and what is known to be kept in it.
class KilledStore {
 public:
  explicit KilledStore(std::filesystem::path file) : file_(std::move(file)) { kept_.fill(-1); }

  /// Lets the writers go on from where they are and kills them. Answers how many passes they added.
  int KillWriters(std::chrono::microseconds timeToKill) {
    std::vector<Writer> writers;
    for (int i = 0; i < kWriters; ++i) {
      writers.emplace_back(file_, i, kept_[static_cast<std::size_t>(i)] + 1);
    }
    std::this_thread::sleep_for(timeToKill);
    std::array<int, kWriters> acknowledged{};
    for (std::size_t i = 0; i < kWriters; ++i) acknowledged[i] = writers[i].KillAndRead(kept_[i]);
    return ExpectKept(acknowledged);
  }

 private:
  /// Whole passes only, and none missing of those that were acknowledged.
  int ExpectKept(const std::array<int, kWriters>& acknowledged) {
    const StateStore store(file_);
    const std::string seen = store.Get(kAllSeenItemsKey);
    EXPECT_EQ(seen, store.Get(kAllVersionsSeenKey));
    const std::vector<std::string_view> pieces = ornwhatsnew::SplitPersistedList(seen);
    const std::string lastVersion = store.Get(kLastVersionSeenKey);
    EXPECT_EQ(pieces.empty(), lastVersion.empty());
    EXPECT_TRUE(pieces.empty() || std::ranges::binary_search(pieces, lastVersion));
    int passes = 0;
    for (std::size_t i = 0; i < kWriters; ++i) {
      const int last = LastWholePass(pieces, static_cast<int>(i));
      EXPECT_GE(last, acknowledged[i]) << "an acknowledged pass is missing";
      EXPECT_LE(last, acknowledged[i] + 1);
      passes += last - std::exchange(kept_[i], last);
    }
    return passes;
  }

  std::filesystem::path file_;
  std::array<int, kWriters> kept_{};
};

TEST(StateStoreKill, EveryKillLeavesAStateThatAWholePassProduced) {
  const test_support::TemporaryFolder folder;
  std::mt19937 random(kSeed);
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::optional<KilledStore> store;
  int kills = 0;
  int passes = 0;
  for (; kills < test_support::KillsWanted(kKills) && !testing::Test::HasFailure();
       kills += kWriters) {
    // A new store now and then, so that the making of one is killed, too.
    if (kills % 20 == 0) store.emplace(folder.Path() / std::to_string(kills) / "state.db");
    passes += store->KillWriters(TimeToKill(random));
  }
  std::cout << kills << " killed, " << passes << " passes kept" << std::endl;
  EXPECT_GT(passes, 0);
}

TEST(StateStoreKill, TwoWritersAtOnceLoseNothing) {
  constexpr int kPasses = 50;
  const test_support::TemporaryFolder folder;
  const std::filesystem::path file = folder.Path() / "state.db";
  std::vector<pid_t> processes;
  for (int writer = 0; writer < kWriters; ++writer) {
    processes.push_back(::fork());
    if (processes.back() != 0) continue;
    try {
      for (int pass = 0; pass < kPasses; ++pass) {
        StateStore store(file, std::chrono::seconds(60));
        store.Set(kAllSeenItemsKey, Piece(writer, pass));
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
  const std::vector<std::string_view> pieces = ornwhatsnew::SplitPersistedList(seen);
  for (int writer = 0; writer < kWriters; ++writer) {
    EXPECT_EQ(kPasses - 1, LastWholePass(pieces, writer));
  }
}

}  // namespace
}  // namespace hosts::common
