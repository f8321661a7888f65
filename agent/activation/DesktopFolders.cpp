#include "agent/activation/DesktopFolders.h"

#include <filesystem>
#include <map>
#include <vector>

#include "agent/activation/ActiveFolder.h"
#include "agent/client/AgentFolders.h"
#include "agent/include/AgentProtocol.h"
#include "agent/store/InstanceLock.h"
#include "agent/store/UserStore.h"
#include "platform/Files.h"
#include "platform/Folders.h"

namespace agent {

namespace {

namespace fs = std::filesystem;
using Report = std::function<void(const std::string& line)>;

// The fonts that the agent of the state folder would link at its next start. Nothing if its database is gone or
// unusable; that agent links later what it finds.
std::map<uint32_t, int32_t> StoredActivations(const Configuration& configuration) {
  const std::string path = configuration.DataFolder() + "/user.db";
  if (!platform::FileExists(path)) return {};
  try {
    return UserStore(path).Activations();
  } catch (const StoreError&) {
    return {};
  }
}

// Removes the folder if it contains no links and no files of anybody else.
void RemoveIfEmpty(const std::string& folder) {
  std::vector<fs::path> children;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    if (entry.path().filename() != kOwnerName) children.push_back(entry.path());
  }
  bool isEmpty = !error;
  for (const fs::path& child : children) isEmpty &= fs::is_directory(child) && fs::remove(child, error);
  if (!isEmpty) return;
  fs::remove(folder + "/" + kOwnerName, error);
  fs::remove(folder, error);
}

void RemoveUnstoredLinks(const std::string& folder, const Configuration& owner, platform::RunLoop& loop,
                         const Report& report) {
  const std::map<uint32_t, int32_t> stored = StoredActivations(owner);
  {
    ActiveFolder links(folder, LinkKind::kHardPreferred, loop);
    std::error_code error = links.Prepare();
    size_t removed = 0;
    for (const uint32_t id : links.LinkedIDs()) {
      if (error || stored.contains(id)) continue;
      error = links.Unlink(id);
      removed += !error;
    }
    links.FinishTouches();
    if (error) report(folder + ": links of an agent that was killed stay: " + platform::DescribeError(error));
    if (removed > 0) report(folder + ": removed " + std::to_string(removed) + " links of an agent that was killed");
  }
  if (stored.empty()) RemoveIfEmpty(folder);
}

}  // namespace

std::error_code ClaimDesktopFolder(const std::string& folder, const std::string& stateFolder) {
  if (const std::error_code error = platform::MakeFolder(folder)) return error;
  return platform::ReplaceFile(folder + "/" + kOwnerName, stateFolder);
}

void RemoveLinksOfDeadAgents(const Configuration& own, platform::RunLoop& loop, const Report& report) {
  const std::string home = platform::GetPlaces().home;
  std::vector<std::string> folders;
  std::error_code none;
  for (const auto& entry : fs::directory_iterator(agent_client::DesktopLinksFolder(home), none)) {
    folders.push_back(entry.path().string());
  }
  for (const std::string& folder : folders) {
    Configuration owner;
    if (folder == own.ActiveFolderPath() || platform::ReadFile(folder + "/" + kOwnerName, owner.stateFolder)) continue;
    InstanceLock lock;
    const bool wasOwn = folder == agent_client::ActiveFolderOf(own.stateFolder, true, home);
    if (!wasOwn && !lock.TakeFromDead(owner.RuntimeFolder())) continue;
    RemoveUnstoredLinks(folder, wasOwn ? own : owner, loop, report);
  }
}

}  // namespace agent
