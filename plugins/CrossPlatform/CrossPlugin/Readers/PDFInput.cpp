#include "Readers/PDFInput.h"

#include <algorithm>
#include <limits>

#include "Services/DiagnosticLog.h"

namespace {

constexpr platform::ReadSizes kReadSizes = {.first = 256, .most = 8192};

bool IsWhitespace(int c) { return c == '\t' || c == '\n' || c == '\r' || c == ' '; }

bool IsBracket(int c) { return c == '[' || c == ']' || c == '(' || c == ')' || c == '<' || c == '>'; }

}  // namespace

bool PDFInput::Open(const std::string& path) {
  Close();
  if (mBytes.emplace(kReadSizes).Open(path)) return false;
  mLength = static_cast<std::streamoff>(mBytes->Size());
  // Sound files of many producers cost up to five times their size, since each object costs a block.
  constexpr uint64_t kTimes = 16, kLeast = 65536;
  mLimit = mCost + kTimes * mBytes->Size() + kLeast;
  return true;
}

void PDFInput::Close() {
  mBlock = {};
  mPosition = 0;
  mBlockBegin = mLength = 0;
  mBytes.reset();
}

// Returns so many bytes, fewer at the file's end, and counts the cost.
std::string_view PDFInput::View(std::streamoff begin, size_t count) {
  if (mCost + std::max(count, kReadSizes.most) > mLimit) {
    OutputIndentedAndFormattedString(0, "Giving up on a PDF whose objects overlap");
    mError = -1;
    return {};
  }
  const uint64_t before = mBytes->BytesRead();
  const std::string_view view = begin < 0 ? std::string_view() : mBytes->View(static_cast<uint64_t>(begin), count);
  mCost += std::max<uint64_t>(count, mBytes->BytesRead() - before);
  return view.substr(0, count);
}

void PDFInput::SeekAndReadBlock(std::streamoff position) {
  mBlock = {};
  mPosition = 0;
  mBlockBegin = position;
  ReadBlock();
}

void PDFInput::ReadBlock() {
  mBlockBegin += static_cast<std::streamoff>(mBlock.size());
  mPosition = 0;
  mBlock = View(mBlockBegin, kBlockSize);
  if (!mBlock.empty()) return;
  mError = -1;
  OutputIndentedAndFormattedString(0, "FontParserPDF::ReadBlock() got error %d after reading %d bytes", mError, 0);
}

std::string PDFInput::ReadRange(std::streamoff begin, std::streamoff end) {
  const std::streamoff position = GetCurrentPosition();
  std::string bytes(View(begin, static_cast<size_t>(std::clamp<std::streamoff>(end - begin, 0, mLength))));
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
