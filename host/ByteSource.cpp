#include "host/ByteSource.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace host {

namespace {
constexpr size_t kWindowSize = size_t{128} * 1024;  // fits into the cache of one processor
}

ByteSource::ByteSource(std::string_view bytes) : size_(bytes.size()), window_(bytes) {}

ByteSource::ByteSource(int descriptor, uint64_t size) : descriptor_(descriptor), size_(size) {}

std::string_view ByteSource::View(uint64_t at, size_t count) {
  if (at >= size_ || error_) return {};
  count = static_cast<size_t>(std::min<uint64_t>(count, size_ - at));
  if (at < windowBegin_ || at + count > windowBegin_ + window_.size()) Load(at, std::max(count, kWindowSize));
  return error_ ? std::string_view() : window_.substr(static_cast<size_t>(at - windowBegin_));
}

void ByteSource::Load(uint64_t at, size_t count) {
  count = static_cast<size_t>(std::min<uint64_t>(count, size_ - at));
  window_ = {};
  if (capacity_ < count) {
    buffer_ = std::make_unique_for_overwrite<char[]>(count);
    capacity_ = count;
  }
  size_t filled = 0;
  while (filled < count) {
    const ssize_t got = pread(descriptor_, buffer_.get() + filled, count - filled, static_cast<off_t>(at + filled));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) {
      error_ = got < 0 ? std::error_code(errno, std::generic_category()) : std::make_error_code(std::errc::io_error);
      return;
    }
    filled += static_cast<size_t>(got);
  }
  windowBegin_ = at;
  window_ = {buffer_.get(), count};
}

}  // namespace host
