// The bytes of a document, or of a compressed part of it, read once from the start to the end. Not thread-safe.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/ByteSource.h"

class ByteStream {
 public:
  // Compressed text can be a thousand times as long as the file. No document has that much text.
  static constexpr uint64_t kMostBytes = uint64_t{512} << 20;

  virtual ~ByteStream() = default;
  // Reads up to `capacity` bytes. Returns 0 at the end, and after a failure, which Problem then describes.
  size_t Read(char* out, size_t capacity);
  // One line for a person; empty if all is well so far.
  const std::string& Problem() const { return mProblem; }

 protected:
  virtual size_t ReadSome(char* out, size_t capacity) = 0;
  void Fail(std::string problem) { mProblem = std::move(problem); }

 private:
  uint64_t mBytesRead = 0;
  std::string mProblem;
};

// The source must outlive the stream.
std::unique_ptr<ByteStream> StreamOf(platform::ByteSource& source);
// Unpacks data in the format of gzip.
std::unique_ptr<ByteStream> UnpackedStreamOf(platform::ByteSource& source);
