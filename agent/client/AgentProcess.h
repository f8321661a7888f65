// Finds the agent's process without its socket.
#pragma once

#include <string>

namespace agent_client {

// Returns the process ID of the agent of this program's state folder, once it is ready; 0 if there is none.
int AnnouncedAgentProcess();

// True also for an agent that is not ready yet. runtimeFolder is the folder of the agent's socket.
bool IsAgentProcessRunning(const std::string& runtimeFolder);

// Ends the agent of this program's state folder, for example because its configuration has changed. Waits until it has
// ended. Returns an empty text, also if there is none, or one line.
std::string EndAgent();

}  // namespace agent_client
