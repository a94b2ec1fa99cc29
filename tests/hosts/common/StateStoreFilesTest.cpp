// Tests state stores whose paths contain symbolic links, and a store with a second hard link. Tests
// stores next to other files, such as FIFOs, links or folders, that have the name of the lock file
// or the temporary file. Tests stores with invalid members, and temporary files that a power
// failure or a killed program has left. Further tests check the modes and owners of the files and
// folders.
#include <array>
#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>
#include <tuple>

#include <gmock/gmock.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

#include "hosts/common/StateStore.h"
#include "hosts/common/TextFile.h"
#include "tests/hosts/common/StoreErrorOf.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace hosts::common {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;

constexpr std::string_view kVictim = "the content of a file that must not change";

void WriteValue(const fs::path& file, std::string_view value) {
  StateStore store(file, std::chrono::milliseconds(50));
  store.Set("A.Key", value);
  store.Commit();
}

std::string StoredValue(const fs::path& file) {
  return StateStore(file).Get("A.Key");
}

unsigned ModeOf(const fs::path& file) {
  struct stat status {};
  EXPECT_EQ(0, ::lstat(file.c_str(), &status)) << file;
  return status.st_mode & 07777U;
}

class StateStoreFilesTest : public testing::Test {
 protected:
  fs::path File() const { return folder_.Path() / "state.json"; }

  test_support::TemporaryFolder folder_;
};

using StateStoreLinks = StateStoreFilesTest;

TEST_F(StateStoreLinks, ALinkToTheStoreRemainsALink) {
  fs::create_directory(folder_.Path() / "real");
  fs::create_symlink("real/store.json", File());
  fs::create_symlink(File(), folder_.Path() / "link");
  for (const char* value : {"first", "second"}) {
    WriteValue(folder_.Path() / "link", value);
    EXPECT_TRUE(fs::is_symlink(folder_.Path() / "link"));
    EXPECT_TRUE(fs::is_symlink(File()));
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(folder_.Path() / "real" / "store.json")));
    EXPECT_EQ(value, StoredValue(File()));
  }
  EXPECT_TRUE(fs::exists(folder_.Path() / "real" / "store.json.lock"));
  EXPECT_FALSE(fs::exists(folder_.Path() / "state.json.lock"));
}

TEST_F(StateStoreLinks, AFolderOfThePathMayBeALink) {
  fs::create_directory(folder_.Path() / "real");
  fs::create_directory_symlink("real", folder_.Path() / "link");
  WriteValue(folder_.Path() / "link" / "new" / "state.json", "text");
  EXPECT_EQ("text", StoredValue(folder_.Path() / "real" / "new" / "state.json"));
  WriteValue(folder_.Path() / "link" / ".." / "link" / "." / "up.json", "text");
  EXPECT_EQ("text", StoredValue(folder_.Path() / "real" / "up.json"));
}

TEST_F(StateStoreLinks, RejectsALoop) {
  fs::create_symlink("loop", folder_.Path() / "loop");
  for (const char* name : {"loop", "loop/state.json"}) {
    EXPECT_THAT(StoreErrorOf([&] { WriteValue(folder_.Path() / name, "text"); }),
                HasSubstr("Too many levels of symbolic links"));
  }
}

TEST_F(StateStoreLinks, RejectsAFolderThatIsADanglingLink) {
  fs::create_symlink("nowhere", folder_.Path() / "link");
  EXPECT_THAT(StoreErrorOf([&] { WriteValue(folder_.Path() / "link" / "state.json", "text"); }),
              HasSubstr("cannot open the folder"));
  EXPECT_FALSE(fs::exists(folder_.Path() / "nowhere"));
}

TEST_F(StateStoreLinks, RejectsThePathOfAFolderThatDoesNotExist) {
  for (const char* name : {"new/", "new/.", "new/.."}) {
    EXPECT_THAT(StoreErrorOf([&] { WriteValue(folder_.Path() / name, "text"); }),
                HasSubstr("Is a directory"))
        << name;
  }
  EXPECT_TRUE(fs::is_empty(folder_.Path()));
}

TEST_F(StateStoreLinks, ALinkToAnEmptyFileDoesNotOverwriteIt) {
  fs::create_symlink(folder_.Write("notes", ""), File());
  EXPECT_THAT(StoreErrorOf([&] { WriteValue(File(), "text"); }), HasSubstr("the file is empty"));
  EXPECT_EQ("", ReadTextFile(folder_.Path() / "notes"));
}

