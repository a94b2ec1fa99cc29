// Runs several programs at the same time with one store, and kills them at random times. After each
// round, the store must open. For each program, the store must contain either all of the state that
// the program stores or none of it. It must contain the state of every program that ended normally.
// A further test checks that programs that are not killed lose nothing.
//
// The environment variable ORNWHATSNEW_TEST_KILLS sets the number of kills. `./dev kills` sets a
// high number.
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <memory>
#include <numeric>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <ornwhatsnew/utility/PersistedList.h>
#include <unistd.h>

#include "hosts/common/StateStore.h"
#include "tests/hosts/console/ProgramFixture.h"

namespace hosts::console {
namespace {

using common::StateStore;
using test_support::ChildProcess;
using test_support::ProgramCall;
using Elements = std::set<std::string>;

constexpr unsigned kSeed = 90'210;
constexpr int kHosts = 3;
constexpr int kKills = 100;

Elements ElementsOf(const StateStore& store, std::string_view key) {
  const std::string list = store.Get(key);
  Elements elements;
  for (const std::string_view element : ornwhatsnew::SplitPersistedList(list)) {
    elements.emplace(element);
  }
  return elements;
}

bool Includes(const Elements& all, const Elements& some) {
  return std::ranges::includes(all, some);
}

/// A release of the application: its data file, its host description, its full version, and the
/// identities that a display of its list stores.
struct Edition {
  std::filesystem::path data;
  std::filesystem::path host;
  std::string version;
  Elements shown;
};

using Processes = std::vector<std::unique_ptr<ChildProcess>>;

/// The versions and identities that programs stored before they ended normally.
struct Acknowledged {
  Elements versions;
  Elements identities;
};

class ProgramKillTest : public ProgramTest {
 protected:
  ProgramKillTest() {
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < kHosts; ++i) editions_.push_back(MakeEdition(i));
    const auto total = std::chrono::steady_clock::now() - begin;
    runTime_ = std::chrono::duration_cast<std::chrono::microseconds>(total) / kHosts;
    const std::filesystem::path file = folder_.Path() / "rated.state.json";
    RunWithoutReader(RateWords(editions_.front(), file));
    rated_ = ElementsOf(StateStore(file), common::kAllSeenItemsKey);
  }

  /// Returns a `ProgramCall` whose standard output is not a pipe. If it were a pipe, `show` would
  /// wait for its reader, and most kills would occur during this wait.
  ProgramCall CallWithoutReader(const std::vector<std::string>& words) const {
    ProgramCall call = Call(words);
    call.beforeStart = [] { ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO); };
    return call;
  }

  void RunWithoutReader(const std::vector<std::string>& words) const {
    EXPECT_EQ(0, RunProgram(ProgramFile(), CallWithoutReader(words)).exitStatus);
  }

  Edition MakeEdition(int number) const {
    const std::string name = std::to_string(number);
    Edition edition;
    WriteHost("25." + name, false);
    WriteData("25.1,EPIC-7,,,RequestRating,,,,,Export\n25.1,EPIC-8,,,,,,,,Change " + name + "\n");
    edition.data = folder_.Path() / (name + ".csv");
    edition.host = folder_.Path() / (name + ".json");
    edition.version = "25." + name + ".0.42";
    std::filesystem::rename(DataFile(), edition.data);
    std::filesystem::rename(HostFile(), edition.host);
    const std::filesystem::path file = folder_.Path() / (name + ".state.json");
    RunWithoutReader(ShowWords(edition, file));
    edition.shown = ElementsOf(StateStore(file), common::kAllSeenItemsKey);
    return edition;
  }

  static std::vector<std::string> ShowWords(const Edition& edition,
                                            const std::filesystem::path& store) {
    return {"show", edition.data, "--host", edition.host, "--state", store};
  }

  static std::vector<std::string> RateWords(const Edition& edition,
                                            const std::filesystem::path& store) {
    return {"rate", "EPIC-7", edition.data, "--host", edition.host, "--state", store};
  }

  /// For each edition, starts a process that shows the edition's list. Then starts a process that
  /// rates a feature of the edition `rating`. Returns the processes in this order.
  Processes StartPrograms(const std::filesystem::path& store, const Edition& rating) const {
    Processes processes;
    for (const Edition& edition : editions_) {
      processes.push_back(std::make_unique<ChildProcess>(
          ProgramFile(), CallWithoutReader(ShowWords(edition, store))));
    }
    processes.push_back(
        std::make_unique<ChildProcess>(ProgramFile(), CallWithoutReader(RateWords(rating, store))));
    return processes;
  }

