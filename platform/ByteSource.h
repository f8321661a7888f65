// The bytes of a document, in memory or in a file. Of a file only a few windows are in memory, so that documents of any size
// can be read: forward in large steps, and here and there without losing what was read before. Not thread-safe.
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

class PLATFORM_API ByteSource {
 public:
  ByteSource() = default;                                                               // empty until Open
  explicit ByteSource(std::string_view bytes) : size_(bytes.size()), window_(bytes) {}  // which the caller keeps
  ByteSource(int descriptor, uint64_t size)
      : descriptor_(descriptor), size_(size) {}  // of an open regular file, as well
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;

  // Opens a regular file, once. Fails like ReadFile, and without waiting for a pipe or a device.
  std::error_code Open(const std::string& path);

  uint64_t Size() const { return size_; }
  // The bytes from `at` on: at least `count` of them, fewer only at the end of the document. Valid until the next call.
  // Empty once a read failed.
  std::string_view View(uint64_t at, size_t count) {
    if (at >= windowBegin_ && at - windowBegin_ < window_.size() && count <= window_.size() - (at - windowBegin_)) {
      return window_.substr(static_cast<size_t>(at - windowBegin_));
    }
    return Find(at, count);
  }
  // Of the first read that failed. A file that became shorter is std::errc::io_error.
  const std::error_code& Error() const { return error_; }
  // Of the file, owned by this object or by who gave it; -1 if there is none.
  int FileDescriptor() const { return descriptor_; }
  // How many bytes were read from the file so far.
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
