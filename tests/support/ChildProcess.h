// Runs programs in tests as a user or a script does: with arguments, an environment, standard
// streams and, if needed, a terminal.
#ifndef TESTS_SUPPORT_CHILDPROCESS_H_
#define TESTS_SUPPORT_CHILDPROCESS_H_

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace test_support {

/// How to start a program. The program receives only the given environment, so that a test does not
/// depend on the user who runs it.
struct ProgramCall {
  std::vector<std::string> arguments = {};
  std::map<std::string, std::string> environment = {};
  /// The content of standard input; it must fit into a pipe.
  std::string input = {};
  /// The width of the terminal that is standard output, and standard input if `input` is empty.
  bool isOnTerminal = false;
  unsigned short columns = 80;
  /// The lines that a user types on the terminal; "\x04" is Ctrl-D. Not together with `input`.
  std::string typed = {};
  /// Runs in the new process before the program, for example to set limits.
  std::function<void()> beforeStart = {};
};

/// How a program ended.
struct ProgramResult {
  int exitStatus = 0;  ///< the negated signal number if a signal ended the program
  std::string output;
  std::string errors;
};

/// A running program. The destructor kills it and waits for it. Not thread-safe.
class ChildProcess {
 public:
  /// Starts a program. Throws `std::system_error`.
  ChildProcess(const std::string& program, const ProgramCall& call);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Kills the program.
  void Kill();

  /// Closes the reading end of its output, like a pager that exits.
  void CloseOutput();

  /// Waits until the program ends. REQUIRES: called once.
  ProgramResult Wait();

 private:
  void ReadStreams(ProgramResult& result);

  pid_t process_ = -1;
  int output_ = -1;
  int errors_ = -1;
};

/// Starts a program and waits until it ends.
ProgramResult RunProgram(const std::string& program, const ProgramCall& call);

/// Returns how many processes a test must kill: the value of ORNWHATSNEW_TEST_KILLS in the
/// environment, or `otherwise`.
int KillsWanted(int otherwise);

/// Runs `work` in a new process, because it would end or change this one. Returns true if it
/// returned true.
bool InChildProcess(const std::function<bool()>& work);

}  // namespace test_support

#endif  // TESTS_SUPPORT_CHILDPROCESS_H_
