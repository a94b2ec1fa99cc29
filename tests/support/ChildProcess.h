// Runs programs in tests like a user or a script: with arguments, an environment, standard streams
// and, if needed, a terminal.
#ifndef TESTS_SUPPORT_CHILDPROCESS_H_
#define TESTS_SUPPORT_CHILDPROCESS_H_

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace test_support {

/// How to start a program. The program receives only `environment`, so that a test does not depend
/// on the user who runs it.
struct ProgramCall {
  std::vector<std::string> arguments = {};
  std::map<std::string, std::string> environment = {};
  /// The content of standard input. It must fit into the buffer of a pipe.
  std::string input = {};
  /// Whether standard output is a terminal. Standard input is the terminal, too, if `input` is
  /// empty.
  bool isOnTerminal = false;
  /// The width of the terminal in characters.
  unsigned short columns = 80;
  /// The lines that a user types on the terminal; "\x04" is Ctrl-D. REQUIRES: `input` is empty.
  std::string typed = {};
  /// A function that the new process calls before it executes the program, for example to set
  /// resource limits. It must not allocate memory.
  std::function<void()> beforeStart = {};
};

/// The results of a program.
struct ProgramResult {
  int exitStatus = 0;  ///< the negated signal number if a signal ended the program
  std::string output;  ///< the bytes written to standard output
  std::string errors;  ///< the bytes written to standard error
};

/// A running program. The destructor kills it and waits for it. Not thread-safe.
class ChildProcess {
 public:
  /// Starts a program. Throws `std::system_error` if a system call fails. If the program cannot be
  /// executed, its exit status is 127.
  ChildProcess(const std::string& program, const ProgramCall& call);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Sends SIGKILL to the program and returns without waiting for its end.
  void Kill();

  /// Closes the reading end of the program's standard output, like a pager that exits.
  void CloseOutput();

  /// Reads the output of the program until it ends, and returns its results. REQUIRES: called at
  /// most once.
  ProgramResult Wait();

 private:
  void ReadStreams(ProgramResult& result);

  pid_t process_ = -1;
  int output_ = -1;
  int errors_ = -1;
};

/// Starts a program, waits until it ends, and returns its results.
ProgramResult RunProgram(const std::string& program, const ProgramCall& call);

/// Returns how many processes a test must kill: the value of the environment variable
/// ORNWHATSNEW_TEST_KILLS, or `otherwise` if it is not set.
int KillsWanted(int otherwise);

/// Runs `work` in a new process and returns its result. Returns false if `work` throws or ends the
/// process. Use it for work that would end or change the process of the test.
bool InChildProcess(const std::function<bool()>& work);

}  // namespace test_support

#endif  // TESTS_SUPPORT_CHILDPROCESS_H_
