#include "agent/client/AgentFolders.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "agent/include/AgentProtocol.h"
#include "platform/Checksum.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/FontConfiguration.h"
#include "platform/LastError.h"

namespace agent_client {

namespace {

// Of the real path, so that all names of a folder have the same.
std::string ChecksumOf(const std::string& stateFolder) {
  std::error_code unresolved;
  const std::string real = std::filesystem::weakly_canonical(stateFolder, unresolved).string();
  const uint64_t checksum = platform::AddToChecksum(platform::kEmptyChecksum, unresolved ? stateFolder : real);
  char name[17];
  std::snprintf(name, sizeof name, "%016" PRIx64, checksum);
  return name;
}

// False for a link, too: everybody may create one in /tmp.
bool IsPrivateFolder(const std::string& path) {
  struct stat info;
  return lstat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == geteuid() &&
         (info.st_mode & 0077) == 0;
}

// Empty if there is none.
std::string SubstituteFor(const std::string& stateFolder) {
  const std::string name = "/" + ChecksumOf(stateFolder);
  for (const std::string& folder : platform::SessionFolders()) {
    if (IsPrivateFolder(folder) && IsPrivateFolder(folder + name)) return folder + name;
  }
  return "";
}

// An agent that has been running since the disk could be written serves the folder as before.
bool HasAgent(const std::string& runtimeFolder) {
  const platform::Descriptor file(open(LockFileIn(runtimeFolder).c_str(), O_RDONLY | O_CLOEXEC));
  return file && flock(file.Get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

// Tries it: a full disk, or one of another machine, refuses what the rights allow.
std::error_code TryFileIn(const std::string& folder) {
  std::string path = folder + "/.try-XXXXXX";
  const platform::Descriptor file(mkostemp(path.data(), O_CLOEXEC));
  if (!file) return platform::LastError();
  unlink(path.c_str());
  return {};
}

constexpr const char* kOwnerName = "/owner";  // names the state folder

std::error_code FillSubstitute(const std::string& folder, const std::string& stateFolder) {
  for (const char* name : {"/run", "/agent", "/logs"}) {
    if (const std::error_code error = platform::MakeFolder(folder + name, 0700)) return error;
  }
  if (const std::error_code error = platform::MakeFolder(folder + "/active")) return error;
  if (platform::FileExists(folder + kOwnerName)) return {};
  const std::error_code error = platform::ReplaceFile(
      folder + "/fonts.conf", platform::FontConfigurationText({.includes = {stateFolder + "/fonts.conf"},
                                                               .folders = {folder + "/active"},
                                                               .cacheFolder = folder + "/cache",
                                                               .rejected = {stateFolder + "/active/*"}}));
  return error ? error : platform::ReplaceFile(folder + kOwnerName, stateFolder);
}

bool MakeSubstitute(const std::string& stateFolder) {
  for (const std::string& parent : platform::SessionFolders()) {
    std::error_code error;
    platform::OpenPrivateFolder(parent, error);
    const std::string folder = parent + "/" + ChecksumOf(stateFolder);
    if (!error) platform::OpenPrivateFolder(folder, error);
    if (!error) return !FillSubstitute(folder, stateFolder);
  }
  return false;
}

}  // namespace

std::string DesktopLinksFolder(const std::string& home) {
  const char* data = std::getenv("XDG_DATA_HOME");
  return (data && *data == '/' ? data : home + "/.local/share") + std::string("/fonts/nexcore");
}

std::string SessionFolderOf(const std::string& stateFolder) {
  std::string substitute = SubstituteFor(stateFolder);
  return substitute.empty() ? stateFolder : substitute;
}

std::error_code MakeSessionFolder(const std::string& stateFolder) {
  if (const std::string substitute = SubstituteFor(stateFolder); !substitute.empty()) {
    return FillSubstitute(substitute, stateFolder);
  }
  const std::string usual = stateFolder + "/run";
  if (HasAgent(usual)) return {};
  std::error_code error = platform::MakeFolder(usual, 0700);
  if (!error) {
    error = TryFileIn(usual);
    // Somebody is removing the state folder.
    if (error == std::errc::no_such_file_or_directory) return error;
  }
  return error && MakeSubstitute(stateFolder) ? std::error_code() : error;
}

std::string RuntimeFolderOf(const std::string& stateFolder) { return SessionFolderOf(stateFolder) + "/run"; }

std::string StateFolderAt(const std::string& runtimeFolder) {
  std::string folder = std::filesystem::path(runtimeFolder).parent_path().string(), owner;
  return platform::ReadFile(folder + kOwnerName, owner) ? folder : owner;
}

std::string LockFileIn(const std::string& runtimeFolder) {
  return runtimeFolder + "/" + agent_protocol::kAgentSocketName + ".lock";
}

std::string ActiveFolderOf(const std::string& stateFolder, bool isDesktop, const std::string& home) {
  if (isDesktop) return DesktopLinksFolder(home) + "/" + ChecksumOf(stateFolder);
  return SessionFolderOf(stateFolder) + "/" + agent_protocol::kActiveFolderName;
}

}  // namespace agent_client
