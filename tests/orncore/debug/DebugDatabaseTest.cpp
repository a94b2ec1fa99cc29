#include <orncore/debug/DebugDatabase.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/Threads.h"

namespace orncore::debug {
namespace {

using namespace std::string_literals;

class FailingStore final : public DebugStore {
 public:
  std::optional<string::UTF8String> Find(std::string_view) const override {
    throw std::runtime_error("cannot read");
  }
  void Store(std::string_view, std::string_view) override {
    throw std::runtime_error("cannot write");
  }
};

// A store that removes itself from the database during a call. The database then releases its
// reference to the store.
class SelfReplacingStore final : public DebugStore {
 public:
  explicit SelfReplacingStore(DebugDatabase& database) : database_(database) {}
  std::optional<string::UTF8String> Find(std::string_view) const override {
    database_.SetStore(nullptr);
    return text_;
  }
  void Store(std::string_view, std::string_view value) override {
    database_.SetStore(nullptr);
    text_ = value;
  }

 private:
  DebugDatabase& database_;
  std::string text_ = "from the old store";
};

TEST(DebugDatabase, ReturnsAnEmptyStringForAMissingEntry) {
  const DebugDatabase database;
  EXPECT_EQ(database.GetEntry("missing"), "");
}

TEST(DebugDatabase, ReturnsTheDefaultForAMissingEntry) {
  const DebugDatabase database;
  EXPECT_EQ(database.GetEntry("missing", "default"), "default");
}

TEST(DebugDatabase, ReturnsTheLastStoredText) {
  DebugDatabase database;
  database.SetEntry("key", "one");
  database.SetEntry("key", "two");
  EXPECT_EQ(database.GetEntry("key"), "two");
  EXPECT_EQ(database.GetEntry("key", "default"), "two");
}

TEST(DebugDatabase, AnEmptyTextIsAnEntry) {
  DebugDatabase database;
  database.SetEntry("key", "");
  EXPECT_EQ(database.GetEntry("key", "default"), "");
}

TEST(DebugDatabase, KeepsNulCharactersInKeysAndTexts) {
  DebugDatabase database;
  database.SetEntry("a\0b"s, "c\0d"s);
  EXPECT_EQ(database.GetEntry("a\0b"s), "c\0d"s);
  EXPECT_EQ(database.GetEntry("a"), "");
}

TEST(DebugDatabase, ConvertsOnlyTheTextTrueToTrue) {
  for (const char* text : {"True", "TRUE", "1", "", " true", "true ", "yes", "false"}) {
    DebugDatabase database;
    database.SetEntry("switch", text);
    EXPECT_FALSE(database.GetEntryAs<bool>("switch", false)) << text;
    EXPECT_FALSE(database.GetEntryAs<bool>("switch", true)) << text;
  }
  DebugDatabase database;
  database.SetEntry("switch", "true");
  EXPECT_TRUE(database.GetEntryAs<bool>("switch", false));
}

TEST(DebugDatabase, ReturnsTheDefaultForAMissingSwitch) {
  const DebugDatabase database;
  EXPECT_TRUE(database.GetEntryAs<bool>("switch", true));
  EXPECT_FALSE(database.GetEntryAs<bool>("switch", false));
}

TEST(DebugDatabase, UsesTheStoreOfTheHost) {
  DebugDatabase database;
  const auto store =
      std::make_shared<MemoryDebugStore>(MemoryDebugStore::EntryMap{{"key", "host"}});
  database.SetStore(store);
  EXPECT_EQ(database.GetEntry("key"), "host");
  database.SetEntry("other", "text");
  EXPECT_EQ(store->Find("key"), "host");
  EXPECT_EQ(store->Find("other"), "text");
}

TEST(DebugDatabase, CachesNothing) {
  DebugDatabase database;
  const auto store = std::make_shared<MemoryDebugStore>();
  database.SetStore(store);
  EXPECT_EQ(database.GetEntry("key"), "");
  store->Store("key", "later");
  EXPECT_EQ(database.GetEntry("key"), "later");
}

TEST(DebugDatabase, StartsEmptyWhenTheStoreIsReset) {
  DebugDatabase database;
  database.SetEntry("key", "text");
  database.SetStore(nullptr);
  EXPECT_EQ(database.GetEntry("key"), "");
  database.SetEntry("key", "again");
  EXPECT_EQ(database.GetEntry("key"), "again");
}

TEST(DebugDatabase, ReleasesTheOldStore) {
  DebugDatabase database;
  auto store = std::make_shared<MemoryDebugStore>();
  const std::weak_ptr<MemoryDebugStore> watched = store;
  database.SetStore(std::move(store));
  EXPECT_FALSE(watched.expired());
  database.SetStore(nullptr);
  EXPECT_TRUE(watched.expired());
}

TEST(DebugDatabase, AStoreMayReplaceItselfDuringACall) {
  DebugDatabase database;
  database.SetStore(std::make_shared<SelfReplacingStore>(database));
  EXPECT_EQ(database.GetEntry("key"), "from the old store");
  database.SetStore(std::make_shared<SelfReplacingStore>(database));
  database.SetEntry("key", "text");
  EXPECT_EQ(database.GetEntry("key"), "");
}

TEST(DebugDatabase, PropagatesExceptionsOfTheStore) {
  DebugDatabase database;
  database.SetStore(std::make_shared<FailingStore>());
  EXPECT_THROW(static_cast<void>(database.GetEntry("key")), std::runtime_error);
  EXPECT_THROW(static_cast<void>(database.GetEntryAs<bool>("key", true)), std::runtime_error);
  EXPECT_THROW(database.SetEntry("key", "text"), std::runtime_error);
}

TEST(DebugDatabase, HasOneInstancePerProcess) {
  EXPECT_EQ(&DebugDatabase::Instance(), &DebugDatabase::Instance());
  DebugDatabase::Instance().SetEntry("key", "text");
  EXPECT_EQ(DebugDatabase::Instance().GetEntry("key"), "text");
  EXPECT_EQ(DebugDatabase().GetEntry("key"), "");
  DebugDatabase::Instance().SetStore(nullptr);
}

TEST(DebugDatabase, SeveralThreadsMayUseTheDatabaseDuringAReplacement) {
  constexpr int kCalls = 2'000;
  DebugDatabase database;
  const auto set = [&database] {
    database.SetStore(
        std::make_shared<MemoryDebugStore>(MemoryDebugStore::EntryMap{{"key", "host"}}));
  };
  set();
  test_support::ThreadCounter foundEntries;
  test_support::RunOnThreads(
      [&] {
        for (int call = 0; call < kCalls; ++call) {
          database.SetEntry("other", "text");
          foundEntries.Add(database.GetEntry("key") == "host" ? 1 : 0);
        }
      },
      set);
  EXPECT_EQ(foundEntries.Value(), test_support::kThreadCount * kCalls);
}

TEST(DebugDatabase, SeveralThreadsMayUseTheStoreInMemory) {
  constexpr int kEntries = 500;
  DebugDatabase database;
  std::atomic<int> thread = 0;
  test_support::ThreadCounter foundEntries;
  test_support::RunOnThreads(
      [&] {
        const std::string prefix = "thread " + std::to_string(thread++) + ' ';
        for (int number = 0; number < kEntries; ++number) {
          const std::string key = prefix + std::to_string(number);
          database.SetEntry(key, "text");
          foundEntries.Add(database.GetEntry(key) == "text" ? 1 : 0);
        }
      },
      [&database] { EXPECT_EQ(database.GetEntry("missing"), ""); });
  EXPECT_EQ(foundEntries.Value(), test_support::kThreadCount * kEntries);
}

}  // namespace
}  // namespace orncore::debug
