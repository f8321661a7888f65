// Progress on standard error: one line that is drawn over and over on a terminal, a few plain lines elsewhere.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>

#include "platform/Value.h"

namespace console {

// Any thread.
class ProgressLine {
 public:
  ProgressLine();
  // With the keys of platform/Presenter.h.
  void Show(const platform::Dictionary& progress);
  void Update(const platform::Dictionary& progress);
  void Hide();

 private:
  void Draw(const platform::Dictionary& progress);

  std::mutex mutex_;
  bool isTerminal_;
  bool isShown_ = false;
  int64_t lastQuarter_ = 0;  // that was told as a plain line
};

}  // namespace console
