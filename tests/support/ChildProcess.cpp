#include "tests/support/ChildProcess.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <iostream>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace test_support {
namespace {

constexpr int kCannotStart = 127;

[[noreturn]] void ThrowSystemError(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

void CloseAndForget(int& descriptor) {
  if (descriptor >= 0) ::close(descriptor);
  descriptor = -1;
}

void WriteWhole(int descriptor, const std::string& text) {
  if (::write(descriptor, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
    ThrowSystemError("write");
  }
}

/// The descriptors of the two ends of a stream. The test uses `ours`, and the program uses
/// `theirs`.
struct Stream {
  int ours = -1;
  int theirs = -1;
};

Stream OutputPipe() {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) ThrowSystemError("pipe");
  return {ends[0], ends[1]};
}

Stream InputPipe(const std::string& input) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) ThrowSystemError("pipe");
  WriteWhole(ends[1], input);
  CloseAndForget(ends[1]);
  return {-1, ends[0]};
}

Stream Terminal(unsigned short columns, const std::string& typed) {
  Stream stream;
  termios settings{};
  ::cfmakeraw(&settings);
  // Ctrl+D ends the input only in canonical mode. The echo stays off, because the output of the
  // program must not contain the typed input.
  settings.c_lflag |= ICANON;
  settings.c_cc[VEOF] = '\x04';
  winsize size{};
  size.ws_row = 24;
  size.ws_col = columns;
  if (::openpty(&stream.ours, &stream.theirs, nullptr, &settings, &size) != 0) {
    ThrowSystemError("openpty");
  }
  ::fcntl(stream.ours, F_SETFD, FD_CLOEXEC);
  ::fcntl(stream.theirs, F_SETFD, FD_CLOEXEC);
  WriteWhole(stream.ours, typed);
  return stream;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers(texts.size() + 1, nullptr);
  for (std::size_t i = 0; i < texts.size(); ++i) pointers[i] = texts[i].data();
  return pointers;
}

/// The arguments of `execve`. They are created before the fork, because the child must not
/// allocate. Another thread may hold the allocator's lock during the fork. That thread does not
/// exist in the child, so an allocation there could wait forever.
class Invocation {
 public:
  Invocation(const std::string& program, const ProgramCall& call) : arguments_({program}) {
    arguments_.insert(arguments_.end(), call.arguments.begin(), call.arguments.end());
    for (const auto& [name, value] : call.environment) environment_.push_back(name + "=" + value);
    argumentPointers_ = Pointers(arguments_);
    environmentPointers_ = Pointers(environment_);
  }
  Invocation(const Invocation&) = delete;
  Invocation& operator=(const Invocation&) = delete;

  void Execute() const {
    ::execve(argumentPointers_.front(), argumentPointers_.data(), environmentPointers_.data());
  }

 private:
  std::vector<std::string> arguments_;
  std::vector<std::string> environment_;
  std::vector<char*> argumentPointers_;
  std::vector<char*> environmentPointers_;
};

/// Connects the standard streams of the child process to the three descriptors, calls
/// `call.beforeStart`, and executes the program. Exits with the status `kCannotStart` if the
/// program cannot be executed. Must not allocate memory.
[[noreturn]] void BecomeProgram(const Invocation& invocation, const ProgramCall& call, int input,
                                int output, int errors) {
  ::dup2(input, STDIN_FILENO);
  ::dup2(output, STDOUT_FILENO);
  ::dup2(errors, STDERR_FILENO);
  if (call.beforeStart) call.beforeStart();
  invocation.Execute();
  ::_exit(kCannotStart);
}

/// Appends the available bytes of a stream to `text`. Returns false at the end of the stream or if
/// the read fails.
bool ReadSome(int descriptor, std::string& text) {
  std::array<char, 65536> buffer{};
  const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
  if (count < 0 && errno == EINTR) return true;
  // After the program has closed its end, a read from a terminal fails with EIO instead of
  // returning 0.
  if (count <= 0) return false;
  text.append(buffer.data(), static_cast<std::size_t>(count));
  return true;
}

int WaitFor(pid_t process) {
  int status = 0;
  while (::waitpid(process, &status, 0) < 0) {
    if (errno != EINTR) ThrowSystemError("waitpid");
  }
  return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

ChildProcess::ChildProcess(const std::string& program, const ProgramCall& call) {
  Stream output = call.isOnTerminal ? Terminal(call.columns, call.typed) : OutputPipe();
  Stream errors = OutputPipe();
  const bool readsTerminal = call.isOnTerminal && call.input.empty();
  Stream input = readsTerminal ? Stream{-1, ::dup(output.theirs)} : InputPipe(call.input);
  const Invocation invocation(program, call);
  process_ = ::fork();
  if (process_ < 0) ThrowSystemError("fork");
  if (process_ == 0) BecomeProgram(invocation, call, input.theirs, output.theirs, errors.theirs);
  CloseAndForget(input.theirs);
  CloseAndForget(output.theirs);
  CloseAndForget(errors.theirs);
  output_ = output.ours;
  errors_ = errors.ours;
}

ChildProcess::~ChildProcess() {
  Kill();
  if (process_ > 0) WaitFor(process_);
  CloseAndForget(output_);
  CloseAndForget(errors_);
}

void ChildProcess::Kill() {
  Send(SIGKILL);
}

void ChildProcess::Interrupt() {
  Send(SIGINT);
}

std::string ChildProcess::ReadOutput() {
  std::string output;
  while (output.empty() && ReadSome(output_, output)) continue;
  return output;
}

void ChildProcess::CloseOutput() {
  CloseAndForget(output_);
}

ProgramResult ChildProcess::Wait() {
  ProgramResult result;
  ReadStreams(result);
  result.exitStatus = WaitFor(std::exchange(process_, -1));
  return result;
}

// After `Wait`, `process_` is -1, and `kill` would send the signal to all processes of the user.
void ChildProcess::Send(int signal) {
  if (process_ > 0) ::kill(process_, signal);
}

void ChildProcess::ReadStreams(ProgramResult& result) {
  // `poll` ignores the descriptor of a closed stream, which is -1.
  while (output_ >= 0 || errors_ >= 0) {
    std::array<pollfd, 2> polled = {pollfd{output_, POLLIN, 0}, pollfd{errors_, POLLIN, 0}};
    if (::poll(polled.data(), polled.size(), -1) < 0 && errno != EINTR) ThrowSystemError("poll");
    if (polled[0].revents != 0 && !ReadSome(output_, result.output)) CloseAndForget(output_);
    if (polled[1].revents != 0 && !ReadSome(errors_, result.errors)) CloseAndForget(errors_);
  }
}

ProgramResult RunProgram(const std::string& program, const ProgramCall& call) {
  return ChildProcess(program, call).Wait();
}

int KillsWanted(int otherwise) {
  const char* const kills = std::getenv("ORNWHATSNEW_TEST_KILLS");
  return kills == nullptr ? otherwise : std::atoi(kills);
}

bool InChildProcess(const std::function<bool()>& work) {
  const pid_t process = ::fork();
  if (process < 0) ThrowSystemError("fork");
  if (process == 0) {
    bool result = false;
    try {
      result = work();
    } catch (const std::exception& error) {
      std::cerr << error.what() << '\n';
    } catch (...) {
      std::cerr << "unknown exception\n";
    }
    ::_exit(result ? 0 : 1);
  }
  return WaitFor(process) == 0;
}

}  // namespace test_support
