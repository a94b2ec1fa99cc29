// Programs run by tests, as a user or a script would run them: with arguments, an environment,
// standard streams and, where it matters, a terminal.
#ifndef TESTS_SUPPORT_CHILDPROCESS_H_
#define TESTS_SUPPORT_CHILDPROCESS_H_

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace test_support {

/// How a program is started. The environment is exactly the one given, so that a test does not
/// depend on who runs it.
struct ProgramCall {
  std::vector<std::string> arguments = {};
  std::map<std::string, std::string> environment = {};
  /// What standard input holds; at most what fits into a pipe.
  std::string input = {};
  /// Standard output, and standard input when `input` is empty, are a terminal this wide.
  bool isOnTerminal = false;
  unsigned short columns = 80;
  /// What somebody types on the terminal, line by line; "\x04" is Ctrl-D. Not with `input`.
  std::string typed = {};
  /// Runs in the new process before the program: limits, another user.
  std::function<void()> beforeStart = {};
};

/// How a program ended.
struct ProgramResult {
  int exitStatus = 0;  ///< negated signal number when a signal ended it
  std::string output;
  std::string errors;
};

/// A program under way. Killed and waited for when the object goes. One thread at a time.
class ChildProcess {
 public:
  /// Starts a program. Throws `std::system_error`.
  ChildProcess(const std::string& program, const ProgramCall& call);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Ends it at once, wherever it is.
  void Kill();

  /// Stops reading its output, like a pager that is closed.
  void CloseOutput();

  /// Waits for its end. REQUIRES: called once.
  ProgramResult Wait();

 private:
  void ReadStreams(ProgramResult& result);

  pid_t process_ = -1;
  int output_ = -1;
  int errors_ = -1;
};

/// Starts a program and waits for its end.
ProgramResult RunProgram(const std::string& program, const ProgramCall& call);

/// How many processes a test of kills is to kill: the environment's ORNWHATSNEW_TEST_KILLS, or
/// `otherwise`.
int KillsWanted(int otherwise);

/// Runs `work` in a process of its own: for what would end or change this one. True when it came to
/// its end and answered true.
bool InChildProcess(const std::function<bool()>& work);

}  // namespace test_support

#endif  // TESTS_SUPPORT_CHILDPROCESS_H_
