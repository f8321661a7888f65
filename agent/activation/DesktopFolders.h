// The folders of links in the user's font folder, one for each state folder with desktop mode. The file kOwnerName in
// it names the state folder, so that any other agent can find and remove the links of a killed agent.
#pragma once

#include <functional>
#include <string>
#include <system_error>

#include "agent/store/Configuration.h"
#include "platform/RunLoop.h"

namespace agent {

inline constexpr const char* kOwnerName = ".owner";  // fontconfig ignores it

// Creates the folder and records that it belongs to the state folder.
std::error_code ClaimDesktopFolder(const std::string& folder, const std::string& stateFolder);

// Removes the links of all agents that are not running, except for fonts that their users activated. Does not touch the
// folder that `own` uses or the folder of a running agent. The caller holds the lock of its own state folder.
void RemoveLinksOfDeadAgents(const Configuration& own, platform::RunLoop& loop,
                             const std::function<void(const std::string& line)>& report);

}  // namespace agent
