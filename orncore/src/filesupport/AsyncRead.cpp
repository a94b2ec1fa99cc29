// Executors; the clock's header form spares the process a shared library.
#define BOOST_THREAD_VERSION 5
#define BOOST_CHRONO_HEADER_ONLY

#include <orncore/filesupport/AsyncRead.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include <boost/thread/executors/basic_thread_pool.hpp>
#include <boost/thread/future.hpp>
#include <boost/thread/thread.hpp>

#include <orncore/config/TopLevel.h>
#include <orncore/string/Conversion.h>
#include <orncore/utility/NoDestructor.h>

namespace orncore::filesupport {
namespace {

// A failure travels as a value: the exceptions that the futures could carry would lose their types.
struct Outcome {
  std::exception_ptr failure;
  std::shared_ptr<const RecycledMemory> memory;
};

using OutcomeFuture = boost::shared_future<Outcome>;
using ThreadPool = boost::executors::basic_thread_pool;

// A host's thread may be interrupted while it waits. Callers rely on a wait that ends only with
// what it waits for: a continuation may be using what is theirs. The request stays for the host to
// meet.
using NotInterrupted = boost::this_thread::disable_interruption;

template <class Function>
Outcome OutcomeOf(const Function& function) noexcept {
  try {
    return {nullptr, function()};
  } catch (...) {
    return {std::current_exception(), nullptr};
  }
}

std::shared_ptr<const RecycledMemory> ReadNamed(const UTF16String& name,
                                                const std::stop_token& stop) {
  const std::optional<std::filesystem::path> path = PathFromText(name);
  if (!path) throw config::ResultError(-EILSEQ, string::UTF16to8(name));
  return ReadRegularFile(*path, stop);
}

// A continuation with all that it needs, so that no more can fail once it is attached but its
// start; the futures' own would then never complete, and whoever waits for one would wait for good.
class PendingContinuation {
 public:
  PendingContinuation(ThreadPool& pool, std::function<void()> function)
      : pool_(pool), function_(std::move(function)) {}

  // A promise that goes without a value builds an exception; where there is no memory for that, the
  // process would end.
  ~PendingContinuation() {
    if (!hasCompleted_) Complete({std::make_exception_ptr(FutureCancelled()), nullptr});
  }

  PendingContinuation(const PendingContinuation&) = delete;
  PendingContinuation& operator=(const PendingContinuation&) = delete;

  OutcomeFuture Future() { return promise_.get_future().share(); }

  static void Start(const std::shared_ptr<PendingContinuation>& continuation) noexcept {
    try {
      continuation->pool_.submit([continuation] { continuation->Run(); });
    } catch (...) {
      continuation->Complete({std::current_exception(), nullptr});
    }
  }

 private:
  void Run() {
    Complete(OutcomeOf([this] {
      function_();
      return std::shared_ptr<const RecycledMemory>();
    }));
  }

  void Complete(Outcome outcome) {
    hasCompleted_ = true;
    promise_.set_value(std::move(outcome));
  }

  ThreadPool& pool_;
  const std::function<void()> function_;
  bool hasCompleted_ = false;
  boost::promise<Outcome> promise_;
};

// One read, which either the executor or a cancellation completes, whichever comes first.
class PendingRead {
 public:
  explicit PendingRead(UTF16String path) : path_(std::move(path)) {}

  // For the reason that a continuation has.
  ~PendingRead() { Cancel(); }

  PendingRead(const PendingRead&) = delete;
  PendingRead& operator=(const PendingRead&) = delete;

  OutcomeFuture Future() { return promise_.get_future().share(); }

  void Run() {
    if (claimed_.exchange(true)) return;
    Complete(OutcomeOf([this] { return ReadNamed(path_, stop_.get_token()); }));
  }

  void Cancel() {
    stop_.request_stop();
    if (claimed_.exchange(true)) return;
    Complete({std::make_exception_ptr(FutureCancelled()), nullptr});
  }

  // Has the continuation run as soon as the read has completed.
  void Attach(const std::shared_ptr<PendingContinuation>& continuation) {
    {
      const std::lock_guard lock(mutex_);
      if (!hasCompleted_) {
        continuations_.push_back(continuation);
        return;
      }
    }
    PendingContinuation::Start(continuation);
  }

 private:
  void Complete(Outcome outcome) {
    promise_.set_value(std::move(outcome));
    std::vector<std::shared_ptr<PendingContinuation>> continuations;
    {
      const std::lock_guard lock(mutex_);
      hasCompleted_ = true;
      continuations.swap(continuations_);
    }
    for (const auto& continuation : continuations) PendingContinuation::Start(continuation);
  }

