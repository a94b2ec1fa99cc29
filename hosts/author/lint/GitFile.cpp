#include "hosts/author/lint/GitFile.h"

#include <algorithm>
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
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "hosts/common/FileDescriptor.h"

namespace hosts::author {
namespace {

using common::FileDescriptor;

/// The number of bytes of git's standard error after which reading stops. The same limit applies to
/// git's output in `IsShallowClone`.
constexpr std::size_t kMaximumErrorBytes = 4096;

[[noreturn]] void FailGit(const std::string& problem, int error) {
  throw std::runtime_error(problem + ": " + std::generic_category().message(error));
}

/// File actions for posix_spawn(3). They connect standard input to /dev/null, standard output to
/// the file descriptor `output`, and standard error to the file descriptor `errors`.
class SpawnActions {
 public:
  SpawnActions(int output, int errors) {
    ::posix_spawn_file_actions_init(&actions_);
    ::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions_, errors, STDERR_FILENO);
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
/// the top folder of the worktree. Sets LC_ALL to C, so that git's errors are in English, as all
/// other messages are.
std::vector<char*> GitEnvironment() {
  static char locale[] = "LC_ALL=C";
  const bool hasWorkTree = std::getenv("GIT_WORK_TREE") != nullptr;
  std::vector<char*> variables;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string_view text = *variable;
    const bool isOmitted =
        text.starts_with("LC_ALL=") || (text.starts_with("GIT_DIR=") && !hasWorkTree);
    if (!isOmitted) variables.push_back(*variable);
  }
  variables.push_back(locale);
  variables.push_back(nullptr);
  return variables;
}

/// Starts git with `arguments`, and returns the process ID. git writes to the file descriptors
/// `output` and `errors`. Throws `std::runtime_error` if git cannot be run.
pid_t StartGit(std::vector<std::string> arguments, int output, int errors) {
  arguments.insert(arguments.begin(), "git");
  std::vector<char*> words(arguments.size() + 1);  // ends with a null pointer
  std::ranges::transform(arguments, words.begin(), [](std::string& word) { return word.data(); });
  const std::vector<char*> environment = GitEnvironment();
  const SpawnActions actions(output, errors);
  pid_t process = 0;
  const int error =
      ::posix_spawnp(&process, "git", actions.Get(), nullptr, words.data(), environment.data());
  if (error != 0) FailGit("cannot run git", error);
  return process;
}

/// Waits for `process` to exit. Returns whether its exit status is 0.
bool HasSucceeded(pid_t process) {
  int status = 0;
  const pid_t ended = common::RetryInterrupted([&] { return ::waitpid(process, &status, 0); });
  return ended == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// The result of running git.
struct GitResult {
  bool hasSucceeded = false;
  std::string output;
  std::string error;  ///< the first line that git wrote to standard error
};

/// Runs git with `arguments` and returns the result. If the output has more than `maxBytes` bytes,
/// stops reading it. The `output` of the result then has more than `maxBytes` bytes.
GitResult RunGit(const std::vector<std::string>& arguments, std::size_t maxBytes) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) FailGit("cannot run git", errno);
  FileDescriptor output(ends[0]);
  FileDescriptor input(ends[1]);
  // Store git's errors in memory. With a second pipe, git could wait for this function to read the
  // errors while the function waits for git's output.
  const FileDescriptor errors(::memfd_create("errors of git", MFD_CLOEXEC));
  if (errors.Number() < 0) FailGit("cannot run git", errno);
  const pid_t process = StartGit(arguments, input.Number(), errors.Number());
  input = FileDescriptor(-1);
  GitResult result;
  result.output = common::ReadToEnd(output.Number(), maxBytes, "the output of git");
  output = FileDescriptor(-1);
  result.hasSucceeded = HasSucceeded(process);
  ::lseek(errors.Number(), 0, SEEK_SET);
  const std::string text =
      common::ReadToEnd(errors.Number(), kMaximumErrorBytes, "the errors of git");
  result.error = text.substr(0, text.find('\n'));
  return result;
}

bool IsShallowClone(const std::string& folder) {
  const GitResult result =
      RunGit({"-C", folder, "rev-parse", "--is-shallow-repository"}, kMaximumErrorBytes);
  return result.hasSucceeded && result.output == "true\n";
}

}  // namespace

std::string ReadGitFile(const std::string& revision, const std::filesystem::path& file,
                        std::size_t maxBytes) {
  // git would interpret a revision that begins with '-' as an option. If the revision were empty,
  // git would read the file from the index.
  if (revision.empty() || revision.starts_with('-')) {
    throw std::runtime_error("'" + revision + "' is not a git revision");
  }
  // If the folder is empty, git stays in the current folder.
  const std::string folder = file.parent_path().native();
  const std::string object = revision + ":./" + file.filename().native();
  GitResult result = RunGit({"-C", folder, "cat-file", "blob", object}, maxBytes);
  std::string problem = "cannot read '" + file.native() + "' in the revision '" + revision + "': ";
  if (result.output.size() > maxBytes) {
    throw std::runtime_error(problem + "larger than " + std::to_string(maxBytes >> 20) +
                             " MiB; name a revision in which the file is smaller");
  }
  if (result.hasSucceeded) return std::move(result.output);
  problem += "git: " + (result.error.empty() ? "unknown error" : result.error);
  if (IsShallowClone(folder)) {
    problem +=
        "; this is a shallow clone, so fetch the revision if it is missing, for example with "
        "'git fetch --unshallow'";
  }
  throw std::runtime_error(problem);
}

}  // namespace hosts::author
