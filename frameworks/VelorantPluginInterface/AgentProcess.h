// Whether an agent of this user's state folder runs, be it ready to answer or only just started.
#pragma once

#include <string>

namespace plugin_interface {

// The runtime folder is the one that the agent's socket is in.
bool IsAgentProcessRunning(const std::string& runtimeFolder);

}  // namespace plugin_interface
