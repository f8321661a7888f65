// The folders of links that the agents of desktop mode have in the user's font folder, one for each state folder. Such a
// folder names its state folder in the file kOwnerName, so that the links of an agent that was killed can be found and
// removed by any other agent.
#pragma once

#include <functional>
#include <string>
#include <system_error>

#include "agent/Configuration.h"
#include "platform/RunLoop.h"

namespace agent {

inline constexpr const char* kOwnerName = ".owner";  // fontconfig ignores it

// Makes the folder and notes that it belongs to the state folder.
std::error_code ClaimDesktopFolder(const std::string& folder, const std::string& stateFolder);

// Removes the links of each agent that no longer lives, but for fonts that its user asked to stay active. Touches neither
// the folder that `own` uses now nor that of a living agent; the caller holds the lock of its own state folder.
void RemoveLinksOfDeadAgents(const Configuration& own, platform::RunLoop& loop,
                             const std::function<void(const std::string& line)>& report);

}  // namespace agent
