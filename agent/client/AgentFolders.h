// Where an agent keeps the links that make fonts active. The agent and the programs that look for these links use it.
#pragma once

#include <string>

namespace agent_client {

// The folder in the user's font folder that contains one folder of links for each state folder with "desktop". `home`
// is the user's home folder.
std::string DesktopLinksFolder(const std::string& home);

// Returns the folder of links of a state folder, an absolute path. In desktop mode its name is a checksum of the state
// folder's real path, so that each agent has its own.
std::string ActiveFolderOf(const std::string& stateFolder, bool isDesktop, const std::string& home);

}  // namespace agent_client
