// Checks a shared object before the dynamic linker maps it.
#pragma once

#include <string>

#include "platform/Export.h"

namespace platform {

// Returns why the file cannot be loaded, as "PATH: reason", or an empty string. The dynamic linker does not check the
// size of a file, and access beyond the end of a truncated one crashes the process. Objects of another machine class
// are left to the linker, which refuses them with a reason. Thread-safe.
PLATFORM_API std::string ProblemOfSharedObject(const std::string& path);

}  // namespace platform
