// Data that finds a file again on another day: under its path, or, if nothing stands there any more, under the new name that
// the same file got in its folder. The data can be stored; they hold the path, which is not to be shown to other users.
#pragma once

#include <string>

#include "platform/Export.h"
#include "platform/Value.h"

namespace platform {

// Of an existing file or folder; a relative path is taken from the working folder. Null if there is none.
PLATFORM_API Data CreateBookmark(const std::string& path);
// The absolute path of what the bookmark was made of; empty if that is gone or was moved to another folder, or if the data
// are no bookmark. Nobody is asked and nothing is mounted for it.
PLATFORM_API std::string ResolveBookmark(const Data& bookmark);

}  // namespace platform
