// Shows progress on standard error: on a terminal one line that is redrawn, elsewhere a few plain lines.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>

#include "platform/Value.h"

namespace console {

// Thread-safe.
class ProgressLine {
 public:
  ProgressLine();
  // `progress` has the keys of platform/Presenter.h.
  void Show(const platform::Dictionary& progress);
  void Update(const platform::Dictionary& progress);
  void Hide();

 private:
  void Draw(const platform::Dictionary& progress);

  std::mutex mutex_;
  bool isTerminal_;
  bool isShown_ = false;
  int64_t lastQuarter_ = 0;  // last quarter that was printed as a plain line
};

}  // namespace console
