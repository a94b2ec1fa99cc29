// Measures the processor times of whole processes: a program that only loads the library, and empty
// programs.
#include <array>
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

// Runs a program and returns its processor time. Returns `std::nullopt` if the program cannot be
// started or fails.
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

// `start_library` loads the library. The other programs are empty. `start_runtime` loads the C++
// runtime, and `start_bare` loads only the C library. `start_third_party` loads the C++ runtime and
// the dependencies of the library.
constexpr std::array<const char*, 4> kPrograms = {"start_runtime", "start_bare",
                                                  "start_third_party", "start_library"};

// Runs each program once and stores its processor time in a counter. The repetitions run the
// programs alternately, so that other load on the machine affects all of them equally.
void Start(benchmark::State& state) {
  for (auto _ : state) {
    for (const char* program : kPrograms) {
      const std::optional<double> seconds =
          ProcessorSeconds(std::string(BENCHMARKS_PROGRAM_FOLDER "/") + program);
      if (!seconds) return state.SkipWithError("the program failed");
      state.counters[program] = *seconds;
    }
  }
}
BENCHMARK(Start)->Iterations(1)->Repetitions(500);

}  // namespace
}  // namespace benchmarks
