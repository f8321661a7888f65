// Reads a PDF file as characters, tokens and lines, with limits for broken files. Reads through the parser's stream and
// sets the parser's error field, which ends every loop over tokens. Not thread-safe.
//
// All input goes through a block of 256 bytes, and a seek reads a block again. Blocks come from a window of the file,
// so objects that are close together are read from the disk once. Each block costs the bytes that are read from the
// disk for it, at least 256. The total cost is limited to a multiple of the file's size, even if objects overlap.
//
// The window is not platform::ByteSource: that reads 16 KiB at each jump. Here most jumps lead to an object of 100
// bytes that is read once, so this window starts with one block and doubles while reading goes on. With 16 KiB a jump,
// the limit of the cost could not tell a sound file with many small objects from a hostile one.
#pragma once

#include <array>
#include <cstdint>
#include <ios>
#include <string>
#include <string_view>

#include "Readers/FStreamWrapper.h"

class PDFInput {
 public:
  // Both must outlive the object. The error field is 0 or -1.
  PDFInput(FStreamWrapper& stream, int& error) : mStream(stream), mError(error) {}
  PDFInput(const PDFInput&) = delete;
  PDFInput& operator=(const PDFInput&) = delete;

  // Begins at the start of the stream, which has just been opened, and resets the limit. Other code may move the
  // stream's position at any time.
  void Begin();
  void SeekAndReadBlock(std::streamoff position);
  // Returns the offset of the next character in the file.
  std::streamoff GetCurrentPosition() const { return mBlockBegin + static_cast<std::streamoff>(mPosition); }
  std::streamoff GetStreamLength() const { return mLength; }
  // Returns the total cost in bytes so far. Not less than the bytes read from an unbuffered stream.
  uint64_t GetBytesRead() const { return mBytesRead; }

  // Reads up to 256 bytes after the last block. No bytes is an error.
  void ReadBlock();
  std::string_view Block() const { return mBlock; }
  // Returns the next character, or kEnd. The end of the file is an error.
  static constexpr int kEnd = -1;
  int ReadCharacter();
  int PeekCharacter();
  void SkipWhitespace();

  // Returns the next token, at most 256 characters, valid until the next call. Empty at the end of the file, and for a
  // lone "\".
  const std::string& ProcessToken();
  const std::string& LastToken() const { return m_sWork; }
  // Returns the characters up to the end of the line, at most 256, valid until the next call.
  const std::string& ProcessLine();
  // Returns the next token as a number; 0 for another token. Numbers are clamped to 32 bits.
  int32_t GetCurrentNumber();
  // Returns true if all characters are digits, which is so for an empty token, and the value.
  static bool IsNumber(std::string_view token, int32_t& outValue);

  // Skips tokens until all opened brackets and parentheses are closed: one token if it opens none.
  void SkipObject();
  void SkipMediaBox();
  // Skips at most 256 characters, up to a "]".
  void ReadID();
  // Skips tokens up to this one. Sets an error if there is none.
  void SkipTo(std::string_view token);
  // Returns the bytes of [begin, end), fewer at the file's end. Does not change the read position.
  std::string ReadRange(std::streamoff begin, std::streamoff end);

 private:
  static constexpr size_t kMaxText = 256;

  static constexpr size_t kBlockSize = 256;

  bool Take(uint64_t count);
  bool ReadWindow(std::streamoff begin);
  bool ReadEscape();
  void ReadPlainToken();

  FStreamWrapper& mStream;
  int& mError;
  std::string m_sWork;
  std::string_view mBlock;  // within the window
  size_t mPosition = 0;
  std::streamoff mBlockBegin = 0;
  std::array<char, 8192> mWindow{};
  size_t mWindowLength = 0;
  size_t mWindowSize = kBlockSize;  // the requested size
  std::streamoff mWindowBegin = 0;
  std::streamoff mLength = 0;
  uint64_t mBytesRead = 0, mLimit = 0;
};

inline int PDFInput::PeekCharacter() {
  if (mPosition == mBlock.size()) ReadBlock();
  return mPosition < mBlock.size() ? static_cast<unsigned char>(mBlock[mPosition]) : kEnd;
}

inline int PDFInput::ReadCharacter() {
  const int c = PeekCharacter();
  if (c != kEnd) ++mPosition;
  return c;
}
