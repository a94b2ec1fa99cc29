// Tests writes to the state store while another program replaces the files of the store between two
// system calls. A write must fail or use the files that it has opened. It must not report success
// if its values are not stored.
#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/common/FileReplacement.h"
#include "hosts/common/PrivateFolder.h"
#include "hosts/common/StateStore.h"
#include "hosts/common/TextFile.h"
#include "tests/hosts/common/FailingDisk.h"
#include "tests/hosts/common/StoreErrorOf.h"
#include "tests/support/TemporaryFolder.h"

namespace hosts::common {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr std::string_view kOwnKey = "A.Key";
constexpr std::string_view kForeignKey = "B.Key";

/// System calls of a write. The write opens the lock file after it has resolved all links, and
/// creates the temporary file after it has read the store.
constexpr char kLock[] = "openat state.json.lock";
constexpr char kCreate[] = "openat state.json.tmp";
constexpr char kRename[] = "renameat state.json";

void WriteValue(const fs::path& file, std::string_view key, std::string_view value) {
  StateStore store(file, std::chrono::milliseconds(50));
  store.Set(key, value);
  store.Commit();
}

class StateStoreRaceTest : public testing::Test {
 protected:
  fs::path Folder() const { return folder_.Path() / "shared"; }
  fs::path File() const { return Folder() / "state.json"; }
  fs::path Victim() const { return folder_.Path() / "victim" / "state.json"; }

  /// Writes "new" to the store, and runs `action` before the system call `call`. Returns the error
  /// message, or an empty string if the write succeeds.
  std::string ErrorOfWrite(const char* call, const std::function<void()>& action) const {
    FailingDisk disk;
    disk.RunBefore(call, action);
    return StoreErrorOf([this] { WriteValue(File(), kOwnKey, "new"); });
  }

  void ReplaceStoreByLink() const {
    fs::remove(File());
    fs::create_symlink(Victim(), File());
  }

  test_support::TemporaryFolder folder_;
};

TEST_F(StateStoreRaceTest, DoesNotMergeAStoreThatALinkReplacesBeforeTheRead) {
  WriteValue(File(), kOwnKey, "old");
  WriteValue(Victim(), kForeignKey, "secret");
  EXPECT_THAT(ErrorOfWrite(kLock, [this] { ReplaceStoreByLink(); }),
              HasSubstr("it is not a regular file"));
  EXPECT_TRUE(fs::is_symlink(File()));
}

TEST_F(StateStoreRaceTest, ReadsAndWritesInTheFolderThatItHasOpened) {
  WriteValue(File(), kForeignKey, "old");
  WriteValue(Victim(), kForeignKey, "secret");
  const std::string victim = ReadTextFile(Victim());
  const fs::path moved = folder_.Path() / "moved";
  const auto replaceFolder = [&] {
    fs::rename(Folder(), moved);
    fs::create_directory_symlink(Victim().parent_path(), Folder());
  };
  EXPECT_EQ("", ErrorOfWrite(kLock, replaceFolder));
  EXPECT_EQ("old", StateStore(moved / "state.json").Get(kForeignKey));
  EXPECT_EQ("new", StateStore(moved / "state.json").Get(kOwnKey));
  EXPECT_EQ(victim, ReadTextFile(Victim()));
}

TEST_F(StateStoreRaceTest, DoesNotTakeTheModeOfALinkThatReplacesTheStoreAfterTheRead) {
  WriteValue(File(), kOwnKey, "old");
  WriteValue(Victim(), kOwnKey, "victim");
  EXPECT_THAT(ErrorOfWrite(kCreate, [this] { ReplaceStoreByLink(); }),
              HasSubstr("another program has deleted or replaced the file; try again"));
  EXPECT_TRUE(fs::is_symlink(File()));
  EXPECT_EQ("victim", StateStore(Victim()).Get(kOwnKey));
}

TEST_F(StateStoreRaceTest, DoesNotReplaceAFileThatAppearsOrChangesAfterTheRead) {
  for (const char* content : {"first", "second"}) {
    const auto replace = [&] {
      fs::remove(File());
      folder_.Write("shared/state.json", content);
    };
    EXPECT_THAT(ErrorOfWrite(kCreate, replace), HasSubstr("deleted or replaced the file"));
    EXPECT_EQ(content, ReadTextFile(File()));
    fs::remove(File());
    WriteValue(File(), kOwnKey, "old");
  }
}

TEST_F(StateStoreRaceTest, FailsIfItsTemporaryFileIsReplacedBeforeTheRename) {
  WriteValue(File(), kOwnKey, "old");
  const auto replace = [this] {
    fs::rename(folder_.Write("forged", "{}"), File().native() + ".tmp");
  };
  EXPECT_THAT(ErrorOfWrite(kRename, replace), HasSubstr("deleted or replaced the file"));
}

TEST_F(StateStoreRaceTest, FailsIfItsLockFileIsDeletedBeforeTheRename) {
  WriteValue(File(), kOwnKey, "old");
  EXPECT_THAT(ErrorOfWrite(kRename, [this] { fs::remove(File().native() + ".lock"); }),
              HasSubstr("deleted or replaced its lock file"));
}

TEST_F(StateStoreRaceTest, FailsIfAnotherProgramWritesBecauseTheLockFileIsDeleted) {
  WriteValue(File(), kOwnKey, "old");
  const auto writeWithoutLock = [this] {
    fs::remove(File().native() + ".lock");
    WriteValue(File(), kForeignKey, "other");
  };
  EXPECT_THAT(ErrorOfWrite(kRename, writeWithoutLock), HasSubstr("cannot replace"));
  EXPECT_EQ("other", StateStore(File()).Get(kForeignKey));
  EXPECT_EQ("old", StateStore(File()).Get(kOwnKey));
}

TEST_F(StateStoreRaceTest, DeletesOnlyItsOwnTemporaryFile) {
  const PrivateFolder folder(Folder());
  const fs::path temporary = File().native() + ".tmp";
  { const FileReplacement replacement(folder, "state.json"); }
  EXPECT_FALSE(fs::exists(temporary));
  {
    const FileReplacement replacement(folder, "state.json");
    fs::rename(folder_.Write("other", "text"), temporary);
  }
  EXPECT_EQ("text", ReadTextFile(temporary));
}

}  // namespace
}  // namespace hosts::common
