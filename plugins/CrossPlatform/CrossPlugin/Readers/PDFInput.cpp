#include "Readers/PDFInput.h"

#include <algorithm>
#include <limits>

#include "Services/DiagnosticLog.h"

namespace {

bool IsWhitespace(int c) { return c == '\t' || c == '\n' || c == '\r' || c == ' '; }

bool IsBracket(int c) { return c == '[' || c == ']' || c == '(' || c == ')' || c == '<' || c == '>'; }

}  // namespace

void PDFInput::Begin() {
  mBlock = {};
  mPosition = mWindowLength = 0;
  mBlockBegin = mWindowBegin = 0;
  mLength = std::max<std::streamoff>(mStream.GetStreamLength(), 0);
  // Sound files of many producers cost up to five times their size, since each object costs a block.
  constexpr uint64_t kTimes = 16, kLeast = 65536;
  mLimit = mBytesRead + kTimes * static_cast<uint64_t>(mLength) + kLeast;
}

bool PDFInput::Take(uint64_t count) {
  if (mBytesRead + count <= mLimit) {
    mBytesRead += count;
    return true;
  }
  OutputIndentedAndFormattedString(0, "Giving up on a PDF whose objects overlap");
  mError = -1;
  return false;
}

void PDFInput::SeekAndReadBlock(std::streamoff position) {
  mBlock = {};
  mPosition = 0;
  mBlockBegin = position;
  ReadBlock();
}

void PDFInput::ReadBlock() {
  mBlockBegin += static_cast<std::streamoff>(mBlock.size());
  mBlock = {};
  mPosition = 0;
  const std::streamoff windowEnd = mWindowBegin + static_cast<std::streamoff>(mWindowLength);
  const auto wanted = std::min<std::streamoff>(kBlockSize, mLength - mBlockBegin);
  const bool isInWindow = mBlockBegin >= mWindowBegin && mBlockBegin + wanted <= windowEnd;
  if (!(isInWindow ? Take(kBlockSize) : ReadWindow(mBlockBegin))) return;
  if (mBlockBegin >= mWindowBegin) {
    const std::string_view window(mWindow.data(), mWindowLength);
    mBlock = window.substr(std::min(static_cast<size_t>(mBlockBegin - mWindowBegin), mWindowLength), kBlockSize);
  }
  if (!mBlock.empty()) return;
  mError = -1;
  OutputIndentedAndFormattedString(0, "FontParserPDF::ReadBlock() got error %d after reading %d bytes", mError, 0);
}

bool PDFInput::ReadWindow(std::streamoff begin) {
  // A seek may be followed by another one, so it reads only a block. Continued reading reads more each time.
  const std::streamoff end = mWindowBegin + static_cast<std::streamoff>(mWindowLength);
  const bool readsOn = mWindowLength > 0 && begin >= mWindowBegin && begin <= end;
  mWindowSize = readsOn ? std::min(2 * mWindowSize, mWindow.size()) : kBlockSize;
  std::streamsize size = std::clamp<std::streamoff>(mLength - begin, 0, static_cast<std::streamoff>(mWindowSize));
  mWindowBegin = begin;
  mWindowLength = 0;
  if (!Take(std::max(static_cast<uint64_t>(size), uint64_t{kBlockSize}))) return false;
  // After a failure the stream would refuse to seek.
  mStream.clear();
  mStream.seekg(begin);
  ReadStream(mStream, size, mWindow.data());
  mWindowLength = static_cast<size_t>(size);
  return true;
}

std::string PDFInput::ReadRange(std::streamoff begin, std::streamoff end) {
  const std::streamoff position = GetCurrentPosition();
  std::streamsize size = std::clamp<std::streamoff>(end - begin, 0, mLength);
  std::string bytes;
  if (!Take(static_cast<uint64_t>(size))) return bytes;
  bytes.resize(static_cast<size_t>(size));
  mStream.clear();
  mStream.seekg(begin);
  ReadStream(mStream, size, bytes.data());
  bytes.resize(static_cast<size_t>(size));
  SeekAndReadBlock(position);
  return bytes;
}

void PDFInput::SkipWhitespace() {
  while (IsWhitespace(PeekCharacter())) ReadCharacter();
}

const std::string& PDFInput::ProcessToken() {
  m_sWork.clear();
  SkipWhitespace();
  const int first = PeekCharacter();
  if (first == kEnd) return m_sWork;
  if (!IsBracket(first)) {
    ReadPlainToken();
    return m_sWork;
  }
  m_sWork.push_back(static_cast<char>(ReadCharacter()));
  if ((first == '<' || first == '>') && PeekCharacter() == first) m_sWork.push_back(static_cast<char>(ReadCharacter()));
  return m_sWork;
}

void PDFInput::ReadPlainToken() {
  const bool isName = PeekCharacter() == '/';
  while (m_sWork.size() < kMaxText) {
    const int c = PeekCharacter();
    if (c == kEnd || IsBracket(c) || (c == '/' && !m_sWork.empty())) return;
    ReadCharacter();
    if (c == '\\') return;
    if (IsWhitespace(c)) {
      if (c == '\r' && PeekCharacter() == '\n') ReadCharacter();
      return;
    }
    if (c != '#' || !isName) {
      m_sWork.push_back(static_cast<char>(c));
    } else if (!ReadEscape()) {
      return;
    }
  }
}

bool PDFInput::ReadEscape() {
  const int first = ReadCharacter(), second = ReadCharacter();
  if (second == kEnd) return false;
  // Right for two decimal digits only. Stored identification data hold names that were read this way; they must still
  // match, so the letters A to F stay wrong.
  m_sWork.push_back(static_cast<char>(first * 16 + second - '0'));
  return true;
}

const std::string& PDFInput::ProcessLine() {
  m_sWork.clear();
  while (m_sWork.size() < kMaxText) {
    const int c = ReadCharacter();
    if (c == '\r' && PeekCharacter() == '\n') ReadCharacter();
    if (c == kEnd || c == '\r' || c == '\n') break;
    m_sWork.push_back(static_cast<char>(c));
  }
  return m_sWork;
}

bool PDFInput::IsNumber(std::string_view token, int32_t& outValue) {
  int64_t value = 0;
  for (const char c : token) {
    if (c < '0' || c > '9') return false;
    value = std::min<int64_t>(value * 10 + (c - '0'), std::numeric_limits<int32_t>::max());
  }
  outValue = static_cast<int32_t>(value);
  return true;
}

int32_t PDFInput::GetCurrentNumber() {
  int32_t value = 0;
  IsNumber(ProcessToken(), value);
  return value;
}

void PDFInput::SkipObject() {
  int depth = 0;
  do {
    const std::string& token = ProcessToken();
    if (token == "<<" || token == "[" || token == "(") ++depth;
    if (token == ">>" || token == "]" || token == ")") --depth;
  } while (depth > 0 && mError == 0);
}

void PDFInput::SkipMediaBox() {
  constexpr int kNumbersAndEnd = 5;
  if (ProcessToken() != "[") return;
  for (int i = 0; i < kNumbersAndEnd && ProcessToken() != "]"; ++i) continue;
}

void PDFInput::ReadID() {
  for (size_t i = 0; i < kMaxText; ++i) {
    const int c = ReadCharacter();
    if (c == ']' || c == kEnd) return;
  }
}

void PDFInput::SkipTo(std::string_view token) {
  while (ProcessToken() != token && mError == 0) continue;
}
