#include "agent/client/AgentFolders.h"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "agent/include/AgentProtocol.h"
#include "platform/Checksum.h"

namespace agent_client {

std::string DesktopLinksFolder(const std::string& home) {
  const char* data = std::getenv("XDG_DATA_HOME");
  return (data && *data == '/' ? data : home + "/.local/share") + std::string("/fonts/nexcore");
}

std::string ActiveFolderOf(const std::string& stateFolder, bool isDesktop, const std::string& home) {
  if (!isDesktop) return stateFolder + "/" + agent_protocol::kActiveFolderName;
  std::error_code unresolved;
  const std::string real = std::filesystem::weakly_canonical(stateFolder, unresolved).string();
  const uint64_t checksum = platform::AddToChecksum(platform::kEmptyChecksum, unresolved ? stateFolder : real);
  char name[17];
  std::snprintf(name, sizeof name, "%016" PRIx64, checksum);
  return DesktopLinksFolder(home) + "/" + name;
}

}  // namespace agent_client