  /// Starts programs and kills them in random order. If a program ended before it was killed, adds
  /// the state that it stored to `acknowledged`.
  void KillOneRound(const std::filesystem::path& store, std::mt19937& random,
                    Acknowledged& acknowledged) {
    const Processes processes = StartPrograms(store, editions_[random() % kHosts]);
    const auto begin = std::chrono::steady_clock::now();
    std::vector<std::size_t> order(processes.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::shuffle(order, random);
    auto index = order.begin();
    for (const std::chrono::microseconds time : TimesToKill(random, processes.size())) {
      std::this_thread::sleep_until(begin + time);
      processes[*index]->Kill();
      const int status = processes[*index]->Wait().exitStatus;
      EXPECT_TRUE(status == 0 || status == -SIGKILL) << status;
      ++(status == 0 ? ended_ : killed_);
      if (status == 0) RecordAcknowledged(*index, acknowledged);
      ++index;
    }
  }

  /// Adds to `acknowledged` the state that the process at `index` stored.
  void RecordAcknowledged(std::size_t index, Acknowledged& acknowledged) const {
    const bool isRating = index == editions_.size();
    const Elements& identities = isRating ? rated_ : editions_[index].shown;
    acknowledged.identities.insert(identities.begin(), identities.end());
    if (!isRating) acknowledged.versions.insert(editions_[index].version);
  }

  /// Expects that the store contains all identities of each edition whose version it contains.
  /// Apart from these, it may contain only the identity of the rating. Expects that the last
  /// version is one of the stored versions, or empty if there are none.
  void ExpectCompletePasses(const StateStore& store) const {
    const Elements seen = ElementsOf(store, common::kAllSeenItemsKey);
    const Elements versions = ElementsOf(store, common::kAllVersionsSeenKey);
    Elements expected = rated_;
    for (const Edition& edition : editions_) {
      if (!versions.contains(edition.version)) continue;
      EXPECT_TRUE(Includes(seen, edition.shown)) << edition.version << " is incomplete";
      expected.insert(edition.shown.begin(), edition.shown.end());
    }
    EXPECT_TRUE(Includes(expected, seen)) << "the store has identities without their version";
    const std::string last = store.Get(common::kLastVersionSeenKey);
    EXPECT_EQ(versions.empty(), last.empty());
    EXPECT_TRUE(versions.empty() || versions.contains(last));
  }

  /// Returns `count` random times at which the programs of a round are killed, in ascending order.
  /// The longest possible time is usually twice the duration of a run, so that some programs end
  /// before they are killed.
  std::vector<std::chrono::microseconds> TimesToKill(std::mt19937& random,
                                                     std::size_t count) const {
    const std::chrono::microseconds longest = std::clamp<std::chrono::microseconds>(
        2 * runTime_, std::chrono::milliseconds(10), std::chrono::milliseconds(300));
    std::uniform_int_distribution<std::int64_t> moment(0, longest.count());
    std::vector<std::chrono::microseconds> times(count);
    std::ranges::generate(times, [&] { return std::chrono::microseconds(moment(random)); });
    std::ranges::sort(times);
    return times;
  }

  std::vector<Edition> editions_;
  Elements rated_;
  std::chrono::microseconds runTime_{};
  int killed_ = 0;
  int ended_ = 0;
};

TEST_F(ProgramKillTest, EveryKillLeavesCompletePassesAndAcknowledgedState) {
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  Acknowledged acknowledged;
  std::filesystem::path file;
  for (int round = 0; killed_ < test_support::KillsWanted(kKills) && !HasFailure(); ++round) {
    if (round % 4 == 0) {
      file = folder_.Path() / "killed" / std::to_string(round) / "state.json";
      acknowledged = {};
    }
    KillOneRound(file, random, acknowledged);
    const StateStore store(file);
    ExpectCompletePasses(store);
    EXPECT_TRUE(Includes(ElementsOf(store, common::kAllSeenItemsKey), acknowledged.identities));
    EXPECT_TRUE(Includes(ElementsOf(store, common::kAllVersionsSeenKey), acknowledged.versions));
  }
  std::cout << killed_ << " killed, " << ended_ << " ended first" << std::endl;
  EXPECT_GT(ended_, 0) << "no program ended before it was killed";
}

TEST_F(ProgramKillTest, ConcurrentProgramsLoseNothing) {
  const std::filesystem::path file = folder_.Path() / "together.json";
  for (int round = 0; round < 5; ++round) {
    std::filesystem::remove(file);
    for (const auto& process : StartPrograms(file, editions_.front())) {
      EXPECT_EQ(0, process->Wait().exitStatus);
    }
    const StateStore store(file);
    const Elements seen = ElementsOf(store, common::kAllSeenItemsKey);
    EXPECT_TRUE(Includes(seen, rated_));
    for (const Edition& edition : editions_) EXPECT_TRUE(Includes(seen, edition.shown));
    EXPECT_EQ(editions_.size(), ElementsOf(store, common::kAllVersionsSeenKey).size());
  }
}

}  // namespace
}  // namespace hosts::console
