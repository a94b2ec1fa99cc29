// Runs the code of a test on several threads at the same time. ThreadSanitizer reports data races.
#ifndef TESTS_SUPPORT_THREADS_H_
#define TESTS_SUPPORT_THREADS_H_

#include <atomic>
#include <thread>
#include <vector>

namespace test_support {

/// The number of threads on which `RunOnThreads` runs its function.
inline constexpr int kThreadCount = 3;

/// Runs `work` once on each of `kThreadCount` threads. Runs `meanwhile` on the calling thread, once
/// and then repeatedly until all threads have finished.
template <class Work, class Meanwhile>
void RunOnThreads(const Work& work, const Meanwhile& meanwhile) {
  std::atomic<int> running = kThreadCount;
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < kThreadCount; ++thread) {
    threads.emplace_back([&work, &running] {
      work();
      --running;
    });
  }
  do {
    meanwhile();
  } while (running > 0);
}

}  // namespace test_support

#endif  // TESTS_SUPPORT_THREADS_H_
