// Reads files in the background. A read calls a continuation on the thread of an executor. The
// caller can wait for the continuation until a deadline.
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

/// Runs tasks on one thread in the order of submission. `Submit` starts the thread if it is not
/// running.
///
/// A library that submits tasks must call `Join` before it is unloaded, for example in the shutdown
/// function of its `config::InitializerRegistrar`.
///
/// Threads: safe to use from any thread. However, a task must not call `Join`, destroy the
/// executor, or wait for another task of the same executor.
class ORN_EXPORT Executor {
 public:
  /// The type of a task. Its argument is a stop token, through which `Join` requests that the task
  /// stop early.
  using Task = std::function<void(const std::stop_token&)>;

  /// Creates an executor without a thread.
  Executor() = default;
  /// Calls `Join`.
  ~Executor();
  Executor(const Executor&) = delete;
  Executor& operator=(const Executor&) = delete;

  /// Adds `task` to the queue and returns. The executor destroys the task on its thread after the
  /// task has run. If the task throws, the executor logs the exception.
  ///
  /// Throws `std::bad_alloc` if memory runs out, and `std::system_error` if the thread cannot be
  /// started. In both cases, the task does not run.
  void Submit(Task task);

  /// Requests that the running task and all queued tasks stop, waits until all of them have run,
  /// and ends the thread. The next call to `Submit` starts a new thread.
  ///
  /// Do not call `Submit` while `Join` runs. Otherwise, `Submit` could start a second thread, which
  /// could also run tasks that were already queued. `Join` would not wait for this thread.
  void Join();

 private:
  void Run(const std::stop_token& stop);

  std::mutex joinMutex_;  // locked for the whole of Join, so that every caller waits
  std::mutex mutex_;
  std::condition_variable_any wake_;
  std::deque<Task> tasks_;
  std::jthread thread_;
};

/// Returns the executor of the process. It is never destroyed, so static destructors may use it.
/// Its thread runs until `Join` is called or the process ends. Safe to call from any thread.
ORN_EXPORT Executor& GetDefaultExecutor();

/// The outcome of a read: either the bytes or an exception. Exactly one member is not null.
struct ReadOutcome {
  std::shared_ptr<const RecycledMemory> memory;  ///< null if the read failed
  std::exception_ptr failure;                    ///< null if the read succeeded
};

/// Represents the completion of a read and of its continuation. `WaitForUntypedUntil` waits for it.
///
/// An object can be moved but not copied. Destroying an object neither cancels the read nor waits
/// for it.
///
/// Threads: use one object from one thread at a time.
class ORN_EXPORT UntypedFuture {
  friend ORN_EXPORT UntypedFuture ReadFileToRecycledMemory(
      const File& file, Executor& executor, std::function<void(const ReadOutcome&)> continuation);
  friend ORN_EXPORT bool WaitForUntypedUntil(UntypedFuture& future,
                                             std::chrono::steady_clock::time_point deadline,
                                             bool cancelAtDeadline);
  // The value is the exception of the continuation, or null. The waiting thread becomes the only
  // owner of the exception. With `set_exception`, the executor's thread could also own the
  // exception and destroy it after the wait.
  std::future<std::exception_ptr> completion_;
  std::stop_source stop_;
};

/// Submits to `executor` a task that reads `file`, and returns without waiting.
///
/// The task always calls `continuation` with the outcome, whether the read succeeds, fails or is
/// cancelled. It then destroys `continuation`. Both happen on the executor's thread. The reference
/// to the outcome is valid only during the call. The continuation may copy `memory` and use the
/// copy after the call.
///
/// If the read does not succeed, `ReadOutcome::failure` is one of these exceptions:
/// - `config::FutureCancelled` if `WaitForUntypedUntil` or `Executor::Join` cancels the read;
/// - `config::ResultError` with -EILSEQ if the path contains an unpaired surrogate;
/// - any exception that `ReadRegularFile` throws.
///
/// The function itself can throw the exceptions that `Executor::Submit` documents. Safe to call
/// from any thread.
ORN_EXPORT UntypedFuture ReadFileToRecycledMemory(
    const File& file, Executor& executor, std::function<void(const ReadOutcome&)> continuation);

/// Waits until the continuation has ended or `deadline` has passed. If the continuation ends in
/// time, returns true, or rethrows the exception of the continuation.
///
/// If the deadline passes first, the result depends on `cancelAtDeadline`:
/// - false: The function returns false. The read continues, and the caller may wait again.
/// - true: The function cancels the read and waits until the continuation has ended. Then it
///   returns false, or rethrows the exception of the continuation.
///
/// `future` must be a result of `ReadFileToRecycledMemory`. Do not wait again after a call that
/// returned true, threw, or cancelled the read.
ORN_EXPORT bool WaitForUntypedUntil(UntypedFuture& future,
                                    std::chrono::steady_clock::time_point deadline,
                                    bool cancelAtDeadline);

}  // namespace orncore::filesupport

#endif  // ORNCORE_FILESUPPORT_ASYNCREAD_H_
