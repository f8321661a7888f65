// What every benchmark needs: time of several runs against a floor that is measured in turn with it, and a line that says
// how they compare. Each program prints its own lines and gives Finish() back from main.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <limits>

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

// Prints the titles of the columns, and a warning if the compiler was not asked to optimise.
inline void Begin() {
#ifndef __OPTIMIZE__
  std::printf("WARNING: built without optimisation, the ratios mean nothing\n");
#endif
  std::printf("%-44s %12s %12s %8s %8s\n", "name", "time", "floor", "ratio", "limit");
}

// A ratio of whatever kind; `unit` stands behind both values.
inline void Report(const char* name, double value, double floor, double limit, const char* unit) {
  const double ratio = value / floor;
  const bool isAbove = ratio > limit;
  IsAboveLimit() = IsAboveLimit() || isAbove;
  std::printf("%-44s %9.3f %-2s %9.3f %-2s %8.2f %8.2f%s\n", name, value, unit, floor, unit, ratio, limit,
              isAbove ? "  ABOVE ITS LIMIT" : "");
  std::fflush(stdout);
}

// The best of several runs of each, in turn, so that a busy machine slows both. `prepare` runs before each `work` and is not
// measured.
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

inline int Finish() { return IsAboveLimit() ? 1 : 0; }

}  // namespace benchmark
