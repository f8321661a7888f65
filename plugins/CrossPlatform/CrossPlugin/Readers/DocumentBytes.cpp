#include "Readers/DocumentBytes.h"

#include <algorithm>

#include "Readers/PatternSearch.h"

bool DocumentBytes::Find(size_t from, size_t limit, std::string_view pattern, char forbiddenPrevious, size_t& at) {
  limit = std::min(limit, Size());
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
    // The places that are accepted unchecked count from the start of the search, not from the start of a window.
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
  while (from < Size() && Size() - from >= kPairSize) {
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
