// How much of the host's is in a plug-in's hands: everything that it was given and has not given back.
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
