#include "Readers/DocumentBytes.h"

#include <algorithm>

#include "Readers/PatternSearch.h"

namespace {
// Fits beside everything else into the cache of one processor.
constexpr size_t kWindowSize = size_t{128} * 1024;
}  // namespace

bool DocumentBytes::Open(const std::string& path) {
  unsigned long long size = 0;
  if (mFile.Open(path, GFile::eRead | GFile::eBinary) != 0 || mFile.GetFileSize(size) != 0) return false;
  mSize = static_cast<size_t>(size);
  return true;
}

bool DocumentBytes::Load(size_t at, size_t count) {
  if (mHasFailed) return false;
  mHasFailed = mFile.SetFilePosition(GFile::eFromStart, at) != 0 || mFile.Read(count, mBuffer) != 0;
  mWindow = mHasFailed ? std::string_view() : std::string_view(mBuffer.data(), mBuffer.size());
  mWindowBegin = at;
  return !mHasFailed;
}

std::string_view DocumentBytes::View(size_t at, size_t least) {
  if (at >= mSize) return {};
  least = std::min(least, mSize - at);
  if (at < mWindowBegin || at + least > mWindowBegin + mWindow.size()) {
    // One byte before the place stays in sight for who asks what stands before a match.
    const size_t begin = at > 0 ? at - 1 : 0;
    if (!Load(begin, std::min(mSize - begin, std::max(least + 1, kWindowSize)))) return {};
  }
  return mWindow.substr(at - mWindowBegin);
}

bool DocumentBytes::Find(size_t from, size_t limit, std::string_view pattern, char forbiddenPrevious, size_t& at) {
  limit = std::min(limit, mSize);
  size_t next = from;
  while (next < limit && limit - next >= pattern.size()) {
    const std::string_view window = View(next, pattern.size()).substr(0, limit - next);
    if (window.size() < pattern.size()) return false;
    const auto* found = static_cast<const char*>(
        memmem(window.data(), window.size(), pattern.data(), pattern.size(), forbiddenPrevious));
    if (!found) {
      next += window.size() - pattern.size() + 1;
      continue;
    }
    next += static_cast<size_t>(found - window.data());
    // What is accepted unseen is told from where the search began, not from where a window does.
    if (forbiddenPrevious == 0 || next - from <= 1 || !Holds(next - 1, std::string_view(&forbiddenPrevious, 1))) {
      at = next;
      return true;
    }
    ++next;
  }
  return false;
}

bool DocumentBytes::FindPair(size_t from, char first, char second, char otherSecond, size_t& at) {
  constexpr size_t kPairSize = 2;
  while (from < mSize && mSize - from >= kPairSize) {
    const std::string_view window = View(from, kPairSize);
    if (window.size() < kPairSize) return false;
    if (const char* found = ::FindPair(window.data(), window.data() + window.size(), first, second, otherSecond)) {
      at = from + static_cast<size_t>(found - window.data());
      return true;
    }
    from += window.size() - kPairSize + 1;
  }
  return false;
}

bool DocumentBytes::Holds(size_t at, std::string_view pattern) {
  return View(at, pattern.size()).substr(0, pattern.size()) == pattern;
}

std::string DocumentBytes::Copy(size_t begin, size_t end) {
  return begin < end ? std::string(View(begin, end - begin).substr(0, end - begin)) : std::string();
}
