// Finds out whether an agent of this user's state folder is running, even if it is not ready yet.
#pragma once

#include <string>

namespace plugin_interface {

// runtimeFolder is the folder of the agent's socket.
bool IsAgentProcessRunning(const std::string& runtimeFolder);

}  // namespace plugin_interface
