#include "agent/fonts/Workgroup.h"

#include <algorithm>
#include <utility>

namespace agent {

const Workgroup* FindWorkgroup(const Workgroups& workgroups, uint32_t id) {
  const auto found = std::ranges::find(workgroups, id, &Workgroup::id);
  return found == workgroups.end() ? nullptr : &*found;
}

bool IsSearchedBefore(uint32_t a, uint32_t b) {
  const auto rank = [](uint32_t id) { return std::pair(id == kSystemFontsID ? 2 : id == kWebFontsID ? 1 : 0, id); };
  return rank(a) < rank(b);
}

}  // namespace agent
