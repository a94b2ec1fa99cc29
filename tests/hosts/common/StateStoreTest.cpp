#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/common/StateStore.h"
#include "hosts/common/TextFile.h"
#include "tests/support/TemporaryFolder.h"

namespace hosts::common {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::string_view kOtherKey = "Another.Key";

class StateStoreTest : public testing::Test {
 protected:
  std::filesystem::path File() const { return folder_.Path() / "deep" / "state.json"; }

  /// Reads the file into a new `StateStore` and returns the value of `key`.
  std::string StoredValue(std::string_view key) const { return StateStore(File()).Get(key); }

  void WriteValue(std::string_view key, std::string_view value) const {
    StateStore store(File());
    store.Set(key, value);
    store.Commit();
  }

  test_support::TemporaryFolder folder_;
};

TEST_F(StateStoreTest, IsEmptyAtFirstAndCreatesNoFile) {
  StateStore store(File());
  EXPECT_EQ("", store.Get(kAllSeenItemsKey));
  EXPECT_THAT(store.Values(), IsEmpty());
  store.Refresh();
  store.Reset();
  store.Commit();
  EXPECT_FALSE(std::filesystem::exists(File().parent_path()));
}

TEST_F(StateStoreTest, StoresCommittedValues) {
  WriteValue(kLastVersionSeenKey, "25.1.0.42");
  EXPECT_EQ("25.1.0.42", StoredValue(kLastVersionSeenKey));
}

TEST_F(StateStoreTest, ReturnsValuesBeforeTheyAreCommitted) {
  WriteValue(kOtherKey, "old");
  StateStore store(File());
  store.Set(kOtherKey, "new");
  EXPECT_EQ("new", store.Get(kOtherKey));
  EXPECT_EQ("old", StoredValue(kOtherKey));
}

TEST_F(StateStoreTest, RejectsARelativePathInADeletedFolder) {
  const std::filesystem::path before = std::filesystem::current_path();
  const std::filesystem::path deleted = folder_.Path() / "deleted";
  std::filesystem::create_directory(deleted);
  std::filesystem::current_path(deleted);
  std::filesystem::remove(deleted);
  EXPECT_THAT([] { const StateStore store("state.json"); },
              testing::ThrowsMessage<StateStoreError>(
                  "cannot use the state store 'state.json': cannot find the current folder: No "
                  "such file or directory; use an absolute path, or change to another folder"));
  std::filesystem::current_path(before);
}

// The text after a newline in the last version would look like a second line of the panel's
// heading.
TEST_F(StateStoreTest, TheGetterReplacesControlCharactersInTheLastVersion) {
  WriteValue(kLastVersionSeenKey, "25.1\nYou are all caught up.\x1B");
  WriteValue(kOtherKey, "a\nb");
  const StateStore store(File());
  EXPECT_EQ("25.1\uFFFDYou are all caught up.\uFFFD",
            store.Getter()(ornwhatsnew::UTF8String(kLastVersionSeenKey)));
  EXPECT_EQ("25.1\nYou are all caught up.\x1B", store.Get(kLastVersionSeenKey));
  EXPECT_EQ("a\nb", store.Getter()(ornwhatsnew::UTF8String(kOtherKey)));
}

TEST_F(StateStoreTest, CallbacksReadAndBufferValues) {
  StateStore store(File());
  store.Setter()("key", "value");
  EXPECT_EQ("value", store.Getter()("key"));
  EXPECT_EQ("", StoredValue("key"));
  store.Commit();
  EXPECT_EQ("value", StoredValue("key"));
}

TEST_F(StateStoreTest, StoresAnyText) {
  const std::string text("a\0b\x1B\x7F'\"\\\n\u00DC\U0001F600\uFFFF", 18);
  WriteValue(text, text);
  EXPECT_EQ(text, StoredValue(text));
}

TEST_F(StateStoreTest, IsAFileThatAPersonCanRead) {
  StateStore store(File());
  store.Set(kAllSeenItemsKey, "a b");
  store.Set(kLastVersionSeenKey, "25.1\u00DC\x1B");
  store.Commit();
  EXPECT_EQ(
      "{\n"
      "  \"format\": \"ornwhatsnew state\",\n"
      "  \"formatVersion\": 1,\n"
      "  \"values\": {\n"
      "    \"WhatsNew.AllSeenItems\": \"a b\",\n"
      "    \"WhatsNew.LastVersionSeenWhatsNew\": \"25.1\\u00dc\\u001b\"\n"
      "  }\n"
      "}\n",
      ReadTextFile(File()));
}

TEST_F(StateStoreTest, ReadsAFileThatAPersonHasEdited) {
  folder_.Write("deep/state.json",
                "\xEF\xBB\xBF {\"values\":{\"k\":\"\u00DC\"},\r\n"
                "\"formatVersion\":1,\"format\":\"ornwhatsnew state\"}");
  EXPECT_EQ("\u00DC", StoredValue("k"));
}

TEST_F(StateStoreTest, StoresMegabytes) {
  const std::string text(4'000'000, 'x');
  WriteValue(kOtherKey, text);
  EXPECT_EQ(text, StoredValue(kOtherKey));
}

TEST_F(StateStoreTest, MergesTheListsOfTwoPrograms) {
  WriteValue(kAllSeenItemsKey, "a");
  StateStore one(File());
  StateStore other(File());
  one.Set(kAllSeenItemsKey, "a b");
  one.Set(kAllVersionsSeenKey, "25.0");
  other.Set(kAllSeenItemsKey, "a c");
  other.Set(kAllVersionsSeenKey, "25.1");
  one.Commit();
  other.Commit();
  EXPECT_EQ("a b c", other.Get(kAllSeenItemsKey));
  EXPECT_EQ("a b c", StoredValue(kAllSeenItemsKey));
  EXPECT_EQ("25.0 25.1", StoredValue(kAllVersionsSeenKey));
  one.Refresh();
  EXPECT_EQ("a b c", one.Get(kAllSeenItemsKey));
}

TEST_F(StateStoreTest, TheLastWriterSetsTheLastVersion) {
  StateStore one(File());
  StateStore other(File());
  one.Set(kLastVersionSeenKey, "1");
  other.Set(kLastVersionSeenKey, "2");
  other.Commit();
  one.Commit();
  EXPECT_EQ("1", StoredValue(kLastVersionSeenKey));
}

TEST_F(StateStoreTest, ARatingKeepsTheVersions) {
  WriteValue(kAllVersionsSeenKey, "25.0");
  StateStore rating(File());
  WriteValue(kAllVersionsSeenKey, "25.1");
  rating.Set(kAllSeenItemsKey, "rated");
  rating.Commit();
  EXPECT_EQ("25.0 25.1", StoredValue(kAllVersionsSeenKey));
  EXPECT_EQ("rated", StoredValue(kAllSeenItemsKey));
}

TEST_F(StateStoreTest, ResetDeletesAllValues) {
  WriteValue(kAllSeenItemsKey, "a");
  WriteValue(kOtherKey, "text");
  StateStore store(File());
  store.Set(kOtherKey, "more");
  store.Reset();
  EXPECT_THAT(store.Values(), IsEmpty());
  EXPECT_THAT(StateStore(File()).Values(), IsEmpty());
}

TEST_F(StateStoreTest, AWriterDoesNotUndoAResetByAnotherProgram) {
  WriteValue(kAllSeenItemsKey, "a b");
  StateStore writer(File());
  StateStore(File()).Reset();
  writer.Set(kAllSeenItemsKey, "a b c");
  writer.Commit();
  EXPECT_EQ("c", StoredValue(kAllSeenItemsKey));
}

TEST_F(StateStoreTest, ACommitWithoutChangesDoesNotWrite) {
  WriteValue(kAllSeenItemsKey, "a b");
  const auto before = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
  std::filesystem::last_write_time(File(), before);
  WriteValue(kAllSeenItemsKey, "b a");
  EXPECT_EQ(before, std::filesystem::last_write_time(File()));
}

TEST_F(StateStoreTest, RecreatesADeletedStore) {
  WriteValue(kAllSeenItemsKey, "a");
  StateStore store(File());
  std::filesystem::remove_all(File().parent_path());
  store.Set(kAllSeenItemsKey, "a b");
  store.Commit();
  EXPECT_EQ("b", StoredValue(kAllSeenItemsKey));
}

TEST_F(StateStoreTest, FileNamesMayHaveAnyCharacters) {
  for (const char* name :
       {"a b", "a'b\"c", "a?mode=memory#x%41", "line\nfeed", "\xFF\xFE", "file:x", "-option"}) {
    const std::filesystem::path file = folder_.Path() / name;
    StateStore store(file);
    store.Set(kOtherKey, "text");
    store.Commit();
    EXPECT_TRUE(std::filesystem::is_regular_file(file)) << name;
    EXPECT_EQ("text", StateStore(file).Get(kOtherKey));
  }
}

TEST(StateStoreInMemory, StoresValuesWithoutAFile) {
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

TEST(StateStoreLocation, RejectsAnEmptyPath) {
  EXPECT_THAT([] { StateStore{std::filesystem::path()}; },
              testing::ThrowsMessage<StateStoreError>(
                  "cannot use the state store '': empty name; name a file with --state, or "
                  "':memory:' to store nothing"));
}

/// Sets an environment variable, or removes it if the value is null. The destructor restores the
/// variable.
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
  EXPECT_EQ("/var/state/ornwhatsnew/state.json", StateLocation(std::nullopt));
  EXPECT_EQ("named.json", StateLocation("named.json"));
}

TEST(StateStoreLocation, IsBelowTheHomeFolderWithoutAStateFolder) {
  const EnvironmentVariable home("HOME", "/home/somebody");
  for (const char* unusable : {static_cast<const char*>(nullptr), "", "relative/folder"}) {
    const EnvironmentVariable state("XDG_STATE_HOME", unusable);
    EXPECT_EQ("/home/somebody/.local/state/ornwhatsnew/state.json", StateLocation(std::nullopt));
  }
}

TEST(StateStoreLocation, WithoutAnyFolderTheErrorNamesTheVariables) {
  for (const char* unusable : {static_cast<const char*>(nullptr), "", "relative/folder", "."}) {
    const EnvironmentVariable home("HOME", unusable);
    const EnvironmentVariable state("XDG_STATE_HOME", nullptr);
    EXPECT_THAT([] { StateLocation(std::nullopt); },
                testing::ThrowsMessage<StateStoreError>(
                    "cannot find a folder for the state store: neither XDG_STATE_HOME nor HOME "
                    "contains an absolute path; set one of them, or name a file with --state"));
  }
}

}  // namespace
}  // namespace hosts::common
