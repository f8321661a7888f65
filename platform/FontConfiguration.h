// Configuration files of fontconfig, which say what fonts a program sees.
#pragma once

#include <string>
#include <vector>

#include "platform/Export.h"

namespace platform {

struct FontConfiguration {
  std::vector<std::string> includes{};  // absolute paths of other configuration files; one that is missing is no error
  std::vector<std::string> folders{};   // absolute; searched with all below them
  std::string cacheFolder{};            // absolute; empty for those of the included files
  std::vector<std::string> rejected{};  // patterns with '*' for the paths of files that no program gets
};

// Returns the text of the file, in UTF-8.
PLATFORM_API std::string FontConfigurationText(const FontConfiguration& configuration);

// Returns the path of the file that programs read by themselves: the one that FONTCONFIG_FILE names, or the system's.
// Empty if there is none.
PLATFORM_API std::string UserFontConfigurationFile();

}  // namespace platform
