// Workgroups: named groups of fonts. A library is a workgroup of folders. The workgroup of the operating system's fonts
// has no folders of its own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace agent {

enum WorkgroupType : int32_t { kLibraryType = 3, kSystemType = 4, kWebFontsType = 8 };

struct Workgroup {
  uint32_t id = 0;
  std::string name;
  WorkgroupType type = kLibraryType;
  std::vector<std::string> folders;  // absolute; they need not exist
};
using Workgroups = std::vector<Workgroup>;  // each with an ID of its own

// Those that are always there, except that web fonts can be off. The user's own ones begin at kFirstOwnLibraryID.
inline constexpr uint32_t kFontLibraryID = 1, kSystemFontsID = 2, kWebFontsID = 3;
inline constexpr uint32_t kFirstOwnLibraryID = 11;
inline constexpr const char* kFontLibraryName = "Font Library";

// Null if there is no such workgroup.
const Workgroup* FindWorkgroup(const Workgroups& workgroups, uint32_t id);
const Workgroup* FindWorkgroup(Workgroups&&, uint32_t) = delete;  // it would end before the result
// True if fonts of workgroup a come before those of b: libraries, then web fonts, then the operating system's.
bool IsSearchedBefore(uint32_t a, uint32_t b);

}  // namespace agent
