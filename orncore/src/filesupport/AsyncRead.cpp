#include <orncore/filesupport/AsyncRead.h>

#include <cerrno>
#include <optional>
#include <utility>

#include <orncore/config/TopLevel.h>

#include "orncore/src/utility/NoDestructor.h"

namespace orncore::filesupport {
namespace {

// Calls `function`. Returns the exception that it throws, or null if it throws none.
template <class Function>
std::exception_ptr CatchException(const Function& function) noexcept {
  try {
    function();
    return nullptr;
  } catch (...) {
    return std::current_exception();
  }
}

ReadOutcome Read(const File& file, const std::stop_token& stop) {
  ReadOutcome outcome;
  outcome.failure = CatchException([&] {
    if (stop.stop_requested()) throw config::FutureCancelled();
    const std::optional<std::filesystem::path> path = PathFromText(file.Path());
    if (!path) throw config::ResultError(-EILSEQ, string::UTF16to8(file.Path()));
    outcome.memory = ReadRegularFile(*path, stop);
  });
  return outcome;
}

}  // namespace

Executor::~Executor() {
  Join();
}

void Executor::Submit(Task task) {
  const std::lock_guard lock(mutex_);
  if (!thread_.joinable()) {
    thread_ = std::jthread([this](const std::stop_token& stop) { Run(stop); });
  }
  tasks_.push_back(std::move(task));
  wake_.notify_one();
}

void Executor::Join() {
  const std::lock_guard joinLock(joinMutex_);
  // The destructor of `endingThread` requests the stop and joins the thread. It runs after `mutex_`
  // is unlocked, because the thread must lock `mutex_` before it can end.
  std::jthread endingThread;
  const std::lock_guard lock(mutex_);
  endingThread.swap(thread_);
}

void Executor::Run(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  while (wake_.wait(lock, stop, [this] { return !tasks_.empty(); })) {
    Task task = std::move(tasks_.front());
    tasks_.pop_front();
    lock.unlock();
    config::ExecuteTopLevelFunction([&task, &stop] { task(stop); });
    task = nullptr;
    lock.lock();
  }
}

Executor& GetDefaultExecutor() {
  static utility::NoDestructor<Executor> executor;
  return *executor;
}

UntypedFuture ReadFileToRecycledMemory(const File& file, Executor& executor,
                                       std::function<void(const ReadOutcome&)> continuation) {
  const auto promise = std::make_shared<std::promise<std::exception_ptr>>();
  UntypedFuture future;
  future.completion_ = promise->get_future();
  executor.Submit([file, continuation = std::move(continuation), promise,
                   stop = future.stop_](const std::stop_token& executorStop) mutable {
    const std::stop_callback forwardStop(executorStop, [&stop] { stop.request_stop(); });
    std::exception_ptr failure =
        CatchException([&] { continuation(Read(file, stop.get_token())); });
    continuation = nullptr;
    promise->set_value(std::move(failure));
  });
  return future;
}

bool WaitForUntypedUntil(UntypedFuture& future, std::chrono::steady_clock::time_point deadline,
                         bool cancelAtDeadline) {
  const bool isInTime = future.completion_.wait_until(deadline) == std::future_status::ready;
  if (!isInTime && !cancelAtDeadline) return false;
  if (!isInTime) future.stop_.request_stop();
  if (const std::exception_ptr failure = future.completion_.get()) std::rethrow_exception(failure);
  return isInTime;
}

}  // namespace orncore::filesupport
