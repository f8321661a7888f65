// The bytes of a PDF file as characters, tokens and lines, with the limits that keep a broken file from being read at
// length. Reads through the parser's stream and sets the parser's error field, which ends every loop over tokens.
//
// All input goes through a block of 256 bytes, and a seek reads a block again. Blocks come from a window of the file, so
// objects that are close together are read from the disk once. Each block costs the bytes that are read from the disk for
// it, at least 256. The total cost is limited to a multiple of the file's size, even if objects overlap.
//
// The window is not platform::ByteSource: that reads 16 KiB at each jump. Here most jumps lead to an object of 100 bytes that
// is read once, so this window starts with one block and doubles while reading goes on. With 16 KiB a jump, the limit of the
// cost could not tell a sound file with many small objects from a hostile one. Not thread-safe.
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

  // Begins at the start of the stream, which has just been opened, and allows its multiple of bytes once more. Others may
  // move the stream's position at any time.
  void Begin();
  void SeekAndReadBlock(std::streamoff position);
  // The offset of the next character in the file.
  std::streamoff GetCurrentPosition() const { return mBlockBegin + static_cast<std::streamoff>(mPosition); }
  std::streamoff GetStreamLength() const { return mLength; }
  // The cost in bytes so far, of all that was begun. Not less than what was read from an unbuffered stream.
  uint64_t GetBytesRead() const { return mBytesRead; }

  // Up to 256 bytes from where the last block ended; none is an error.
  void ReadBlock();
  std::string_view Block() const { return mBlock; }
  // The next character, or kEnd; the end of the file is an error.
  static constexpr int kEnd = -1;
  int ReadCharacter();
  int PeekCharacter();
  void SkipWhitespace();

  // The next token, at most 256 characters, valid until the next call. Empty at the end of the file, and for a lone "\".
  const std::string& ProcessToken();
  const std::string& LastToken() const { return m_sWork; }
  // The characters up to the end of the line, at most 256, valid until the next call.
  const std::string& ProcessLine();
  // The next token as a number; 0 for another token. Numbers stop at the limit of 32 bits.
  int32_t GetCurrentNumber();
  // Whether all characters are digits, as they are of an empty token. The value of a number is given out.
  static bool IsNumber(std::string_view token, int32_t& outValue);

  // Tokens up to where the brackets and parentheses that began are closed: one token if it opens none.
  void SkipObject();
  void SkipMediaBox();
  // At most 256 characters, up to a "]".
  void ReadID();
  // Tokens up to this one, or an error.
  void SkipTo(std::string_view token);
  // The bytes of [begin, end), fewer at the file's end. The place where reading goes on stays.
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
  size_t mWindowSize = kBlockSize;  // how much was asked for
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