TEST_F(StateStoreLinks, RejectsAParentOfAMissingFolder) {
  // The system cannot open a path in which ".." follows a missing folder, so no program could read
  // a store at this path.
  const std::string file = folder_.Path() / "missing" / ".." / "state.json";
  EXPECT_EQ("cannot write the state store '" + file + "': cannot open '" + file +
                "': No such file or directory; check the path and try again, or name a file "
                "elsewhere with "
                "--state",
            StoreErrorOf([&] { WriteValue(file, "text"); }));
  EXPECT_TRUE(fs::is_empty(folder_.Path()));
}

TEST_F(StateStoreLinks, AHardLinkToTheStoreKeepsTheOldContent) {
  WriteValue(File(), "old");
  fs::create_hard_link(File(), folder_.Path() / "backup.json");
  WriteValue(File(), "new");
  EXPECT_EQ("new", StoredValue(File()));
  EXPECT_EQ("old", StoredValue(folder_.Path() / "backup.json"));
}

/// Creates a file of one kind at `path`. The file can be a link to the regular file `victim`, or a
/// copy of `victim`.
using MakeFile = void (*)(const fs::path& path, const fs::path& victim);

struct FileKind {
  const char* name;
  bool canBeLocked;
  MakeFile make;
};

void MakePipe(const fs::path& path, const fs::path&) {
  ASSERT_EQ(0, ::mkfifo(path.c_str(), 0600));
}

void MakeSocket(const fs::path& path, const fs::path&) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.native().copy(address.sun_path, sizeof address.sun_path - 1);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(0, ::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address));
  ::close(socket);
}

void MakeDevice(const fs::path& path, const fs::path& victim) {
  // Create a device with the device number of /dev/full. Usually only root can do this, so create a
  // FIFO if `mknod` fails.
  if (::mknod(path.c_str(), S_IFCHR | 0600, makedev(1, 7)) != 0) MakePipe(path, victim);
}

constexpr std::array<FileKind, 9> kFileKinds = {{
    {"Pipe", true, MakePipe},
    {"Socket", false, MakeSocket},
    {"Device", true, MakeDevice},
    {"Folder", false,
     [](const fs::path& path, const fs::path&) { fs::create_directories(path / "x"); }},
    {"Loop", false, [](const fs::path& path, const fs::path&) { fs::create_symlink(path, path); }},
    {"LinkToNowhere", false,
     [](const fs::path& path, const fs::path&) { fs::create_symlink("nowhere", path); }},
    {"LinkToTheVictim", false,
     [](const fs::path& path, const fs::path& victim) { fs::create_symlink(victim, path); }},
    {"HardLinkToTheVictim", true,
     [](const fs::path& path, const fs::path& victim) { fs::create_hard_link(victim, path); }},
    {"ForgedFile", true,
     [](const fs::path& path, const fs::path& victim) { fs::copy(victim, path); }},
}};

/// The parameters are the kind of a file and a suffix. The name of the file is the name of the
/// store followed by the suffix.
using NeighbourCase = std::tuple<FileKind, std::string>;

class StateStoreNeighbour : public testing::TestWithParam<NeighbourCase> {
 protected:
  StateStoreNeighbour() {
    const auto& [kind, suffix] = GetParam();
    kind.make(File().native() + suffix, folder_.Write("victim", kVictim));
  }

  fs::path File() const { return folder_.Path() / "state.json"; }

  /// Writes, reads and resets the store. Returns the error message, or an empty string if all of
  /// this succeeds.
  std::string UseStore() const {
    return StoreErrorOf([this] {
      WriteValue(File(), "one");
      EXPECT_EQ("one", StoredValue(File()));
      WriteValue(File(), "two");
      EXPECT_EQ("two", StoredValue(File()));
      StateStore(File(), std::chrono::milliseconds(50)).Reset();
      EXPECT_EQ("", StoredValue(File()));
    });
  }

  test_support::TemporaryFolder folder_;
};

