// Counts the host's objects that a plug-in has received and not freed.
#pragma once

#include <cstddef>

namespace host {

struct LiveObjectCounts {
  size_t descriptors = 0;
  size_t references = 0;
  size_t lists = 0;
  size_t handles = 0;
  size_t strings = 0;
  size_t blocks = 0;
  size_t suites = 0;  // acquired and not released
  size_t Total() const { return descriptors + references + lists + handles + strings + blocks + suites; }
};

LiveObjectCounts LiveObjects();

}  // namespace host
