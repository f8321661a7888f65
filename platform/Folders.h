// The folders and files of this machine that the programs use. A host with a sandbox, or a test, sets them at its
// start.
#pragma once

#include <string>
#include <vector>

#include "platform/Export.h"

namespace platform {

struct Places {
  // Prefix of the absolute paths of the local domain, "/Library" and "/Library/Frameworks". Empty for the real ones.
  std::string fileSystemRoot;
  // The user's home folder; "Library" in it is the user domain. If the environment names none, it stays empty and the
  // paths below it start at the root.
  std::string home;
  // The folder for sockets and the list of running applications. Its users create it with mode 0700.
  std::string runtime;
  // The fontconfig file that says which fonts are active. Empty for the user's own configuration.
  std::string fontConfigFile;
  // The file with the preferences of the user-interface framework.
  std::string preferencesFile;
  // The folder for diagnostic logs.
  std::string logs;
};

// Not thread-safe: set the places before the first other thread starts.
PLATFORM_API void SetPlaces(const Places& places);
// Returns the places. Empty fields are filled from the environment (HOME, XDG_RUNTIME_DIR, XDG_CONFIG_HOME,
// XDG_STATE_HOME), except fileSystemRoot and fontConfigFile. Any thread may read them.
PLATFORM_API const Places& GetPlaces();

// Absolute paths without a trailing separator.
PLATFORM_API std::string UserStateFolder();     // of the agent that serves the user's desktop
PLATFORM_API std::string SandboxStateFolder();  // of a host with a sandbox, and of its agent
// This user's folders for what lasts only for a session, the best one first. They may be missing. Programs with
// different environments find those of each other among them.
PLATFORM_API std::vector<std::string> SessionFolders();
PLATFORM_API std::string LocalLibraryFolder();     // root + "/Library"
PLATFORM_API std::string UserLibraryFolder();      // home + "/Library"
PLATFORM_API std::string LocalFrameworksFolder();  // root + "/Library/Frameworks"

}  // namespace platform