TEST_P(StateStoreNeighbour, EveryOperationEndsAndChangesNoOtherFile) {
  const auto& [kind, suffix] = GetParam();
  const fs::path neighbour = File().native() + suffix;
  const fs::file_type type = fs::symlink_status(neighbour).type();
  // A write deletes any file that has the name of the temporary file, except a folder.
  const bool isDeleted = suffix == ".tmp" && type != fs::file_type::directory;
  const std::string error = UseStore();
  if (isDeleted || (suffix == ".lock" && kind.canBeLocked)) {
    EXPECT_EQ("", error);
  } else {
    EXPECT_THAT(error, AllOf(HasSubstr("'" + neighbour.native() + "'"), HasSubstr("--state")));
  }
  EXPECT_EQ(isDeleted ? fs::file_type::not_found : type, fs::symlink_status(neighbour).type());
  EXPECT_EQ(kVictim, ReadTextFile(folder_.Path() / "victim"));
  EXPECT_FALSE(fs::exists(folder_.Path() / "nowhere"));
}

std::string NameOfNeighbour(const testing::TestParamInfo<NeighbourCase>& info) {
  const auto& [kind, suffix] = info.param;
  return std::string(kind.name) + (suffix == ".tmp" ? "AsTemporaryFile" : "AsLockFile");
}

INSTANTIATE_TEST_SUITE_P(Files, StateStoreNeighbour,
                         testing::Combine(testing::ValuesIn(kFileKinds),
                                          testing::Values(".lock", ".tmp")),
                         NameOfNeighbour);

using StateStoreForgery = StateStoreFilesTest;

TEST_F(StateStoreForgery, FilesOfADatabaseEngineAreNeitherReadNorChanged) {
  const std::string forged(5000, '\xD9');
  for (const char* suffix : {"-journal", "-wal", "-shm"}) {
    folder_.Write("state.json" + std::string(suffix), forged);
    ASSERT_EQ(0, ::mkfifo((folder_.Path() / ("pipe.json" + std::string(suffix))).c_str(), 0600));
  }
  for (const char* name : {"state.json", "pipe.json"}) {
    WriteValue(folder_.Path() / name, "old");
    WriteValue(folder_.Path() / name, "new");
    EXPECT_EQ("new", StoredValue(folder_.Path() / name));
    StateStore(folder_.Path() / name).Reset();
  }
  for (const char* suffix : {"-journal", "-wal", "-shm"}) {
    EXPECT_EQ(forged, ReadTextFile(File().native() + suffix));
    EXPECT_TRUE(fs::is_fifo(folder_.Path() / ("pipe.json" + std::string(suffix))));
  }
}

TEST_F(StateStoreForgery, AForgedStoreIsRejectedAndKept) {
  const std::string members = R"("format": "ornwhatsnew state", "formatVersion": 1)";
  for (const std::string& text :
       {"{" + members + "}", "{" + members + R"(, "values": []})",
        "{" + members + R"(, "values": {"k": 1}})", "{" + members + R"(, "values": {"k": null}})",
        "{" + members + R"(, "values": {}, "trigger": "x"})",
        "{" + members + R"(, "values": {"k": "a", "k": "b"}})",
        "{" + members + ", \"values\": {\"k\": \"\xFF\"}}",
        std::string(R"({"format": "ornwhatsnew state", "formatVersion": 0, "values": {}})"),
        std::string(R"({"format": "ornwhatsnew state", "formatVersion": "1", "values": {}})"),
        std::string(R"({"format": "ornwhatsnew state", "values": {}})"),
        std::string(1'000'000, '[')}) {
    folder_.Write("state.json", text);
    EXPECT_THAT(StoreErrorOf([this] { StateStore store(File()); }),
                HasSubstr("; move the file, or name another one with --state"))
        << text.substr(0, 200);
    EXPECT_EQ(text, ReadTextFile(File()));
  }
}

using StateStorePowerFailure = StateStoreFilesTest;

TEST_F(StateStorePowerFailure, CommitsIfAnEarlierCommitLeftATemporaryFile) {
  for (const std::string& left :
       {std::string(), std::string("{\n  \"format\": \"ornw"), std::string(5000, '\0')}) {
    fs::remove(File());
    fs::permissions(folder_.Write("state.json.tmp", left), fs::perms{0400});
    EXPECT_EQ("", StoredValue(File()));
    WriteValue(File(), "text");
    EXPECT_EQ("text", StoredValue(File()));
    EXPECT_FALSE(fs::exists(folder_.Path() / "state.json.tmp"));
  }
}

