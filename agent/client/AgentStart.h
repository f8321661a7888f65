// Starts the agent for a program that cannot do without it.
#pragma once

#include <memory>
#include <string>

#include "agent/client/AgentConnection.h"

namespace agent_client {

// Connects to the agent of the state folder, which must be set up (StateFolder.h). If none runs, or if the one that
// runs is about to end, starts `program`, and again if that ends at once. The connection has been greeted, so the agent
// does not end while it is open, and programs find it in the list of running applications of platform::GetPlaces().
// Returns null, with one line in *problem, after 20 seconds without success. Ignores notifications.
std::unique_ptr<AgentConnection> StartAgent(const std::string& stateFolder, const std::string& program,
                                            std::string* problem);

}  // namespace agent_client
