#include "hosts/author/lint/GitFile.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "hosts/common/FileDescriptor.h"

namespace hosts::author {
namespace {

using common::FileDescriptor;

[[noreturn]] void Fail(const std::string& problem, int error) {
  throw std::runtime_error(problem + ": " + std::generic_category().message(error));
}

/// The file actions of posix_spawn(3) for a program that writes to a pipe.
class SpawnActions {
 public:
  explicit SpawnActions(int output) {
    ::posix_spawn_file_actions_init(&actions_);
    ::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
    ::posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  }
  ~SpawnActions() { ::posix_spawn_file_actions_destroy(&actions_); }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;

  const posix_spawn_file_actions_t* Get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

/// Returns the environment for git. Omits GIT_DIR unless GIT_WORK_TREE is set. git sets GIT_DIR for
/// a hook in a linked worktree. With GIT_DIR alone, git would use the folder of the data file as
/// the top folder of the worktree.
std::vector<char*> GitEnvironment() {
  const bool hasWorkTree = std::getenv("GIT_WORK_TREE") != nullptr;
  std::vector<char*> variables;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const bool isFolder = std::string_view(*variable).starts_with("GIT_DIR=");
    if (!isFolder || hasWorkTree) variables.push_back(*variable);
  }
  variables.push_back(nullptr);
  return variables;
}

/// Starts git, which writes the content of `object` to the file descriptor `output`. Returns the
/// process ID.
pid_t StartGit(const std::string& folder, const std::string& object, int output) {
  std::array<std::string, 6> words = {"git", "-C", folder, "cat-file", "blob", object};
  std::array<char*, 7> arguments{};
  for (std::size_t i = 0; i < words.size(); ++i) arguments[i] = words[i].data();
  const std::vector<char*> environment = GitEnvironment();
  const SpawnActions actions(output);
  pid_t process = 0;
  const int error =
      ::posix_spawnp(&process, "git", actions.Get(), nullptr, arguments.data(), environment.data());
  if (error != 0) Fail("cannot run git", error);
  return process;
}

/// Waits for the process, and returns whether it succeeded.
bool HasSucceeded(pid_t process) {
  int status = 0;
  while (::waitpid(process, &status, 0) < 0) {
    if (errno != EINTR) return false;
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// Reads up to the end of the input, and returns the bytes. Stops early after more than `maxBytes`
/// bytes.
std::string ReadAll(int input, std::size_t maxBytes) {
  std::string text;
  std::string block(std::size_t{1} << 16, '\0');
  while (text.size() <= maxBytes) {
    const ssize_t count = ::read(input, block.data(), block.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    text.append(block, 0, static_cast<std::size_t>(count));
  }
  return text;
}

}  // namespace

std::string ReadGitFile(const std::string& revision, const std::filesystem::path& file,
                        std::size_t maxBytes) {
  // git would read a revision that begins with '-' as an option.
  if (revision.empty() || revision.starts_with('-')) {
    throw std::runtime_error("'" + revision + "' is not a git revision");
  }
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) Fail("cannot run git", errno);
  FileDescriptor output(ends[0]);
  FileDescriptor input(ends[1]);
  const std::string folder =
      file.has_parent_path() ? file.parent_path().native() : std::string(".");
  const pid_t process =
      StartGit(folder, revision + ":./" + file.filename().native(), input.Number());
  input = FileDescriptor(-1);
  std::string text = ReadAll(output.Number(), maxBytes);
  output = FileDescriptor(-1);
  const bool hasSucceeded = HasSucceeded(process);
  if (text.size() > maxBytes) throw std::runtime_error("the file in git is too large");
  if (!hasSucceeded) {
    throw std::runtime_error("git has no '" + file.native() + "' in the revision '" + revision +
                             "'; in a shallow clone, fetch the revision first, for example with "
                             "'git fetch --unshallow'");
  }
  return text;
}

}  // namespace hosts::author
