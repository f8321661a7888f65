#include "host/console/Sandbox.h"

#include <fcntl.h>
#include <libxml/entities.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>

#include "agent/client/AgentFolders.h"
#include "agent/include/AgentProtocol.h"
#include "platform/Bundle.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/LastError.h"

namespace console {

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

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
constexpr const char* kLaunchFolder = "/root/Library/Velorant";
constexpr const char* kLaunchConfiguration = "/com.velorant.Nexcore-LaunchInfo.conf";

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

std::string ReplaceIfOther(const std::string& path, const std::string& content, bool* isOther = nullptr) {
  std::string old;
  const std::error_code unreadable = platform::ReadFile(path, old);
  if (!unreadable && old == content) return "";
  if (isOther) *isOther = !unreadable;
  const std::error_code error = platform::ReplaceFile(path, content);
  return error ? Problem(path, error) : "";
}

std::string EscapeXML(const std::string& text) {
  const std::unique_ptr<xmlChar, void (*)(void*)> escaped(
      xmlEncodeSpecialChars(nullptr, reinterpret_cast<const xmlChar*>(text.c_str())), xmlFree);
  if (!escaped) throw std::bad_alloc();
  return reinterpret_cast<const char*>(escaped.get());
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
  folder_ = Absolute(options.stateFolder.empty() ? platform::UserStateFolder() : options.stateFolder);
  if (platform::FileExists(folder_) && !platform::FolderExists(folder_)) return folder_ + ": is not a folder";
  if (const std::error_code error = platform::MakeFolder(folder_)) return Problem(folder_, error);
  activeFolder_ = agent_client::ActiveFolderOf(folder_, options.desktop, Environment("HOME"));
  std::string problem = Lock();
  if (problem.empty()) problem = MakeFolders();
  if (problem.empty()) problem = WriteLaunchConfiguration();
  if (problem.empty()) problem = WriteAgentConfiguration(options);
  if (problem.empty()) problem = WriteFontConfiguration();
  if (problem.empty()) SetPlaces(options.desktop);
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
  for (const char* name : {"/home", "/logs", "/cache", "/copies", "/active", kLaunchFolder}) {
    if (const std::error_code error = platform::MakeFolder(folder_ + name)) return Problem(folder_ + name, error);
  }
  const std::error_code error = platform::MakeFolder(folder_ + "/run", 0700);
  return error ? Problem(folder_ + "/run", error) : "";
}

std::string Sandbox::WriteAgentConfiguration(const SandboxOptions& options) {
  const std::string path = folder_ + "/" + agent_protocol::kConfigurationName;
  Json configuration = Json::object();
  std::string text;
  const std::error_code unreadable = platform::ReadFile(path, text);
  if (!unreadable) {
    configuration = Json::parse(text, nullptr, false);
    if (!configuration.is_object()) return path + ": is not a JSON object; repair it or move it away";
  } else if (unreadable != std::errc::no_such_file_or_directory) {
    return Problem(path, unreadable);
  }
  if (!options.library.empty()) {
    configuration["library"] = Json::array();
    for (const std::string& folder : options.library) configuration["library"].push_back(Absolute(folder));
  } else if (!configuration.contains("library")) {
    configuration["library"] = DefaultLibrary();
  }
  configuration["desktop"] = options.desktop;
  configuration["exitWithLastClient"] = true;
  try {
    library_ = configuration["library"].get<std::vector<std::string>>();
    return ReplaceIfOther(path, configuration.dump(2) + "\n", &newAgentConfiguration_);
  } catch (const Json::exception& exception) {
    return path + ": " + exception.what();
  }
}

std::string Sandbox::WriteFontConfiguration() const {
  const auto entry = [](const char* element, const std::string& path) {
    return std::string("  <") + element + ">" + EscapeXML(path) + "</" + element + ">\n";
  };
  return ReplaceIfOther(folder_ + "/fonts.conf",
                        "<?xml version=\"1.0\"?>\n"
                        "<!DOCTYPE fontconfig SYSTEM \"urn:fontconfig:fonts.dtd\">\n"
                        "<fontconfig>\n" +
                            entry("dir", kActiveFonts) + entry("dir", folder_ + "/active") +
                            entry("cachedir", folder_ + "/cache") + "</fontconfig>\n");
}

std::string Sandbox::WriteLaunchConfiguration() const {
  const std::string agent = AgentExecutable();
  // The file format cannot represent these characters.
  for (const std::string& path : {agent, folder_}) {
    if (path.find_first_of("#\r\n") != std::string::npos || path.ends_with(" ")) {
      return path + ": a path with '#', a line end or a blank at its end cannot be passed to the plug-in";
    }
  }
  return ReplaceIfOther(folder_ + kLaunchFolder + kLaunchConfiguration,
                        "nexcore.args=" + folder_ + "\r\nnexcore.path=" + agent + "\r\n");
}

void Sandbox::SetPlaces(bool desktop) const {
  platform::Places places;
  places.fileSystemRoot = folder_ + "/root";
  places.home = folder_ + "/home";
  places.runtime = folder_ + "/run";
  if (!desktop) places.fontConfigFile = folder_ + "/fonts.conf";
  places.preferencesFile = folder_ + "/preferences.plist";
  places.logs = folder_ + "/logs";
  platform::SetPlaces(places);
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
