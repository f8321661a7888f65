// Sets up an agent's state folder: what a program writes there before it, or a library that it loads, starts the agent.
//
//   STATE/nexcore.json   the agent's configuration (AgentProtocol.h)
//   STATE/root/Library/Velorant/com.velorant.Nexcore-LaunchInfo.conf   by which the plug-in finds the agent
//   STATE/home, logs, active, run   empty folders; on a disk that cannot be written, those in AgentFolders.h
//
// Each file is replaced atomically, and only if its content changes. Stored data is neither changed nor lost by a
// failure. Not thread-safe.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/Folders.h"

namespace agent_client {

struct StateFolderSetup {
  std::string stateFolder;                // absolute, without a slash at its end
  std::string agentProgram;               // absolute
  std::vector<std::string> library{};     // absolute folders; empty to keep the stored list
  std::vector<std::string> newLibrary{};  // the list of a folder that has none
  std::optional<bool> desktop{};          // activate for the user's desktop; empty to keep what is stored
  bool newDesktop = false;                // what a folder gets that has nothing stored
};

// The folder of the first library of a user who has named none. `home` is the user's home folder.
std::string DefaultLibraryFolder(const std::string& home);

// For a state folder whose fonts are for the user's desktop: what is stored stays, and a folder that has nothing stored
// gets the default library.
StateFolderSetup DesktopSetup(const std::string& stateFolder, const std::string& agentProgram, const std::string& home);

struct StoredSetup {
  std::vector<std::string> library;
  bool isDesktop = false;
  bool isChanged = false;  // an agent that started earlier would now read another configuration
};

// Creates what is missing. Returns an empty text, or one line that names the file. `stored` receives what holds now; it
// must not be null.
std::string SetUpStateFolder(const StateFolderSetup& setup, StoredSetup* stored);

// The places (platform/Folders.h) of a program that works with this state folder. fontConfigFile is the folder's
// fonts.conf unless its fonts are active on the desktop. The program that needs this file writes it.
platform::Places PlacesOf(const std::string& stateFolder, bool isDesktop);

// Replaces the file if its content is another. Returns an empty text, or one line that names the file. isOther may be
// null; it is set only if there was another content.
std::string ReplaceIfOther(const std::string& path, const std::string& content, bool* isOther = nullptr);

}  // namespace agent_client