  const UTF16String path_;
  std::stop_source stop_;
  std::atomic<bool> claimed_ = false;
  boost::promise<Outcome> promise_;
  std::mutex mutex_;
  bool hasCompleted_ = false;
  std::vector<std::shared_ptr<PendingContinuation>> continuations_;
};

// True when `future` completed before `deadline`.
bool WaitUntil(const OutcomeFuture& future, std::chrono::steady_clock::time_point deadline) {
  const NotInterrupted notInterrupted;
  // In slices, because the most distant deadlines overflow the futures' own clock.
  constexpr std::chrono::steady_clock::duration kSlice = std::chrono::hours(1);
  while (!future.is_ready()) {
    const auto now = std::chrono::steady_clock::now();
    if (now >= deadline) return false;
    const std::chrono::nanoseconds slice = std::min(deadline - now, kSlice);
    future.wait_for(boost::chrono::nanoseconds(slice.count()));
  }
  return true;
}

const Outcome& WaitForOutcome(const OutcomeFuture& future) {
  const NotInterrupted notInterrupted;
  return future.get();
}

}  // namespace

class Executor::Impl {
 public:
  explicit Impl(unsigned threadCount) : threadCount_(std::max(threadCount, 1U)) {}

  // The pool's own destructor would interrupt its threads and drop what is still queued.
  ~Impl() {
    if (!pool_) return;
    const NotInterrupted notInterrupted;
    pool_->close();
    pool_->join();
  }

  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  ThreadPool& Pool() {
    const std::lock_guard lock(mutex_);
    if (!pool_) pool_.emplace(threadCount_);
    return *pool_;
  }

 private:
  const unsigned threadCount_;
  std::mutex mutex_;
  std::optional<ThreadPool> pool_;
};

class UntypedFuture::State {
 public:
  State(OutcomeFuture outcome, std::shared_ptr<PendingRead> read)
      : outcome_(std::move(outcome)), read_(std::move(read)) {}

  const OutcomeFuture& Future() const { return outcome_; }
  const std::shared_ptr<PendingRead>& Read() const { return read_; }

 private:
  OutcomeFuture outcome_;
  // What a cancellation ends.
  std::shared_ptr<PendingRead> read_;
};

Executor::Executor(unsigned threadCount) : impl_(std::make_unique<Impl>(threadCount)) {}

Executor::~Executor() = default;

void Executor::Submit(std::function<void()> function) {
  impl_->Pool().submit(
      [function = std::move(function)] { config::ExecuteTopLevelFunction(function); });
}

Executor& GetDefaultExecutor() {
  static utility::NoDestructor<Executor> executor;
  return *executor;
}

UntypedFuture::UntypedFuture(std::shared_ptr<State> state) : state_(std::move(state)) {}

UntypedFuture::UntypedFuture(const UntypedFuture&) = default;

UntypedFuture& UntypedFuture::operator=(const UntypedFuture&) = default;

UntypedFuture::~UntypedFuture() = default;

bool UntypedFuture::IsReady() const {
  return state_->Future().is_ready();
}

std::exception_ptr UntypedFuture::Failure() const {
  return WaitForOutcome(state_->Future()).failure;
}

void UntypedFuture::Cancel() const {
  state_->Read()->Cancel();
}

std::shared_ptr<const RecycledMemory> ReadFuture::Get() const {
  const Outcome& outcome = WaitForOutcome(state_->Future());
  if (outcome.failure) std::rethrow_exception(outcome.failure);
  return outcome.memory;
}

UntypedFuture ReadFuture::Then(Executor& executor,
                               std::function<void(const ReadFuture&)> continuation) const {
  const auto pending = std::make_shared<PendingContinuation>(
      executor.impl_->Pool(),
      [read = *this, continuation = std::move(continuation)] { continuation(read); });
  UntypedFuture result(std::make_shared<State>(pending->Future(), state_->Read()));
  // Last: once it is attached it runs, and what it refers to must not go by an exception here.
  state_->Read()->Attach(pending);
  return result;
}

ReadFuture ReadFileToRecycledMemory(const File& file) {
  const auto read = std::make_shared<PendingRead>(file.Path());
  ReadFuture future(std::make_shared<ReadFuture::State>(read->Future(), read));
  GetDefaultExecutor().Submit([read] { read->Run(); });
  return future;
}

bool WaitForUntypedUntil(const UntypedFuture& future,
                         std::chrono::steady_clock::time_point deadline, bool cancelAtDeadline) {
  const OutcomeFuture& outcome = future.state_->Future();
  if (!WaitUntil(outcome, deadline)) {
    if (cancelAtDeadline) {
      future.Cancel();
      WaitForOutcome(outcome);
    }
    return false;
  }
  if (const std::exception_ptr failure = future.Failure()) std::rethrow_exception(failure);
  return true;
}

}  // namespace orncore::filesupport
