// Runs the code of a test on several threads at the same time, so that ThreadSanitizer can detect
// data races.
#ifndef TESTS_SUPPORT_THREADS_H_
#define TESTS_SUPPORT_THREADS_H_

#include <atomic>
#include <latch>
#include <thread>
#include <vector>

namespace test_support {

/// A counter that several threads may increase at the same time. It uses relaxed memory order,
/// because the default order of `std::atomic` also orders other memory accesses of the threads.
/// This order would hide data races from ThreadSanitizer.
class ThreadCounter {
 public:
  void Add(int number) { value_.fetch_add(number, std::memory_order_relaxed); }
  int Value() const { return value_.load(std::memory_order_relaxed); }

 private:
  std::atomic<int> value_ = 0;
};

/// The number of threads on which `RunOnThreads` runs `work`.
inline constexpr int kThreadCount = 3;

/// Runs `work` once on each of `kThreadCount` threads. Runs `meanwhile` on the calling thread at
/// least once, and repeats it until all threads have finished. All threads start at the same time.
template <class Work, class Meanwhile>
void RunOnThreads(const Work& work, const Meanwhile& meanwhile) {
  std::atomic<int> running = kThreadCount;
  std::latch start(kThreadCount + 1);
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < kThreadCount; ++thread) {
    threads.emplace_back([&work, &running, &start] {
      start.arrive_and_wait();
      work();
      --running;
    });
  }
  start.arrive_and_wait();
  do {
    meanwhile();
  } while (running > 0);
}

}  // namespace test_support

#endif  // TESTS_SUPPORT_THREADS_H_
