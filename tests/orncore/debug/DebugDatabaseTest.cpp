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
  std::optional<string::UTF8String> Find(std::string_view) const override {
    DebugDatabase::Instance().SetStore(nullptr);
    return text_;
  }
  void Store(std::string_view, std::string_view value) override {
    DebugDatabase::Instance().SetStore(nullptr);
    text_ = value;
  }

 private:
  std::string text_ = "from the old store";
};

class DebugDatabaseTest : public testing::Test {
 protected:
  ~DebugDatabaseTest() override { database_.SetStore(nullptr); }

  DebugDatabase& database_ = DebugDatabase::Instance();
};

TEST_F(DebugDatabaseTest, ReturnsAnEmptyStringForAMissingEntry) {
  EXPECT_EQ(database_.GetEntry("missing"), "");
}

TEST_F(DebugDatabaseTest, ReturnsTheDefaultForAMissingEntry) {
  EXPECT_EQ(database_.GetEntry("missing", "default"), "default");
}

TEST_F(DebugDatabaseTest, ReturnsTheLastStoredText) {
  database_.SetEntry("key", "one");
  database_.SetEntry("key", "two");
  EXPECT_EQ(database_.GetEntry("key"), "two");
  EXPECT_EQ(database_.GetEntry("key", "default"), "two");
}

TEST_F(DebugDatabaseTest, AnEmptyTextIsAnEntry) {
  database_.SetEntry("key", "");
  EXPECT_EQ(database_.GetEntry("key", "default"), "");
}

TEST_F(DebugDatabaseTest, KeepsNulCharactersInKeysAndTexts) {
  database_.SetEntry("a\0b"s, "c\0d"s);
  EXPECT_EQ(database_.GetEntry("a\0b"s), "c\0d"s);
  EXPECT_EQ(database_.GetEntry("a"), "");
}

TEST_F(DebugDatabaseTest, ConvertsOnlyTheTextTrueToTrue) {
  for (const char* text : {"True", "TRUE", "1", "", " true", "true ", "yes", "false"}) {
    database_.SetEntry("switch", text);
    EXPECT_FALSE(database_.GetEntryAs<bool>("switch", false)) << text;
    EXPECT_FALSE(database_.GetEntryAs<bool>("switch", true)) << text;
  }
  database_.SetEntry("switch", "true");
  EXPECT_TRUE(database_.GetEntryAs<bool>("switch", false));
}

TEST_F(DebugDatabaseTest, ReturnsTheDefaultForAMissingSwitch) {
  EXPECT_TRUE(database_.GetEntryAs<bool>("switch", true));
  EXPECT_FALSE(database_.GetEntryAs<bool>("switch", false));
}

TEST_F(DebugDatabaseTest, UsesTheStoreOfTheHost) {
  const auto store =
      std::make_shared<MemoryDebugStore>(MemoryDebugStore::EntryMap{{"key", "host"}});
  database_.SetStore(store);
  EXPECT_EQ(database_.GetEntry("key"), "host");
  database_.SetEntry("other", "text");
  EXPECT_EQ(store->Find("key"), "host");
  EXPECT_EQ(store->Find("other"), "text");
}

TEST_F(DebugDatabaseTest, CachesNothing) {
  const auto store = std::make_shared<MemoryDebugStore>();
  database_.SetStore(store);
  EXPECT_EQ(database_.GetEntry("key"), "");
  store->Store("key", "later");
  EXPECT_EQ(database_.GetEntry("key"), "later");
}

TEST_F(DebugDatabaseTest, StartsEmptyWhenTheStoreIsReset) {
  database_.SetEntry("key", "text");
  database_.SetStore(nullptr);
  EXPECT_EQ(database_.GetEntry("key"), "");
  database_.SetEntry("key", "again");
  EXPECT_EQ(database_.GetEntry("key"), "again");
}

TEST_F(DebugDatabaseTest, ReleasesTheOldStore) {
  auto store = std::make_shared<MemoryDebugStore>();
  const std::weak_ptr<MemoryDebugStore> watched = store;
  database_.SetStore(std::move(store));
  EXPECT_FALSE(watched.expired());
  database_.SetStore(nullptr);
  EXPECT_TRUE(watched.expired());
}

TEST_F(DebugDatabaseTest, AStoreMayReplaceItselfDuringACall) {
  database_.SetStore(std::make_shared<SelfReplacingStore>());
  EXPECT_EQ(database_.GetEntry("key"), "from the old store");
  database_.SetStore(std::make_shared<SelfReplacingStore>());
  database_.SetEntry("key", "text");
  EXPECT_EQ(database_.GetEntry("key"), "");
}

TEST_F(DebugDatabaseTest, PropagatesExceptionsOfTheStore) {
  database_.SetStore(std::make_shared<FailingStore>());
  EXPECT_THROW(static_cast<void>(database_.GetEntry("key")), std::runtime_error);
  EXPECT_THROW(static_cast<void>(database_.GetEntryAs<bool>("key", true)), std::runtime_error);
  EXPECT_THROW(database_.SetEntry("key", "text"), std::runtime_error);
}

TEST_F(DebugDatabaseTest, HasOneInstancePerProcess) {
  EXPECT_EQ(&DebugDatabase::Instance(), &DebugDatabase::Instance());
}

TEST_F(DebugDatabaseTest, SeveralThreadsMayUseTheDatabaseDuringAReplacement) {
  constexpr int kCalls = 2'000;
  const auto set = [this] {
    database_.SetStore(
        std::make_shared<MemoryDebugStore>(MemoryDebugStore::EntryMap{{"key", "host"}}));
  };
  set();
  test_support::ThreadCounter foundEntries;
  test_support::RunOnThreads(
      [&] {
        for (int call = 0; call < kCalls; ++call) {
          database_.SetEntry("other", "text");
          foundEntries.Add(database_.GetEntry("key") == "host" ? 1 : 0);
        }
      },
      set);
  EXPECT_EQ(foundEntries.Value(), test_support::kThreadCount * kCalls);
}

TEST_F(DebugDatabaseTest, SeveralThreadsMayUseTheStoreInMemory) {
  constexpr int kEntries = 500;
  std::atomic<int> thread = 0;
  test_support::ThreadCounter foundEntries;
  test_support::RunOnThreads(
      [&] {
        const std::string prefix = "thread " + std::to_string(thread++) + ' ';
        for (int number = 0; number < kEntries; ++number) {
          const std::string key = prefix + std::to_string(number);
          database_.SetEntry(key, "text");
          foundEntries.Add(database_.GetEntry(key) == "text" ? 1 : 0);
        }
      },
      [this] { EXPECT_EQ(database_.GetEntry("missing"), ""); });
  EXPECT_EQ(foundEntries.Value(), test_support::kThreadCount * kEntries);
}

}  // namespace
}  // namespace orncore::debug
