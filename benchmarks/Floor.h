// For every benchmark: measures several runs against a floor, in turn, and prints how they compare. Each program
// returns Run() from main; one that cannot fail may call Begin and Finish itself.
#pragma once

#include <errno.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <functional>
#include <limits>
#include <stdexcept>
#include <string>

namespace benchmark {

inline bool& IsAboveLimit() {
  static bool sIsAbove = false;
  return sIsAbove;
}

inline double Measure(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Prints the titles of the columns, and a warning if the build is not optimised.
inline void Begin() {
#ifndef __OPTIMIZE__
  std::printf("WARNING: built without optimisation, the ratios mean nothing\n");
#endif
  std::printf("%-44s %12s %12s %8s %8s\n", "name", "time", "floor", "ratio", "limit");
}

// Prints a ratio of any kind. `unit` follows both values.
inline void Report(const char* name, double value, double floor, double limit, const char* unit) {
  const double ratio = value / floor;
  const bool isAbove = ratio > limit;
  IsAboveLimit() = IsAboveLimit() || isAbove;
  std::printf("%-44s %9.3f %-2s %9.3f %-2s %8.2f %8.2f%s\n", name, value, unit, floor, unit, ratio, limit,
              isAbove ? "  ABOVE ITS LIMIT" : "");
  std::fflush(stdout);
}

// The best of several runs of each, in turn, so that a busy machine slows both. `prepare` runs before each `work` and
// is not measured.
inline void Compare(
    const char* name, double limit, int runs, const std::function<void()>& work, const std::function<void()>& floor,
    const std::function<void()>& prepare = [] {}) {
  double best = std::numeric_limits<double>::infinity(), bestFloor = best;
  for (int i = 0; i < runs; ++i) {
    bestFloor = std::min(bestFloor, Measure(floor));
    prepare();
    best = std::min(best, Measure(work));
  }
  Report(name, best * 1000, bestFloor * 1000, limit, "ms");
}

// Ends the measurements with this message.
[[noreturn]] inline void Fail(const std::string& message) { throw std::runtime_error(message); }

// Returns the greatest memory, in MiB, of a process of its own that does the work.
inline double PeakOf(const std::function<void()>& work) {
  const pid_t child = fork();
  if (child == 0) {
    try {
      work();
    } catch (const std::exception& error) {
      std::fprintf(stderr, "%s\n", error.what());
      _exit(2);
    }
    _exit(0);
  }
  int status = 0;
  rusage usage{};
  if (child < 0 || wait4(child, &status, 0, &usage) != child || status != 0) {
    Fail("the memory of a process could not be measured");
  }
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

// Overwrites the bytes from `start` on. Each call continues the noise of the last one.
inline void FillWithNoise(std::string& bytes, size_t start = 0) {
  static uint64_t sState = 88172645463325252ULL;
  for (size_t i = start; i < bytes.size(); i += sizeof sState) {
    sState ^= sState << 13;
    sState ^= sState >> 7;
    sState ^= sState << 17;
    std::memcpy(bytes.data() + i, &sState, std::min(sizeof sState, bytes.size() - i));
  }
}

inline int Finish() { return IsAboveLimit() ? 1 : 0; }

// Runs all measurements of a program and returns its exit status: 1 if a ratio is above its limit, 2 after a failure.
// Failures are exceptions, so that files and processes of the measurements are removed first.
inline int Run(const std::function<void()>& measurements) {
  Begin();
  try {
    measurements();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", program_invocation_short_name, error.what());
    return 2;
  }
  return Finish();
}

}  // namespace benchmark
