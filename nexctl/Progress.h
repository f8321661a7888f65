// A line on the terminal about work that takes longer than a second; nothing elsewhere.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace nexctl {

class Progress {
 public:
  explicit Progress(std::string work);
  ~Progress();  // removes the line
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Call it often. `unit` is what is counted, in the plural; without one the line only tells the work.
  void Show(size_t step = 0, size_t steps = 0, const char* unit = nullptr);

 private:
  const std::string work_;
  const bool isTerminal_;
  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  bool isShown_ = false;
};

}  // namespace nexctl
