#include "agent/store/Configuration.h"

#include <algorithm>
#include <filesystem>

#include "agent/client/AgentFolders.h"
#include "agent/include/AgentProtocol.h"
#include "agent/store/Json.h"
#include "platform/Files.h"
#include "platform/Folders.h"

namespace agent {

namespace {

std::string WithoutTrailingSlash(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

using Folders = std::vector<std::string>;

Folders CleanFolders(const Configuration& configuration, const Folders& folders) {
  Folders clean;
  for (const std::string& folder : folders) clean.push_back(CleanFolder(configuration, folder));
  return clean;
}

// Throws Json::exception for a key that is missing or of the wrong type.
void ReadOwnLibraries(const Json& libraries, Configuration& configuration) {
  for (const Json& library : libraries) {
    Workgroup group{library.at("id"), library.at("name"), kLibraryType,
                    CleanFolders(configuration, library.at("folders").get<Folders>())};
    configuration.lastLibraryID = std::max(configuration.lastLibraryID, group.id);
    configuration.ownLibraries.push_back(std::move(group));
  }
}

// Throws Json::exception for a key of the wrong type.
Configuration FromJson(const Json& json, const std::string& stateFolder) {
  Configuration configuration;
  configuration.stateFolder = stateFolder;
  configuration.library = CleanFolders(configuration, json.value("library", Folders()));
  configuration.lastLibraryID = json.value("lastLibraryID", kFirstOwnLibraryID - 1);
  const Json web = json.value("webFonts", Json::object());
  const std::string webFolder = web.value("folder", "");
  if (!webFolder.empty()) configuration.webFolder = CleanFolder(configuration, webFolder);
  configuration.hasWebFonts = web.value("enabled", false) && !webFolder.empty();
  ReadOwnLibraries(json.value("libraries", Json::array()), configuration);
  configuration.desktop = json.value("desktop", false);
  configuration.exitWithLastClient = json.value("exitWithLastClient", false);
  configuration.refused = json.value("refused", std::set<std::string>());
  return configuration;
}

// Returns nothing, with one line in `error`, on failure.
std::optional<Json> ReadObject(const std::string& file, std::string& error) {
  std::string text;
  if (const std::error_code unreadable = platform::ReadFile(file, text)) {
    error = file + ": " + platform::DescribeError(unreadable);
    return std::nullopt;
  }
  try {
    Json json = Json::parse(text);
    if (json.is_object()) return json;
    error = file + ": is not a JSON object";
  } catch (const Json::exception& exception) {
    error = file + ": " + exception.what();
  }
  return std::nullopt;
}

// One line; empty if there is no problem.
std::string ProblemOf(const Workgroups& libraries) {
  std::set<uint32_t> ids;
  for (const Workgroup& library : libraries) {
    if (library.id < kFirstOwnLibraryID) {
      return "the ID of a library is below " + std::to_string(kFirstOwnLibraryID);
    }
    if (!ids.insert(library.id).second) return "two libraries have the ID " + std::to_string(library.id);
  }
  return "";
}

}  // namespace

std::string CleanFolder(const Configuration& configuration, const std::string& path) {
  const std::filesystem::path whole = std::filesystem::path(configuration.stateFolder) / path;
  return WithoutTrailingSlash(whole.lexically_normal().string());
}

Workgroups Configuration::AllWorkgroups() const {
  Workgroups all = {{kFontLibraryID, kFontLibraryName, kLibraryType, library}};
  all.insert(all.end(), ownLibraries.begin(), ownLibraries.end());
  if (hasWebFonts) all.push_back({kWebFontsID, "Web Fonts", kWebFontsType, {webFolder, UnpackedFolder()}});
  all.push_back({kSystemFontsID, "System", kSystemType, {}});
  return all;
}

std::string Configuration::RuntimeFolder() const { return agent_client::RuntimeFolderOf(stateFolder); }
std::string Configuration::LogFolder() const { return agent_client::SessionFolderOf(stateFolder) + "/agent"; }

std::string Configuration::ActiveFolderPath() const {
  return agent_client::ActiveFolderOf(stateFolder, desktop, platform::GetPlaces().home);
}

std::optional<Configuration> ReadConfiguration(const std::string& stateFolder, std::string& error) {
  std::error_code failure;
  const std::string folder = WithoutTrailingSlash(std::filesystem::absolute(stateFolder, failure).lexically_normal());
  if (failure || !platform::FolderExists(folder)) {
    error = stateFolder + ": is not a folder";
    return std::nullopt;
  }
  const auto json = ReadObject(folder + "/" + agent_protocol::kConfigurationName, error);
  if (!json) return std::nullopt;
  try {
    Configuration configuration = FromJson(*json, folder);
    error = ProblemOf(configuration.ownLibraries);
    if (error.empty()) return configuration;
    error = folder + "/" + agent_protocol::kConfigurationName + ": " + error;
    return std::nullopt;
  } catch (const Json::exception& exception) {
    error = folder + "/" + agent_protocol::kConfigurationName + ": " + exception.what();
    return std::nullopt;
  }
}

bool StoreConfiguration(const Configuration& configuration, std::string& error) {
  const std::string file = configuration.stateFolder + "/" + agent_protocol::kConfigurationName;
  auto json = ReadObject(file, error);
  if (!json) return false;
  (*json)["library"] = configuration.library;
  (*json)["libraries"] = Json::array();
  for (const Workgroup& library : configuration.ownLibraries) {
    (*json)["libraries"].push_back({{"id", library.id}, {"name", library.name}, {"folders", library.folders}});
  }
  (*json)["lastLibraryID"] = configuration.lastLibraryID;
  (*json)["webFonts"] = {{"folder", configuration.webFolder}, {"enabled", configuration.hasWebFonts}};
  std::string text;
  try {
    text = json->dump(2) + "\n";
  } catch (const Json::exception&) {
    error = file + ": a folder with a name that is not UTF-8 can't be stored";
    return false;
  }
  if (const std::error_code failure = platform::ReplaceFile(file, text)) {
    error = file + ": " + platform::DescribeError(failure);
    return false;
  }
  return true;
}

}  // namespace agent
