#include "platform/Folders.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace platform {

namespace {

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

std::string Either(const std::string& value, const std::string& otherwise) { return value.empty() ? otherwise : value; }

// A relative path counts as unset, as in every program that follows the desktop's base directories.
std::string FolderOfEnvironment(const char* name) {
  std::string value = Environment(name);
  return value.starts_with('/') ? value : "";
}

// Services and scheduled jobs may start without the variable.
std::string HomeFolder() {
  if (std::string home = FolderOfEnvironment("HOME"); !home.empty()) return home;
  const passwd* user = getpwuid(geteuid());
  return user && user->pw_dir ? user->pw_dir : "";
}

// With sudo the variable may name another user's folder, which must not get files of root.
bool IsOurs(const std::string& folder) {
  struct stat info;
  return !folder.empty() && stat(folder.c_str(), &info) == 0 && info.st_uid == geteuid();
}

std::string FolderWithoutSession() { return "/tmp/velorant-" + std::to_string(geteuid()); }

std::string RuntimeFolder() {
  const std::string runtime = FolderOfEnvironment("XDG_RUNTIME_DIR");
  return IsOurs(runtime) ? runtime + "/velorant" : FolderWithoutSession();
}

std::string StatesFolder(const std::string& home) {
  return Either(FolderOfEnvironment("XDG_STATE_HOME"), home + "/.local/state") + "/velorant";
}

Places WithDefaults(Places places) {
  places.home = Either(places.home, HomeFolder());
  places.runtime = Either(places.runtime, RuntimeFolder());
  const std::string config = Either(FolderOfEnvironment("XDG_CONFIG_HOME"), places.home + "/.config");
  places.preferencesFile = Either(places.preferencesFile, config + "/velorant/preferences.plist");
  places.logs = Either(places.logs, StatesFolder(places.home) + "/logs");
  return places;
}

// Leaked on purpose: detached threads still read it while the process ends.
Places& Current() {
  static auto* places = new Places(WithDefaults({}));
  return *places;
}

}  // namespace

void SetPlaces(const Places& places) { Current() = WithDefaults(places); }
const Places& GetPlaces() { return Current(); }

std::string UserStateFolder() { return StatesFolder(GetPlaces().home) + "/desktop"; }
std::string SandboxStateFolder() { return StatesFolder(GetPlaces().home) + "/host"; }
std::vector<std::string> SessionFolders() {
  std::vector<std::string> folders = {RuntimeFolder()};
  // Where the variable usually points; scheduled jobs do not have it.
  const std::string usual = "/run/user/" + std::to_string(geteuid());
  if (IsOurs(usual)) folders.push_back(usual + "/velorant");
  folders.push_back(FolderWithoutSession());
  return folders;
}
std::string LocalLibraryFolder() { return GetPlaces().fileSystemRoot + "/Library"; }
std::string UserLibraryFolder() { return GetPlaces().home + "/Library"; }
std::string LocalFrameworksFolder() { return LocalLibraryFolder() + "/Frameworks"; }

}  // namespace platform
