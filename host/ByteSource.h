// The bytes of a document, in memory or in a file. Of a file only a window is in memory, so that documents of any size can
// be walked. Reading forward is fast; going back reads the window again. Not thread-safe.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <system_error>

namespace host {

class ByteSource {
 public:
  explicit ByteSource(std::string_view bytes);  // which the caller keeps
  ByteSource(int descriptor, uint64_t size);    // of a regular file, which the caller keeps open
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;

  uint64_t Size() const { return size_; }
  // The bytes from `at` on: at least `count` of them, fewer only at the end of the document. Valid until the next call.
  // Empty once a read failed.
  std::string_view View(uint64_t at, size_t count);
  // Of the first read that failed. A file that became shorter is std::errc::io_error.
  const std::error_code& Error() const { return error_; }

 private:
  void Load(uint64_t at, size_t count);

  int descriptor_ = -1;
  uint64_t size_ = 0;
  std::unique_ptr<char[]> buffer_;
  size_t capacity_ = 0;
  uint64_t windowBegin_ = 0;
  std::string_view window_;
  std::error_code error_;
};

}  // namespace host
