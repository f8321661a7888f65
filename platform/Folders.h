// Where things are on this machine. A host that keeps a sandbox, or a test, sets every place once at its start.
#pragma once

#include <string>

#include "platform/Export.h"

namespace platform {

struct Places {
  // Put before the absolute paths of the local domain: "/Library/Frameworks", "/Library".
  std::string fileSystemRoot;
  // The user's home folder; "Library" below it is the user domain. Empty if the environment names none: what belongs below
  // it then goes below the root.
  std::string home;
  // A folder of mode 0700 for sockets and the list of running applications.
  std::string runtime;
  // The fontconfig file that says which fonts are active; empty means the desktop's own.
  std::string fontConfigFile;
  // The file of the preferences of the user-interface framework.
  std::string preferencesFile;
  // Folder of diagnostic logs.
  std::string logs;
};

// Any thread may read; set before the first thread is started.
PLATFORM_API void SetPlaces(const Places& places);
// Unset fields are filled from the environment (HOME, XDG_RUNTIME_DIR, XDG_CONFIG_HOME, XDG_STATE_HOME).
PLATFORM_API const Places& GetPlaces();

// Absolute paths without a trailing separator.
PLATFORM_API std::string LocalLibraryFolder();     // root + "/Library"
PLATFORM_API std::string UserLibraryFolder();      // home + "/Library"
PLATFORM_API std::string LocalFrameworksFolder();  // root + "/Library/Frameworks"

}  // namespace platform
