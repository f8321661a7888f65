// Data that finds a file again later: by its path first; if nothing is there, by its identity among the files of its
// folder, where it may have been renamed. The data may be stored. It contains the path, so do not show it to other
// users. Thread-safe.
#pragma once

#include <string>

#include "platform/Export.h"
#include "platform/Value.h"

namespace platform {

// Creates the bookmark of an existing file or folder. A relative path starts at the working folder. Null if nothing is
// at the path.
PLATFORM_API Data CreateBookmark(const std::string& path);
// Returns the absolute path of the file or folder. Empty if it is gone or was moved to another folder, or if the data
// is not a bookmark. Shows no dialog and mounts nothing.
PLATFORM_API std::string ResolveBookmark(const Data& bookmark);

}  // namespace platform
