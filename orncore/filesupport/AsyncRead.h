// Reading a file while the caller does something else: futures, continuations, an executor.
//
//   const ReadFuture read = ReadFileToRecycledMemory(File(path));
//   const UntypedFuture done = read.Then(GetDefaultExecutor(), [](const ReadFuture& finished) {
//     Use(finished.Get()->Bytes());  // throws what the read failed with
//   });
//   WaitForUntypedUntil(done, deadline, true);
#ifndef ORNCORE_FILESUPPORT_ASYNCREAD_H_
#define ORNCORE_FILESUPPORT_ASYNCREAD_H_

#include <chrono>
#include <exception>
#include <functional>
#include <memory>

#include <orncore/Export.h>
#include <orncore/filesupport/File.h>
#include <orncore/filesupport/RecycledMemory.h>
#include <orncore/filesupport/RegularFile.h>

namespace orncore::filesupport {

class UntypedFuture;
class ReadFuture;

/// Runs functions on threads of its own, in the order in which they come. No thread is started
/// before the first function comes.
///
/// A function must not wait for another one of the same executor: with a single thread it would
/// wait for itself.
///
/// Threads: Submit is safe from any. Destruction finishes what was submitted, then ends the
/// threads; it must not happen on one of them, nor while others submit.
class ORN_EXPORT Executor {
 public:
  /// With `threadCount` threads, at least one.
  explicit Executor(unsigned threadCount = 1);
  ~Executor();
  Executor(const Executor&) = delete;
  Executor& operator=(const Executor&) = delete;

  /// Has `function` run. An exception out of it is logged (config::ExecuteTopLevelFunction).
  void Submit(std::function<void()> function);

 private:
  friend class ReadFuture;
  class Impl;
  std::unique_ptr<Impl> impl_;
};

/// The executor that reads files, with one thread. It is never destroyed: the end of the process
/// waits for nothing that is still under way.
ORN_EXPORT Executor& GetDefaultExecutor();

/// Completion of something that runs elsewhere. Copies stand for the same completion.
///
/// Threads: safe from any. Interrupting a thread (as some thread libraries can) ends none of the
/// waits; the request is kept for whatever the thread does next.
class ORN_EXPORT UntypedFuture {
 public:
  /// Another future for the same completion.
  UntypedFuture(const UntypedFuture&);
  /// From now on for the completion of the other one.
  UntypedFuture& operator=(const UntypedFuture&);
  ~UntypedFuture();

  /// Whether it has completed.
  bool IsReady() const;

  /// Waits for the completion. Null when it completed normally, else what it failed with.
  std::exception_ptr Failure() const;

  /// Asks for the end of the read behind this future. One that has not begun ends at once, one
  /// under way as soon as it notices; both fail with FutureCancelled. What has completed stays as
  /// it is. A continuation still runs, and sees the cancelled read.
  void Cancel() const;

 protected:
  class State;
  friend class ReadFuture;
  /// @cond the implementation's own
  explicit UntypedFuture(std::shared_ptr<State> state);

  friend ORN_EXPORT bool WaitForUntypedUntil(const UntypedFuture& future,
                                             std::chrono::steady_clock::time_point deadline,
                                             bool cancelAtDeadline);

  std::shared_ptr<State> state_;
  /// @endcond
};

/// The bytes of a file that is being read.
class ORN_EXPORT ReadFuture : public UntypedFuture {
 public:
  /// Waits for the completion and hands out the bytes; throws what the read failed with, such as
  /// config::ResultError or FutureCancelled. May be called any number of times.
  std::shared_ptr<const RecycledMemory> Get() const;

  /// Has `continuation` run on `executor` with this future as soon as it has completed, however it
  /// did. The result completes when the continuation returns, or fails with what it throws;
  /// cancelling the result cancels this read. It fails, and the continuation is not run, when there
  /// is no memory left to start it; what is thrown here means that it never will be. The executor
  /// must outlive the result's completion.
  UntypedFuture Then(Executor& executor, std::function<void(const ReadFuture&)> continuation) const;

 private:
  friend ORN_EXPORT ReadFuture ReadFileToRecycledMemory(const File& file);
  using UntypedFuture::UntypedFuture;
};

/// Starts reading the whole of `file` on the default executor. Fails as ReadRegularFile does, and
/// with -EILSEQ for a path that holds an unpaired surrogate and so can be no file's name.
ORN_EXPORT ReadFuture ReadFileToRecycledMemory(const File& file);

/// Waits until `future` has completed or `deadline` has passed. True when it completed normally;
/// throws what it failed with. False when the deadline passed first; with `cancelAtDeadline` it is
/// then cancelled, and its end waited for. Must not be called by a function that runs on the
/// executor that completes `future`.
ORN_EXPORT bool WaitForUntypedUntil(const UntypedFuture& future,
                                    std::chrono::steady_clock::time_point deadline,
                                    bool cancelAtDeadline);

}  // namespace orncore::filesupport

#endif  // ORNCORE_FILESUPPORT_ASYNCREAD_H_
