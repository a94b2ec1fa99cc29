#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/common/StateStore.h"
#include "tests/support/TemporaryFolder.h"

namespace hosts::common {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::string_view kOtherKey = "Another.Key";

class StateStoreTest : public testing::Test {
 protected:
  std::filesystem::path File() const { return folder_.Path() / "deep" / "state.db"; }

  /// What a store opened afresh holds under a key.
  std::string Kept(std::string_view key) const { return StateStore(File()).Get(key); }

  void Keep(std::string_view key, std::string_view value) const {
    StateStore store(File());
    store.Set(key, value);
    store.Commit();
  }

  test_support::TemporaryFolder folder_;
};

TEST_F(StateStoreTest, HoldsNothingAtFirstAndMakesNoFile) {
  StateStore store(File());
  EXPECT_EQ("", store.Get(kAllSeenItemsKey));
  EXPECT_THAT(store.Values(), IsEmpty());
  store.Refresh();
  store.Reset();
  store.Commit();
  EXPECT_FALSE(std::filesystem::exists(File().parent_path()));
}

TEST_F(StateStoreTest, KeepsWhatWasCommitted) {
  Keep(kLastVersionSeenKey, "25.1.0.42");
  EXPECT_EQ("25.1.0.42", Kept(kLastVersionSeenKey));
}

TEST_F(StateStoreTest, AnswersWhatWasSetBeforeItIsCommitted) {
  Keep(kOtherKey, "old");
  StateStore store(File());
  store.Set(kOtherKey, "new");
  EXPECT_EQ("new", store.Get(kOtherKey));
  EXPECT_EQ("old", Kept(kOtherKey));
}

TEST_F(StateStoreTest, ANameBelowAFolderThatIsGoneIsRefused) {
  const std::filesystem::path before = std::filesystem::current_path();
  const std::filesystem::path gone = folder_.Path() / "gone";
  std::filesystem::create_directory(gone);
  std::filesystem::current_path(gone);
  std::filesystem::remove(gone);
  EXPECT_THAT([] { const StateStore store("state.db"); },
              testing::ThrowsMessage<StateStoreError>(
                  testing::HasSubstr("Name it from the root on, or change the folder.")));
  std::filesystem::current_path(before);
}

TEST_F(StateStoreTest, CallbacksReadAndBuffer) {
  StateStore store(File());
  store.Setter()("key", "value");
  EXPECT_EQ("value", store.Getter()("key"));
  EXPECT_EQ("", Kept("key"));
  store.Commit();
  EXPECT_EQ("value", Kept("key"));
}

TEST_F(StateStoreTest, KeepsAnyBytes) {
  const std::string bytes("a\0b\xFF\xC3'\n", 7);
  Keep(bytes, bytes);
  EXPECT_EQ(bytes, Kept(bytes));
}

TEST_F(StateStoreTest, KeepsMegabytes) {
  const std::string text(4'000'000, 'x');
  Keep(kOtherKey, text);
  EXPECT_EQ(text, Kept(kOtherKey));
}

TEST_F(StateStoreTest, ListsOfTwoProgramsComeTogether) {
  Keep(kAllSeenItemsKey, "a");
  StateStore one(File());
  StateStore other(File());
  one.Set(kAllSeenItemsKey, "a b");
  one.Set(kAllVersionsSeenKey, "25.0");
  other.Set(kAllSeenItemsKey, "a c");
  other.Set(kAllVersionsSeenKey, "25.1");
  one.Commit();
  other.Commit();
  EXPECT_EQ("a b c", other.Get(kAllSeenItemsKey));
  EXPECT_EQ("a b c", Kept(kAllSeenItemsKey));
  EXPECT_EQ("25.0 25.1", Kept(kAllVersionsSeenKey));
  one.Refresh();
  EXPECT_EQ("a b c", one.Get(kAllSeenItemsKey));
}

TEST_F(StateStoreTest, OfASingleTextTheLastWriterStands) {
  StateStore one(File());
  StateStore other(File());
  one.Set(kLastVersionSeenKey, "1");
  other.Set(kLastVersionSeenKey, "2");
  other.Commit();
  one.Commit();
  EXPECT_EQ("1", Kept(kLastVersionSeenKey));
}

TEST_F(StateStoreTest, ARatingDoesNotTouchTheVersions) {
  Keep(kAllVersionsSeenKey, "25.0");
  StateStore rating(File());
  Keep(kAllVersionsSeenKey, "25.1");
  rating.Set(kAllSeenItemsKey, "rated");
  rating.Commit();
  EXPECT_EQ("25.0 25.1", Kept(kAllVersionsSeenKey));
  EXPECT_EQ("rated", Kept(kAllSeenItemsKey));
}

TEST_F(StateStoreTest, ResetRemovesEverything) {
  Keep(kAllSeenItemsKey, "a");
  Keep(kOtherKey, "text");
  StateStore store(File());
  store.Set(kOtherKey, "more");
  store.Reset();
  EXPECT_THAT(store.Values(), IsEmpty());
  EXPECT_THAT(StateStore(File()).Values(), IsEmpty());
}

TEST_F(StateStoreTest, AWriterDoesNotUndoAResetThatItDidNotSee) {
  Keep(kAllSeenItemsKey, "a b");
  StateStore writer(File());
  StateStore(File()).Reset();
  writer.Set(kAllSeenItemsKey, "a b c");
  writer.Commit();
  EXPECT_EQ("c", Kept(kAllSeenItemsKey));
}

TEST_F(StateStoreTest, ACommitThatChangesNothingLeavesTheFileAlone) {
  Keep(kAllSeenItemsKey, "a b");
  const auto before = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
  std::filesystem::last_write_time(File(), before);
  Keep(kAllSeenItemsKey, "b a");
  EXPECT_EQ(before, std::filesystem::last_write_time(File()));
}

TEST_F(StateStoreTest, AnEmptyFileIsAStoreThatHoldsNothing) {
  folder_.Write("deep/state.db", "");
  EXPECT_THAT(StateStore(File()).Values(), IsEmpty());
  StateStore(File()).Reset();
  EXPECT_EQ(0U, std::filesystem::file_size(File()));
  Keep(kOtherKey, "text");
  EXPECT_EQ("text", Kept(kOtherKey));
}

TEST_F(StateStoreTest, AStoreThatWasDeletedMeanwhileIsMadeAnew) {
  Keep(kAllSeenItemsKey, "a");
  StateStore store(File());
  std::filesystem::remove_all(File().parent_path());
  store.Set(kAllSeenItemsKey, "a b");
  store.Commit();
  EXPECT_EQ("b", Kept(kAllSeenItemsKey));
}

TEST_F(StateStoreTest, ALinkToAStoreIsAStore) {
  std::filesystem::create_symlink(File(), folder_.Path() / "link");
  std::filesystem::create_directories(File().parent_path());
  StateStore store(folder_.Path() / "link");
  store.Set(kOtherKey, "text");
  store.Commit();
  EXPECT_EQ("text", Kept(kOtherKey));
}

TEST_F(StateStoreTest, NamesMayHoldAnyCharacters) {
  for (const char* name :
       {"a b", "a'b\"c", "a?mode=memory#x%41", "line\nfeed", "\xFF\xFE", "file:x", "-option"}) {
    const std::filesystem::path file = folder_.Path() / name;
    StateStore store(file);
    store.Set(kOtherKey, name);
    store.Commit();
    EXPECT_TRUE(std::filesystem::is_regular_file(file)) << name;
    EXPECT_EQ(name, StateStore(file).Get(kOtherKey));
  }
}

TEST(StateStoreInMemory, KeepsForTheProgramAndMakesNoFile) {
  StateStore store{std::filesystem::path(kMemoryLocation)};
  store.Set(kAllSeenItemsKey, "b");
  store.Commit();
  store.Set(kAllSeenItemsKey, "a");
  store.Commit();
  store.Refresh();
  EXPECT_EQ("a b", store.Get(kAllSeenItemsKey));
  EXPECT_EQ(kMemoryLocation, store.Location().native());
  EXPECT_FALSE(std::filesystem::exists(":memory:"));
  store.Reset();
  EXPECT_THAT(store.Values(), IsEmpty());
  EXPECT_EQ("", StateStore{std::filesystem::path(kMemoryLocation)}.Get(kAllSeenItemsKey));
}

TEST(StateStoreLocation, AnEmptyNameIsRefused) {
  EXPECT_THROW(StateStore{std::filesystem::path()}, StateStoreError);
}

/// Sets a variable of the environment, or takes it away, for one test.
class EnvironmentVariable {
 public:
  EnvironmentVariable(const char* name, const char* value) : name_(name) {
    if (const char* const before = std::getenv(name)) before_ = before;
    Set(value);
  }
  ~EnvironmentVariable() { Set(before_ ? before_->c_str() : nullptr); }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

