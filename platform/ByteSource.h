// The bytes of a document, in memory or in a file. Only a few windows of a file are in memory, so that documents of any
// size can be read, forward in large steps or at random without losing what was read before. Not thread-safe.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/Descriptor.h"
#include "platform/Export.h"

namespace platform {

// How many bytes a source reads at once: `first` after a jump, and twice as many each time while reading goes on, up to
// `most`. The defaults are about one object of a layered document, and what fits into a processor's cache.
struct ReadSizes {
  size_t first = size_t{16} << 10;
  size_t most = size_t{128} << 10;
};

class PLATFORM_API ByteSource {
 public:
  ByteSource() = default;  // empty until Open
  explicit ByteSource(const ReadSizes& sizes) : sizes_(sizes) {}
  explicit ByteSource(std::string_view bytes) : size_(bytes.size()), window_(bytes) {}  // owned by the caller
  ByteSource(int descriptor, uint64_t size)
      : descriptor_(descriptor), size_(size) {}  // an open regular file, owned by the caller
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;

  // Opens a regular file. Call it once. Fails like ReadFile, and does not wait for a pipe or a device.
  std::error_code Open(const std::string& path);

  uint64_t Size() const { return size_; }
  // Returns the bytes from `at` on: at least `count` of them, or fewer at the end of the document. Valid until the next
  // call. Empty after a failed read.
  std::string_view View(uint64_t at, size_t count) {
    if (at >= windowBegin_ && at - windowBegin_ < window_.size() && count <= window_.size() - (at - windowBegin_)) {
      return window_.substr(static_cast<size_t>(at - windowBegin_));
    }
    return Find(at, count);
  }
  // The error of the first failed read. std::errc::io_error if the file has become shorter.
  const std::error_code& Error() const { return error_; }
  // The file's descriptor, owned by this object or by the caller; -1 without a file.
  int FileDescriptor() const { return descriptor_; }
  // The number of bytes read from the file so far.
  uint64_t BytesRead() const { return bytesRead_; }

 private:
  struct Window {
    std::unique_ptr<char[]> buffer;
    size_t capacity = 0;
    uint64_t begin = 0;
    size_t size = 0;
    uint64_t lastUse = 0;
  };

  std::string_view Find(uint64_t at, size_t count);
  bool Load(Window& window, uint64_t at, size_t count);
  void Use(Window& window);

  ReadSizes sizes_;
  Descriptor file_;
  int descriptor_ = -1;
  uint64_t size_ = 0;
  std::array<Window, 4> windows_;
  size_t current_ = 0;  // the window that window_ shows
  uint64_t windowBegin_ = 0;
  std::string_view window_;
  uint64_t uses_ = 0;
  uint64_t bytesRead_ = 0;
  std::error_code error_;
};

}  // namespace platform
