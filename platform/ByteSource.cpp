#include "platform/ByteSource.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/FileBytes.h"

namespace platform {

std::error_code ByteSource::Open(const std::string& path) {
  struct stat info {};
  std::error_code error;
  file_ = OpenRegularFile(path, info, error);
  if (error) return error;
  descriptor_ = file_.Get();
  size_ = static_cast<uint64_t>(info.st_size);
  return {};
}

void ByteSource::Use(Window& window) {
  window.lastUse = ++uses_;
  current_ = static_cast<size_t>(&window - windows_.data());
  windowBegin_ = window.begin;
  window_ = {window.buffer.get(), window.size};
}

std::string_view ByteSource::Find(uint64_t at, size_t count) {
  if (at >= size_ || error_) return {};
  count = static_cast<size_t>(std::min<uint64_t>(count, size_ - at));
  if (descriptor_ < 0) return window_.substr(static_cast<size_t>(at - windowBegin_));
  Window* target = nullptr;
  for (Window& window : windows_) {
    if (at >= window.begin && at + count <= window.begin + window.size) target = &window;
  }
  if (!target) {
    // Sequential reading reuses the current window and keeps the others for positions to which the reader returns.
    Window& current = windows_[current_];
    const bool goesOn = at >= current.begin && at <= current.begin + current.size;
    target = goesOn ? &current
                    : &*std::min_element(windows_.begin(), windows_.end(),
                                         [](const Window& a, const Window& b) { return a.lastUse < b.lastUse; });
    const size_t next = goesOn && current.size > 0 ? std::min(2 * current.size, sizes_.most) : sizes_.first;
    // A view larger than a window is the only one in memory.
    if (count > sizes_.most) windows_ = {};
    if (!Load(*target, at, std::max(count, next))) return {};
  }
  Use(*target);
  return window_.substr(static_cast<size_t>(at - windowBegin_));
}

bool ByteSource::Load(Window& window, uint64_t at, size_t count) {
  count = static_cast<size_t>(std::min<uint64_t>(count, size_ - at));
  window.size = 0;
  window_ = {};
  if (window.capacity < count) {
    window.buffer = std::make_unique_for_overwrite<char[]>(count);
    window.capacity = count;
  }
  size_t filled = 0;
  while (filled < count) {
    const ssize_t got =
        pread(descriptor_, window.buffer.get() + filled, count - filled, static_cast<off_t>(at + filled));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) {
      error_ = got < 0 ? LastError() : std::make_error_code(std::errc::io_error);
      return false;
    }
    filled += static_cast<size_t>(got);
  }
  bytesRead_ += count;
  window.begin = at;
  window.size = count;
  return true;
}

}  // namespace platform
