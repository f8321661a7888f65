#include "Readers/Document/ByteStream.h"

#include <zlib.h>

#include <algorithm>

namespace {

class SourceStream : public ByteStream {
 public:
  explicit SourceStream(platform::ByteSource& source) : mSource(source) {}

 private:
  size_t ReadSome(char* out, size_t capacity) override {
    const std::string_view view = mSource.View(mAt, std::min<size_t>(capacity, 1)).substr(0, capacity);
    view.copy(out, view.size());
    mAt += view.size();
    if (mSource.Error()) Fail(mSource.Error().message());
    return view.size();
  }

  platform::ByteSource& mSource;
  uint64_t mAt = 0;
};

class GzipStream : public ByteStream {
 public:
  explicit GzipStream(platform::ByteSource& source) : mPacked(source) {
    constexpr int kGzipOnly = 16;
    mIsOpen = inflateInit2(&mState, MAX_WBITS + kGzipOnly) == Z_OK;
  }
  ~GzipStream() override {
    if (mIsOpen) inflateEnd(&mState);
  }
  GzipStream(const GzipStream&) = delete;
  GzipStream& operator=(const GzipStream&) = delete;

 private:
  size_t ReadSome(char* out, size_t capacity) override {
    mState.next_out = reinterpret_cast<Bytef*>(out);
    mState.avail_out = static_cast<uInt>(capacity);
    int status = mIsOpen ? Z_OK : Z_MEM_ERROR;
    while (status == Z_OK && mState.avail_out == capacity) {
      if (mState.avail_in == 0) {
        mState.next_in = reinterpret_cast<Bytef*>(mBuffer);
        mState.avail_in = static_cast<uInt>(mPacked.Read(mBuffer, sizeof mBuffer));
      }
      status = mState.avail_in == 0 ? Z_BUF_ERROR : inflate(&mState, Z_NO_FLUSH);
    }
    if (status == Z_STREAM_END) {
      inflateEnd(&mState);
      mIsOpen = false;
      mIsAtEnd = true;
    } else if (status != Z_OK && !mIsAtEnd) {
      Fail("its compressed content is damaged");
    }
    return capacity - mState.avail_out;
  }

  SourceStream mPacked;
  z_stream mState{};
  bool mIsOpen = false, mIsAtEnd = false;
  char mBuffer[16384];
};

}  // namespace

size_t ByteStream::Read(char* out, size_t capacity) {
  if (!mProblem.empty() || capacity == 0) return 0;
  const size_t got = ReadSome(out, capacity);
  mBytesRead += got;
  if (mBytesRead > kMostBytes) Fail("its content is longer than " + std::to_string(kMostBytes >> 20) + " MiB");
  return mProblem.empty() ? got : 0;
}

std::unique_ptr<ByteStream> StreamOf(platform::ByteSource& source) { return std::make_unique<SourceStream>(source); }

std::unique_ptr<ByteStream> UnpackedStreamOf(platform::ByteSource& source) {
  return std::make_unique<GzipStream>(source);
}
