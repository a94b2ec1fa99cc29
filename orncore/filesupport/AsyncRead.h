// Reading a file in the background: an executor, a read with its continuation, and the wait.
//
//   UntypedFuture done = ReadFileToRecycledMemory(
//       File(path), GetDefaultExecutor(), [](const ReadOutcome& read) {
//         if (read.failure) std::rethrow_exception(read.failure);
//         Use(read.memory->Bytes());
//       });
//   WaitForUntypedUntil(done, deadline, true);
#ifndef ORNCORE_FILESUPPORT_ASYNCREAD_H_
#define ORNCORE_FILESUPPORT_ASYNCREAD_H_

#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>

#include <orncore/Export.h>
#include <orncore/filesupport/File.h>

namespace orncore::filesupport {

/// Runs tasks on one thread, in the order of submission. The first task starts the thread.
///
/// Call `Join` before the code of a task is unloaded, for example in the shutdown function of the
/// `config::InitializerRegistrar` whose module submits tasks.
///
/// Threads: safe to use from any thread, except that a task must not call `Join`, destroy the
/// executor, or wait for another task of the same executor.
class ORN_EXPORT Executor {
 public:
  /// Receives the token through which `Join` requests a stop.
  using Task = std::function<void(const std::stop_token&)>;

  /// Starts no thread.
  Executor() = default;
  /// Joins.
  ~Executor();
  Executor(const Executor&) = delete;
  Executor& operator=(const Executor&) = delete;

  /// Adds `task` to the queue. If the task throws, the exception is logged. Throws
  /// `std::bad_alloc`, or `std::system_error` if the thread cannot be started; the task is not run
  /// then.
  void Submit(Task task);

  /// Requests a stop of the running task and of all queued ones, runs the queued ones to their end,
  /// and ends the thread. The next task starts a new thread.
  void Join();

 private:
  void Run(const std::stop_token& stop);

  std::mutex mutex_;
  std::condition_variable_any wake_;
  std::deque<Task> tasks_;
  std::jthread thread_;
};

/// Returns the executor of the process. It is never destroyed, so static destructors may use it.
ORN_EXPORT Executor& GetDefaultExecutor();

/// What a read ended with: either the bytes or the exception that it failed with.
struct ReadOutcome {
  std::shared_ptr<const RecycledMemory> memory;  ///< null if the read failed
  std::exception_ptr failure;                    ///< null if the read succeeded
};

/// The completion of a read and its continuation. It can be moved, not copied.
///
/// Threads: one thread at a time.
class ORN_EXPORT UntypedFuture {
  friend ORN_EXPORT UntypedFuture ReadFileToRecycledMemory(
      const File& file, Executor& executor, std::function<void(const ReadOutcome&)> continuation);
  friend ORN_EXPORT bool WaitForUntypedUntil(UntypedFuture& future,
                                             std::chrono::steady_clock::time_point deadline,
                                             bool cancelAtDeadline);
  // Holds what the continuation failed with. Not as the future's own exception: the thread that
  // waits must be the last owner of that exception.
  std::future<std::exception_ptr> completion_;
  std::stop_source stop_;
};

/// Starts to read `file` on `executor` and returns at once. After the read, also after a failed or
/// cancelled one, the same task calls `continuation` and then destroys it. A read that is cancelled
/// fails with `config::FutureCancelled`. It fails as `ReadRegularFile` does, and with -EILSEQ if
/// the path contains an unpaired surrogate. Throws what `Executor::Submit` throws.
ORN_EXPORT UntypedFuture ReadFileToRecycledMemory(
    const File& file, Executor& executor, std::function<void(const ReadOutcome&)> continuation);

/// Waits until the continuation has returned, or until `deadline`. Returns true if it returned in
/// time, and throws what it threw. If the deadline passes first, returns false; with
/// `cancelAtDeadline` the function then cancels the read, waits until the continuation has
/// returned, and throws what it threw. Call it again only if it returned false without cancelling.
ORN_EXPORT bool WaitForUntypedUntil(UntypedFuture& future,
                                    std::chrono::steady_clock::time_point deadline,
                                    bool cancelAtDeadline);

}  // namespace orncore::filesupport

#endif  // ORNCORE_FILESUPPORT_ASYNCREAD_H_
