// Reads a PDF file as characters, tokens and lines, with limits for broken files. Sets the parser's error field, which
// ends every loop over tokens. Not thread-safe.
//
// All input goes through a block of 256 bytes, and a seek reads a block again. Each block costs the bytes that are read
// from the disk for it, at least 256. The total cost is limited to a multiple of the file's size, even if objects
// overlap. Most jumps lead to an object of 100 bytes that is read once, so a jump reads one block from the disk: with
// more, the limit could not tell a sound file with many small objects from a hostile one.
#pragma once

#include <cstdint>
#include <ios>
#include <optional>
#include <string>
#include <string_view>

#include "platform/ByteSource.h"

class PDFInput {
 public:
  // The error field, 0 or -1, must outlive the object.
  explicit PDFInput(int& error) : mError(error) {}
  PDFInput(const PDFInput&) = delete;
  PDFInput& operator=(const PDFInput&) = delete;

  // Opens the file, begins at its start and resets the limit. Returns false if it cannot be opened.
  bool Open(const std::string& path);
  // Nothing can be read before the next Open.
  void Close();
  void SeekAndReadBlock(std::streamoff position);
  // Returns the offset of the next character in the file.
  std::streamoff GetCurrentPosition() const { return mBlockBegin + static_cast<std::streamoff>(mPosition); }
  std::streamoff GetStreamLength() const { return mLength; }
  // Returns the total cost in bytes of all files so far. Not less than the bytes read from the disk.
  uint64_t GetBytesRead() const { return mCost; }

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
  // For a reader of a part with a limit of its own, which costs nothing here. Before reading goes on here, a seek must
  // follow. Only between Open and Close.
  platform::ByteSource& Bytes() { return *mBytes; }

 private:
  static constexpr size_t kMaxText = 256;

  static constexpr size_t kBlockSize = 256;

  std::string_view View(std::streamoff begin, size_t count);
  bool ReadEscape();
  void ReadPlainToken();

  int& mError;
  std::string m_sWork;
  std::optional<platform::ByteSource> mBytes;
  std::string_view mBlock;
  size_t mPosition = 0;
  std::streamoff mBlockBegin = 0;
  std::streamoff mLength = 0;
  uint64_t mCost = 0, mLimit = 0;
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
