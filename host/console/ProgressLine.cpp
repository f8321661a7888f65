#include "host/console/ProgressLine.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>

#include "platform/PlainText.h"

namespace console {

namespace {

constexpr int64_t kWorthQuarters = 100;  // fewer steps get only a plain line at the start

// A property list may store a boolean as a number.
bool IsIndeterminate(const platform::Dictionary& progress) {
  return progress.GetBoolean("IsIndeterminate") || progress.GetInteger("IsIndeterminate") != 0;
}

// A line that is too long would wrap, and only its last part would be overwritten.
size_t WidthOfTerminal() {
  constexpr size_t kUsual = 80;
  winsize size{};
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1 ? size.ws_col : kUsual;
}

std::string HeadOf(const platform::Dictionary& progress) {
  const std::string header = progress.GetString("Header").Text();
  return platform::OneLine(header.empty() ? progress.GetString("WindowTitle").Text() : header);
}

}  // namespace

ProgressLine::ProgressLine() : isTerminal_(isatty(STDERR_FILENO) != 0) {}

void ProgressLine::Show(const platform::Dictionary& progress) {
  const std::lock_guard lock(mutex_);
  const bool wasShown = isShown_;
  isShown_ = true;
  lastQuarter_ = 0;
  if (isTerminal_) {
    Draw(progress);
  } else if (!wasShown && !IsIndeterminate(progress)) {
    std::fprintf(stderr, "%s\n", HeadOf(progress).c_str());
  }
}

void ProgressLine::Update(const platform::Dictionary& progress) {
  const std::lock_guard lock(mutex_);
  if (isTerminal_) {
    Draw(progress);
    return;
  }
  const int64_t most = progress.GetInteger("MaxProgress"), current = progress.GetInteger("CurrentProgress");
  if (most < kWorthQuarters || IsIndeterminate(progress)) return;
  const int64_t quarter = current * 4 / most;
  if (quarter <= lastQuarter_) return;
  lastQuarter_ = quarter;
  std::fprintf(stderr, "%s: %lld of %lld\n", HeadOf(progress).c_str(), static_cast<long long>(current),
               static_cast<long long>(most));
}

void ProgressLine::Draw(const platform::Dictionary& progress) {
  std::string line = HeadOf(progress);
  const int64_t most = progress.GetInteger("MaxProgress");
  if (most > 0 && !IsIndeterminate(progress)) {
    line += "  " + std::to_string(progress.GetInteger("CurrentProgress")) + "/" + std::to_string(most);
  }
  const std::string status = progress.GetString("Status").Text();
  if (!status.empty()) line += "  " + status;
  line = platform::FirstCharacters(platform::OneLine(line), WidthOfTerminal() - 1);
  std::fprintf(stderr, "\r\033[K%s", line.c_str());
  std::fflush(stderr);
}

void ProgressLine::Hide() {
  const std::lock_guard lock(mutex_);
  if (isTerminal_ && isShown_) std::fprintf(stderr, "\r\033[K");
  isShown_ = false;
}

}  // namespace console
