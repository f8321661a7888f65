#include "agent/client/StateFolder.h"

#include <nlohmann/json.hpp>

#include "agent/client/AgentFolders.h"
#include "agent/include/AgentProtocol.h"
#include "platform/Files.h"

namespace agent_client {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kLaunchFolder = "/root/Library/Velorant";
constexpr const char* kLaunchConfiguration = "/com.velorant.Nexcore-LaunchInfo.conf";

std::string Problem(const std::string& path, const std::error_code& error) {
  return path + ": " + platform::DescribeError(error);
}

std::string MakeFolders(const std::string& folder) {
  if (const std::error_code error = MakeSessionFolder(folder)) return Problem(folder + "/run", error);
  const std::string session = SessionFolderOf(folder);
  for (const std::string& path : {folder + "/home", session + "/logs", session + "/active", folder + kLaunchFolder}) {
    if (const std::error_code error = platform::MakeFolder(path)) return Problem(path, error);
  }
  return "";
}

std::string WriteLaunchConfiguration(const StateFolderSetup& setup) {
  // The file format cannot represent these characters.
  for (const std::string& path : {setup.agentProgram, setup.stateFolder}) {
    if (path.find_first_of("#\r\n") != std::string::npos || path.ends_with(" ")) {
      return path + ": a path with '#', a line end or a blank at its end cannot be passed to the plug-in";
    }
  }
  return ReplaceIfOther(setup.stateFolder + kLaunchFolder + kLaunchConfiguration,
                        "nexcore.args=" + setup.stateFolder + "\r\nnexcore.path=" + setup.agentProgram + "\r\n");
}

std::string WriteAgentConfiguration(const StateFolderSetup& setup, StoredSetup& stored) {
  const std::string path = setup.stateFolder + "/" + agent_protocol::kConfigurationName;
  Json configuration = Json::object();
  std::string text;
  const std::error_code unreadable = platform::ReadFile(path, text);
  if (!unreadable) {
    configuration = Json::parse(text, nullptr, false);
    if (!configuration.is_object()) return path + ": is not a JSON object; repair it or move it away";
  } else if (unreadable != std::errc::no_such_file_or_directory) {
    return Problem(path, unreadable);
  }
  if (!setup.library.empty()) {
    configuration["library"] = setup.library;
  } else if (!configuration.contains("library")) {
    configuration["library"] = setup.newLibrary;
  }
  if (setup.desktop) {
    configuration["desktop"] = *setup.desktop;
  } else if (!configuration.contains("desktop")) {
    configuration["desktop"] = setup.newDesktop;
  }
  configuration["exitWithLastClient"] = true;
  try {
    stored.library = configuration["library"].get<std::vector<std::string>>();
    stored.isDesktop = configuration["desktop"].get<bool>();
    return ReplaceIfOther(path, configuration.dump(2) + "\n", &stored.isChanged);
  } catch (const Json::exception& exception) {
    return path + ": " + exception.what();
  }
}

}  // namespace

std::string ReplaceIfOther(const std::string& path, const std::string& content, bool* isOther) {
  std::string old;
  const std::error_code unreadable = platform::ReadFile(path, old);
  if (!unreadable && old == content) return "";
  if (isOther) *isOther = !unreadable;
  const std::error_code error = platform::ReplaceFile(path, content);
  return error ? Problem(path, error) : "";
}

std::string DefaultLibraryFolder(const std::string& home) { return home + "/Fonts"; }

StateFolderSetup DesktopSetup(const std::string& stateFolder, const std::string& agentProgram,
                              const std::string& home) {
  StateFolderSetup setup{stateFolder, agentProgram};
  setup.newLibrary = {DefaultLibraryFolder(home)};
  setup.newDesktop = true;
  return setup;
}

std::string SetUpStateFolder(const StateFolderSetup& setup, StoredSetup* stored) {
  std::string problem = MakeFolders(setup.stateFolder);
  if (problem.empty()) problem = WriteLaunchConfiguration(setup);
  if (problem.empty()) problem = WriteAgentConfiguration(setup, *stored);
  return problem;
}

platform::Places PlacesOf(const std::string& stateFolder, bool isDesktop) {
  const std::string session = SessionFolderOf(stateFolder);
  platform::Places places;
  places.fileSystemRoot = stateFolder + "/root";
  places.home = stateFolder + "/home";
  places.runtime = RuntimeFolderOf(stateFolder);
  if (!isDesktop) places.fontConfigFile = session + "/fonts.conf";
  places.preferencesFile = stateFolder + "/preferences.plist";
  places.logs = session + "/logs";
  return places;
}

}  // namespace agent_client