TEST_F(StateStorePowerFailure, KeepsTheOldStateIfACommitLeftATemporaryFile) {
  WriteValue(File(), "old");
  folder_.Write("state.json.tmp", ReadTextFile(File()).substr(0, 50));
  EXPECT_EQ("old", StoredValue(File()));
  WriteValue(File(), "new");
  EXPECT_EQ("new", StoredValue(File()));
  EXPECT_FALSE(fs::exists(folder_.Path() / "state.json.tmp"));
}

/// The parameter is the umask of the process.
class StateStoreMode : public testing::TestWithParam<mode_t> {
 protected:
  fs::path NewFile() const { return folder_.Path() / "a" / "b" / "c" / "state.json"; }

  test_support::TemporaryFolder folder_;
};

TEST_P(StateStoreMode, NewFilesAndFoldersArePrivate) {
  EXPECT_TRUE(test_support::InChildProcess([this] {
    ::umask(GetParam());
    WriteValue(NewFile(), "text");
    EXPECT_EQ(GetParam(), ::umask(0)) << "the umask has changed";
    return !HasFailure();
  }));
  EXPECT_EQ(0600U, ModeOf(NewFile()));
  EXPECT_EQ(0600U, ModeOf(NewFile().native() + ".lock"));
  for (fs::path folder = NewFile().parent_path(); folder != folder_.Path();
       folder = folder.parent_path()) {
    EXPECT_EQ(0700U, ModeOf(folder)) << folder;
  }
}

TEST_P(StateStoreMode, ExistingFilesAndFoldersKeepTheirModes) {
  WriteValue(NewFile(), "old");
  fs::permissions(NewFile(), fs::perms{0640});
  fs::permissions(NewFile().parent_path(), fs::perms{0755});
  EXPECT_TRUE(test_support::InChildProcess([this] {
    ::umask(GetParam());
    WriteValue(NewFile(), "new");
    return true;
  }));
  EXPECT_EQ("new", StoredValue(NewFile()));
  EXPECT_EQ(0640U, ModeOf(NewFile()));
  EXPECT_EQ(0755U, ModeOf(NewFile().parent_path()));
}

INSTANTIATE_TEST_SUITE_P(Umasks, StateStoreMode, testing::Values(0, 022, 077, 0277, 0777));

TEST_F(StateStoreFilesTest, RootKeepsTheOwnerOfTheStore) {
  if (::getuid() != 0) GTEST_SKIP() << "only root can change the owner of a file";
  WriteValue(File(), "old");
  ASSERT_EQ(0, ::chown(File().c_str(), 12345, 54321));
  WriteValue(File(), "new");
  struct stat status {};
  ASSERT_EQ(0, ::stat(File().c_str(), &status));
  EXPECT_EQ(12345U, status.st_uid);
  EXPECT_EQ(54321U, status.st_gid);
}

/// Drops the privileges of root, and makes `group` the only supplementary group of the process.
/// Returns false if a system call fails.
bool BecomeMemberOf(gid_t group) {
  constexpr uid_t kNobody = 65534;
  return ::setgroups(1, &group) == 0 && ::setgid(kNobody) == 0 && ::setuid(kNobody) == 0;
}

TEST_F(StateStoreFilesTest, AMemberKeepsTheGroupOfTheStoreButNotItsOwner) {
  if (::getuid() != 0) GTEST_SKIP() << "only root can change the owner of a file";
  constexpr gid_t kGroup = 54321;
  constexpr gid_t kOtherGroup = 54322;
  fs::permissions(folder_.Path(), fs::perms{0777});
  const struct {
    gid_t group;
    unsigned mode;
    gid_t newGroup;
    unsigned newMode;
  } cases[] = {{kGroup, 0660, kGroup, 0660}, {kOtherGroup, 0666, 65534, 0606}};
  for (const auto& [group, mode, newGroup, newMode] : cases) {
    WriteValue(File(), "old");
    fs::permissions(File().native() + ".lock", fs::perms{0666});
    ASSERT_EQ(0, ::chown(File().c_str(), 12345, group));
    fs::permissions(File(), fs::perms{mode});
    EXPECT_TRUE(test_support::InChildProcess([this] {
      if (!BecomeMemberOf(kGroup)) return false;
      WriteValue(File(), "new");
      return true;
    }));
    struct stat status {};
    ASSERT_EQ(0, ::stat(File().c_str(), &status));
    EXPECT_EQ(65534U, status.st_uid);
    EXPECT_EQ(newGroup, status.st_gid);
    EXPECT_EQ(newMode, ModeOf(File()));
  }
}

}  // namespace
}  // namespace hosts::common
