// A look at a shared object before the dynamic linker maps it.
#pragma once

#include <string>

#include "platform/Export.h"

namespace platform {

// What keeps the file from being loaded whole, as "PATH: reason"; empty if nothing does. The dynamic linker maps a file
// without asking for its size, and touching what is beyond the end of a file that was cut off ends the process. What is
// not an object of this machine's class is left to the linker, which refuses it with a reason. Any thread.
PLATFORM_API std::string ProblemOfSharedObject(const std::string& path);

}  // namespace platform