 private:
  void Set(const char* value) {
    if (value != nullptr) {
      ::setenv(name_, value, 1);
    } else {
      ::unsetenv(name_);
    }
  }

  const char* name_;
  std::optional<std::string> before_;
};

TEST(StateStoreLocation, IsInTheStateFolderOfTheUser) {
  const EnvironmentVariable home("HOME", "/home/somebody");
  const EnvironmentVariable state("XDG_STATE_HOME", "/var/state");
  EXPECT_EQ("/var/state/ornwhatsnew/state.db", DefaultStateLocation());
}

TEST(StateStoreLocation, IsBelowTheHomeFolderOtherwise) {
  const EnvironmentVariable home("HOME", "/home/somebody");
  for (const char* unusable : {static_cast<const char*>(nullptr), "", "relative/folder"}) {
    const EnvironmentVariable state("XDG_STATE_HOME", unusable);
    EXPECT_EQ("/home/somebody/.local/state/ornwhatsnew/state.db", DefaultStateLocation());
  }
}

TEST(StateStoreLocation, WithoutAnyFolderTheErrorTellsWhatToSet) {
  for (const char* unusable : {static_cast<const char*>(nullptr), "", "relative/folder", "."}) {
    const EnvironmentVariable home("HOME", unusable);
    const EnvironmentVariable state("XDG_STATE_HOME", nullptr);
    try {
      DefaultStateLocation();
      FAIL() << "no error";
    } catch (const StateStoreError& error) {
      EXPECT_THAT(error.what(), HasSubstr("XDG_STATE_HOME"));
      EXPECT_THAT(error.what(), HasSubstr("--state"));
    }
  }
}

}  // namespace
}  // namespace hosts::common
