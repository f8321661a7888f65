// What the operating system's font service, fontconfig, says is active now.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "platform/Export.h"

namespace platform {

// Every question is asked of a fresh configuration, so that a change made a moment ago is seen.
PLATFORM_API std::set<std::string> ActivePostScriptNames();
// A font whose family name or PostScript name is exactly this.
PLATFORM_API bool IsFontNameActive(const std::string& name);

struct ActiveFont {
  std::string postScriptName;
  std::string family;
  std::string file;
  int faceIndex = 0;
};
// All scalable fonts of the configuration, in fontconfig's order.
PLATFORM_API std::vector<ActiveFont> ActiveFonts();

}  // namespace platform
