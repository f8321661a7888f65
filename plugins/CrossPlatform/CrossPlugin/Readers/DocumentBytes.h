// Searches the bytes of a document, which is read as platform/ByteSource.h says.
//
// After a failed read every search returns "not found", and the results of earlier ones are not valid. Not thread-safe.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/ByteSource.h"

class DocumentBytes {
 public:
  DocumentBytes() = default;                                          // empty until Open
  explicit DocumentBytes(std::string_view bytes) : mSource(bytes) {}  // not owned

  // Call once. Fails unless this is a regular file that can be read.
  std::error_code Open(const std::string& path) { return mSource.Open(path); }
  size_t Size() const { return mSource.Size(); }
  bool HasFailed() const { return static_cast<bool>(mSource.Error()); }
  const std::error_code& Error() const { return mSource.Error(); }
  // For readers that do more than search.
  platform::ByteSource& Source() { return mSource; }

  // Finds the first match in [from, limit) that is not preceded by the forbidden byte. 0 forbids nothing. Matches at
  // `from` and at the next byte are accepted unchecked. Writes `at` on success only.
  bool Find(size_t from, size_t limit, std::string_view pattern, char forbiddenPrevious, size_t& at);
  // Finds the first position from `from` on at which `first` is followed by `second` or by `otherSecond`.
  bool FindPair(size_t from, char first, char second, char otherSecond, size_t& at);
  bool Holds(size_t at, std::string_view pattern);
  // Returns the bytes of [begin, end), fewer at the document's end.
  std::string Copy(size_t begin, size_t end);

 private:
  // Returns the bytes from `at` on: at least this many, or all that are left. Empty after a failure.
  std::string_view View(size_t at, size_t least) {
    // The byte before stays in the window, to check what precedes a match.
    if (at == 0) return mSource.View(0, least);
    const std::string_view view = mSource.View(at - 1, least + 1);
    return view.empty() ? view : view.substr(1);
  }

  platform::ByteSource mSource;
};
