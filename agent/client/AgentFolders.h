// Where an agent and the programs that look for it put what lasts only for a session: the socket, and the links that
// make fonts active.
//
// Usually that is the state folder itself. If STATE/run cannot be written, for example on a read-only disk, a
// substitute is made, XDG_RUNTIME_DIR/velorant/CHECKSUM or /tmp/velorant-UID/CHECKSUM, and used instead for
//   run/         socket, lock and list of running applications
//   active/      links of active fonts, except with "desktop"
//   fonts.conf   STATE/fonts.conf with these links in place of those in STATE/active
//   agent/       the logs of the agent
//   owner        the path of the state folder
//   logs/        what the agent writes before it has a log
// Once a substitute is there, all programs use it as long as the session lasts, even if STATE/run can be written again:
// otherwise two programs could look in different places, and two agents serve one folder.
#pragma once

#include <string>
#include <system_error>

namespace agent_client {

// The folder in the user's font folder that contains one folder of links for each state folder with "desktop". `home`
// is the user's home folder.
std::string DesktopLinksFolder(const std::string& home);

// Returns the state folder, or its substitute if there is one. Creates nothing.
std::string SessionFolderOf(const std::string& stateFolder);

// Creates STATE/run, or the substitute if that cannot be written and no agent runs there. Call it before you start an
// agent. Returns why STATE/run cannot be used if no substitute can be made either.
std::error_code MakeSessionFolder(const std::string& stateFolder);

// Returns the folder of the socket and the lock.
std::string RuntimeFolderOf(const std::string& stateFolder);

// The state folder of such a folder.
std::string StateFolderAt(const std::string& runtimeFolder);
// The file in it that a running agent has locked.
std::string LockFileIn(const std::string& runtimeFolder);

// Returns the folder of links of a state folder, an absolute path. In desktop mode its name is a checksum of the state
// folder's real path, so that each agent has its own.
std::string ActiveFolderOf(const std::string& stateFolder, bool isDesktop, const std::string& home);

}  // namespace agent_client
