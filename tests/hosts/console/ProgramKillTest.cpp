// The program killed at random moments of showing and rating, several of them at once on one store.
// After each round the store must open, hold whole passes only, and lack nothing of a program that
// ended well.
//
// ORNWHATSNEW_TEST_KILLS sets the number of kills.
#include <algorithm>
#include <chrono>
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

#include <gtest/gtest.h>
#include <ornwhatsnew/utility/PersistedList.h>

#include "hosts/common/StateStore.h"
#include "tests/hosts/console/ProgramFixture.h"

namespace hosts::console {
namespace {

using common::StateStore;
using test_support::ChildProcess;
using Pieces = std::set<std::string>;

constexpr unsigned kSeed = 90'210;
constexpr int kHosts = 3;
constexpr int kKills = 100;

Pieces PiecesOf(const StateStore& store, std::string_view key) {
  const std::string list = store.Get(key);
  Pieces pieces;
  for (const std::string_view piece : ornwhatsnew::SplitPersistedList(list)) {
    pieces.emplace(piece);
  }
  return pieces;
}

bool Includes(const Pieces& all, const Pieces& some) {
  return std::ranges::includes(all, some);
}

/// One version of the application: its files, and what showing its list adds to the store.
struct Edition {
  std::filesystem::path data;
  std::filesystem::path host;
  std::string version;
  Pieces shown;
};

class ProgramKillTest : public ProgramTest {
 protected:
  ProgramKillTest() {
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < kHosts; ++i) editions_.push_back(MakeEdition(i));
    const auto whole = std::chrono::steady_clock::now() - begin;
    runTime_ = std::chrono::duration_cast<std::chrono::microseconds>(whole) / kHosts;
    const std::filesystem::path file = folder_.Path() / "rated.db";
    OutputOf(RateWords(editions_.front(), file));
    rated_ = PiecesOf(StateStore(file), common::kAllSeenItemsKey);
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
    const std::filesystem::path file = folder_.Path() / (name + ".db");
    OutputOf(ShowWords(edition, file));
    edition.shown = PiecesOf(StateStore(file), common::kAllSeenItemsKey);
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

  /// The store holds nothing but whole passes and perhaps a rating.
  void ExpectWholePasses(const StateStore& store) const {
    const Pieces seen = PiecesOf(store, common::kAllSeenItemsKey);
    const Pieces versions = PiecesOf(store, common::kAllVersionsSeenKey);
    Pieces explained = rated_;
    for (const Edition& edition : editions_) {
      if (!versions.contains(edition.version)) continue;
      EXPECT_TRUE(Includes(seen, edition.shown)) << edition.version << " is there in part";
      explained.insert(edition.shown.begin(), edition.shown.end());
    }
    EXPECT_TRUE(Includes(explained, seen)) << "somebody's identities came without their version";
    const std::string last = store.Get(common::kLastVersionSeenKey);
    EXPECT_EQ(versions.empty(), last.empty());
    EXPECT_TRUE(versions.empty() || versions.contains(last));
  }

  /// The moments at which the programs of a round are killed, the earliest first. By the last one a
  /// program, one of several, may or may not have ended: what takes longer on a slow machine is
  /// killed later there.
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
  Pieces rated_;
  std::chrono::microseconds runTime_{};
};

TEST_F(ProgramKillTest, EveryKillLeavesWholePassesAndEveryThingAcknowledged) {
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  int killed = 0;
  int ended = 0;
  std::filesystem::path file;
  Pieces acknowledgedVersions;
  Pieces acknowledgedIdentities;
  for (int round = 0; killed < test_support::KillsWanted(kKills) && !HasFailure(); ++round) {
    if (round % 4 == 0) {
      file = folder_.Path() / "killed" / std::to_string(round) / "state.db";
      acknowledgedVersions.clear();
      acknowledgedIdentities.clear();
    }
    std::vector<std::unique_ptr<ChildProcess>> processes;
    for (const Edition& edition : editions_) {
      processes.push_back(
          std::make_unique<ChildProcess>(ProgramFile(), Call(ShowWords(edition, file))));
    }
    processes.push_back(std::make_unique<ChildProcess>(
        ProgramFile(), Call(RateWords(editions_[random() % kHosts], file))));
    const auto begin = std::chrono::steady_clock::now();
    const auto times = TimesToKill(random, processes.size());
    std::vector<std::size_t> order(processes.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::shuffle(order, random);
    for (std::size_t next = 0; next < order.size(); ++next) {
      const std::size_t i = order[next];
      std::this_thread::sleep_until(begin + times[next]);
      processes[i]->Kill();
      const int status = processes[i]->Wait().exitStatus;
      ASSERT_TRUE(status == 0 || status == -9) << status;
      ++(status == 0 ? ended : killed);
      if (status != 0) continue;
      const bool isRating = i == editions_.size();
      const Pieces& identities = isRating ? rated_ : editions_[i].shown;
      acknowledgedIdentities.insert(identities.begin(), identities.end());
      if (!isRating) acknowledgedVersions.insert(editions_[i].version);
    }
    const StateStore store(file);
    ExpectWholePasses(store);
    EXPECT_TRUE(Includes(PiecesOf(store, common::kAllSeenItemsKey), acknowledgedIdentities));
    EXPECT_TRUE(Includes(PiecesOf(store, common::kAllVersionsSeenKey), acknowledgedVersions));
  }
  std::cout << killed << " killed, " << ended << " ended first" << std::endl;
  EXPECT_GT(ended, 0) << "nothing was acknowledged that could have been lost";
}

TEST_F(ProgramKillTest, ProgramsAtOnceLoseNothing) {
  const std::filesystem::path file = folder_.Path() / "together.db";
  for (int round = 0; round < 5; ++round) {
    std::filesystem::remove(file);
    std::vector<std::unique_ptr<ChildProcess>> processes;
    for (const Edition& edition : editions_) {
      processes.push_back(
          std::make_unique<ChildProcess>(ProgramFile(), Call(ShowWords(edition, file))));
    }
    processes.push_back(
        std::make_unique<ChildProcess>(ProgramFile(), Call(RateWords(editions_.front(), file))));
    for (const auto& process : processes) EXPECT_EQ(0, process->Wait().exitStatus);
    const StateStore store(file);
    const Pieces seen = PiecesOf(store, common::kAllSeenItemsKey);
    EXPECT_TRUE(Includes(seen, rated_));
    for (const Edition& edition : editions_) EXPECT_TRUE(Includes(seen, edition.shown));
    EXPECT_EQ(editions_.size(), PiecesOf(store, common::kAllVersionsSeenKey).size());
  }
}

}  // namespace
}  // namespace hosts::console
