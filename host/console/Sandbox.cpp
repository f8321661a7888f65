#include "host/console/Sandbox.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "agent/client/AgentFolders.h"
#include "agent/client/StateFolder.h"
#include "agent/include/AgentProtocol.h"
#include "platform/Bundle.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/FontConfiguration.h"
#include "platform/LastError.h"

namespace console {

namespace {

namespace fs = std::filesystem;

constexpr const char* kActiveFonts = "/usr/share/fonts/truetype/dejavu";
const std::vector<std::string>& DefaultLibrary() {
  static const std::vector<std::string> sFolders = {
      "/usr/share/fonts/truetype/liberation2",
      "/usr/share/fonts/opentype/urw-base35",
      "/usr/share/fonts/type1/urw-base35",
      "/usr/share/fonts/X11/Type1",
  };
  return sFolders;
}
constexpr const char* kLockName = "/host.lock";

std::string Problem(const std::string& path, const std::error_code& error) {
  return path + ": " + platform::DescribeError(error);
}

std::string LastProblem(const std::string& path) { return Problem(path, platform::LastError()); }

std::string Absolute(const std::string& path) {
  std::error_code error;
  std::string whole = fs::absolute(path, error).lexically_normal().string();
  while (whole.size() > 1 && whole.back() == '/') whole.pop_back();
  return whole;
}

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

}  // namespace

Sandbox::~Sandbox() {
  if (lock_ && ftruncate(lock_.Get(), 0) != 0) std::perror("host.lock");
}

std::string Sandbox::AgentExecutable() const { return app_ + "/agent/" + agent_protocol::kAgentName; }
std::string Sandbox::InterfaceFramework() const { return app_ + "/agent/VelorantPluginInterface.framework"; }
std::string Sandbox::UserInterfaceFramework() const { return app_ + "/agent/PluginFiles/VelorantPlugins.framework"; }
std::string Sandbox::EventsFramework() const { return app_ + "/host/Frameworks/PlugPlug.framework"; }
std::string Sandbox::FontListerExecutable() const { return app_ + "/docfonts/docfonts"; }
std::string Sandbox::PanelPageFolder() const { return app_ + "/host/panel"; }
std::string Sandbox::PluginBundle() const { return app_ + "/host/Plug-ins/AutoActivation.plugin"; }

std::string Sandbox::Prepare(const SandboxOptions& options) {
  app_ = fs::path(platform::Bundle::Main()->Folder()).parent_path().string();
  const std::string own = options.desktop ? platform::UserStateFolder() : platform::SandboxStateFolder();
  folder_ = Absolute(options.stateFolder.empty() ? own : options.stateFolder);
  if (platform::FileExists(folder_) && !platform::FolderExists(folder_)) return folder_ + ": is not a folder";
  if (const std::error_code error = platform::MakeFolder(folder_)) return Problem(folder_, error);
  std::string problem = Lock();
  if (problem.empty()) problem = MakeFolders();
  if (problem.empty()) problem = SetUp(options);
  if (problem.empty()) problem = WriteFontConfiguration();
  activeFolder_ = agent_client::ActiveFolderOf(folder_, options.desktop, Environment("HOME"));
  if (problem.empty()) platform::SetPlaces(agent_client::PlacesOf(folder_, options.desktop));
  return problem;
}

std::string Sandbox::Lock() {
  const std::string path = folder_ + kLockName;
  platform::Descriptor file(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  if (!file) return LastProblem(path);
  char text[16] = {};
  const bool isKnown = pread(file.Get(), text, sizeof text - 1, 0) > 0;
  if (flock(file.Get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK) return LastProblem(path);
    return folder_ + ": is in use by another host" + (isKnown ? ", process " + std::to_string(std::atoi(text)) : "");
  }
  killedPredecessor_ = std::atoi(text);
  const std::string own = std::to_string(getpid()) + "\n";
  if (ftruncate(file.Get(), 0) != 0 || pwrite(file.Get(), own.data(), own.size(), 0) < 0) return LastProblem(path);
  lock_ = std::move(file);
  return "";
}

bool Sandbox::IsInPlace() const {
  struct stat held = {}, there = {};
  return fstat(lock_.Get(), &held) == 0 && stat((folder_ + kLockName).c_str(), &there) == 0 &&
         held.st_dev == there.st_dev && held.st_ino == there.st_ino;
}

std::string Sandbox::MakeFolders() const {
  for (const char* name : {"/cache", "/copies"}) {
    if (const std::error_code error = platform::MakeFolder(folder_ + name)) return Problem(folder_ + name, error);
  }
  return "";
}

std::string Sandbox::SetUp(const SandboxOptions& options) {
  agent_client::StateFolderSetup setup{folder_, AgentExecutable()};
  for (const std::string& folder : options.library) setup.library.push_back(Absolute(folder));
  setup.newLibrary = DefaultLibrary();
  setup.desktop = options.desktop;
  agent_client::StoredSetup stored;
  std::string problem = agent_client::SetUpStateFolder(setup, &stored);
  library_ = std::move(stored.library);
  newAgentConfiguration_ = stored.isChanged;
  return problem;
}

std::string Sandbox::WriteFontConfiguration() const {
  return agent_client::ReplaceIfOther(folder_ + "/fonts.conf",
                                      platform::FontConfigurationText({.folders = {kActiveFonts, folder_ + "/active"},
                                                                       .cacheFolder = folder_ + "/cache"}));
}

std::string Sandbox::PlaceForCopy(const std::string& document) {
  const fs::path name = fs::path(document).filename();
  std::string place;
  for (int number = 1; place.empty() || std::find(copies_.begin(), copies_.end(), place) != copies_.end(); ++number) {
    const std::string suffix = number > 1 ? "-" + std::to_string(number) : "";
    place = folder_ + "/copies/" + name.stem().string() + suffix + name.extension().string();
  }
  copies_.push_back(place);
  return place;
}

}  // namespace console
