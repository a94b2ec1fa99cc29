// Runs programs that only load libraries and exit. Measures the processor time of each process,
// from its start to its end.
#include <cerrno>
#include <optional>
#include <string>

#include <spawn.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>

#include <benchmark/benchmark.h>

namespace benchmarks {
namespace {

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

// Runs a program and returns its processor time. Returns `std::nullopt` if the program failed.
std::optional<double> ProcessorSeconds(std::string path) {
  char* arguments[] = {path.data(), nullptr};
  char* environment[] = {nullptr};
  pid_t process = 0;
  if (posix_spawn(&process, path.c_str(), nullptr, nullptr, arguments, environment) != 0) return {};
  int status = -1;
  rusage usage{};
  while (wait4(process, &status, 0, &usage) < 0) {
    if (errno != EINTR) return {};
  }
  if (status != 0) return {};
  return Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
}

void Start(benchmark::State& state, const char* program) {
  const std::string path = std::string(BENCHMARKS_PROGRAM_FOLDER "/") + program;
  for (auto _ : state) {
    const std::optional<double> seconds = ProcessorSeconds(path);
    if (!seconds) state.SkipWithError("the program failed");
    state.SetIterationTime(seconds.value_or(0));
  }
  state.SetItemsProcessed(state.iterations());
}
// The first three programs are empty. `start_bare` loads only the C library. `start_runtime` also
// loads the C++ runtime. `start_third_party` also loads the C++ runtime and the dependencies of the
// library.
BENCHMARK_CAPTURE(Start, runtime, "start_runtime")->Name("Baseline.Start")->UseManualTime();
BENCHMARK_CAPTURE(Start, bare, "start_bare")->Name("Bare.Start")->UseManualTime();
BENCHMARK_CAPTURE(Start, thirdParty, "start_third_party")
    ->Name("ThirdParty.Start")
    ->UseManualTime();
BENCHMARK_CAPTURE(Start, library, "start_library")->Name("Start")->UseManualTime();

}  // namespace
}  // namespace benchmarks
