// The bytes of a document as a search sees them: all of them, of which a small window stands in memory. A document is read
// from its beginning to its end at the speed of the processor's cache; going back costs reading the window again.
//
// A read that fails ends every search with "not found" and is remembered: what was found is void then. One thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "GFile.h"

class DocumentBytes {
 public:
  // None until Open.
  DocumentBytes() = default;
  // Bytes in memory, which the caller keeps.
  explicit DocumentBytes(std::string_view bytes) : mWindow(bytes), mSize(bytes.size()) {}
  DocumentBytes(const DocumentBytes&) = delete;
  DocumentBytes& operator=(const DocumentBytes&) = delete;

  // False if the file can't be opened or its size not asked. Once.
  bool Open(const std::string& path);
  size_t Size() const { return mSize; }
  bool HasFailed() const { return mHasFailed; }

  // The first match in [from, limit) that is not preceded by the forbidden byte; 0 forbids nothing, and matches at `from`
  // and the byte behind it are accepted unseen. `at` is written on success only.
  bool Find(size_t from, size_t limit, std::string_view pattern, char forbiddenPrevious, size_t& at);
  // The first place from `from` on at which `first` is followed by `second` or by `otherSecond`.
  bool FindPair(size_t from, char first, char second, char otherSecond, size_t& at);
  bool Holds(size_t at, std::string_view pattern);
  // The bytes of [begin, end), fewer at the document's end.
  std::string Copy(size_t begin, size_t end);

 private:
  // What stands from `at` on: at least so many bytes, or all that are left; empty after a failure.
  std::string_view View(size_t at, size_t least);
  bool Load(size_t at, size_t count);

  GFile mFile;
  std::vector<char> mBuffer;
  std::string_view mWindow;
  size_t mWindowBegin = 0;
  size_t mSize = 0;
  bool mHasFailed = false;
};
