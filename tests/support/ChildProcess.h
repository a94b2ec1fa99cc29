// Runs programs in tests as a user or a script would: with arguments, an environment, standard
// streams and, if needed, a terminal.
#ifndef TESTS_SUPPORT_CHILDPROCESS_H_
#define TESTS_SUPPORT_CHILDPROCESS_H_

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace test_support {

/// Describes how to start a program. The program receives no environment variables except
/// `environment`, so that tests do not depend on the user who runs them.
struct ProgramCall {
  std::vector<std::string> arguments = {};
  std::map<std::string, std::string> environment = {};
  /// The content of standard input. It must fit into the buffer of a pipe.
  std::string input = {};
  /// True if standard output is a terminal. In this case, standard input is the same terminal if
  /// `input` is empty.
  bool isOnTerminal = false;
  /// The width of the terminal in characters.
  unsigned short columns = 80;
  /// The input that a user types on the terminal. "\x04" represents Ctrl+D. REQUIRES: if
  /// `typed` is not empty, `isOnTerminal` is true and `input` is empty.
  std::string typed = {};
  /// A function that the new process calls before it executes the program, for example to set
  /// resource limits. It must not allocate memory.
  std::function<void()> beforeStart = {};
};

/// The exit status and the output of a program.
struct ProgramResult {
  /// The exit status, or the negated signal number if a signal ended the program.
  int exitStatus = 0;
  /// The bytes that the program wrote to standard output and that `ReadOutput` did not return.
  std::string output;
  /// The bytes that the program wrote to standard error.
  std::string errors;
};

/// A running program. If `Wait` has not returned, the destructor kills the program and waits for it
/// to exit. Not thread-safe.
class ChildProcess {
 public:
  /// Starts the program at the path `program`. Throws `std::system_error` if a system call fails.
  /// If the program cannot be executed, the exit status is 127.
  ChildProcess(const std::string& program, const ProgramCall& call);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Sends SIGKILL to the program. Does not wait for the program to exit. Does nothing after
  /// `Wait`.
  void Kill();

  /// Sends SIGINT to the program, as Ctrl+C does. Does not wait for the program to exit. Does
  /// nothing after `Wait`.
  void Interrupt();

  /// Waits until the program writes to its standard output, and returns the available bytes.
  /// Returns an empty string at the end of the output or if the read fails. `Wait` does not return
  /// these bytes again.
  std::string ReadOutput();

  /// Closes the reading end of the program's standard output, like a pager that exits.
  void CloseOutput();

  /// Reads all output of the program, waits for it to exit, and returns its output and exit status.
  /// Throws `std::system_error` if a system call fails. REQUIRES: `Wait` is called at most once.
  ProgramResult Wait();

 private:
  void Send(int signal);
  void ReadStreams(ProgramResult& result);

  pid_t process_ = -1;
  int output_ = -1;
  int errors_ = -1;
};

/// Starts the program at the path `program`, waits for it to exit, and returns its output and exit
/// status. Throws `std::system_error` if a system call fails.
ProgramResult RunProgram(const std::string& program, const ProgramCall& call);

/// Returns the number of processes that a test must kill: the value of the environment variable
/// ORNWHATSNEW_TEST_KILLS, or `otherwise` if it is not set.
int KillsWanted(int otherwise);

/// Calls `work` in a new process and returns the result of `work`. Returns false if `work` throws
/// or if a signal ends the process. Throws `std::system_error` if the process cannot be created.
/// Use this function for work that would end or change the process of the test.
bool InChildProcess(const std::function<bool()>& work);

}  // namespace test_support

#endif  // TESTS_SUPPORT_CHILDPROCESS_H_
