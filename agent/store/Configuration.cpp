#include "agent/store/Configuration.h"

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

std::string Absolute(const std::string& path, const std::string& base) {
  const std::filesystem::path whole = std::filesystem::path(base) / path;
  return WithoutTrailingSlash(whole.lexically_normal().string());
}

// Throws Json::exception for a key of the wrong type.
Configuration FromJson(const Json& json, const std::string& stateFolder) {
  Configuration configuration;
  configuration.stateFolder = stateFolder;
  for (const auto& folder : json.value("library", std::vector<std::string>())) {
    configuration.library.push_back(Absolute(folder, stateFolder));
  }
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

}  // namespace

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
    return FromJson(*json, folder);
  } catch (const Json::exception& exception) {
    error = folder + "/" + agent_protocol::kConfigurationName + ": " + exception.what();
    return std::nullopt;
  }
}

bool StoreLibrary(Configuration& configuration, const std::vector<std::string>& folders, std::string& error) {
  const std::string file = configuration.stateFolder + "/" + agent_protocol::kConfigurationName;
  auto json = ReadObject(file, error);
  if (!json) return false;
  std::vector<std::string> whole;
  for (const std::string& folder : folders) whole.push_back(Absolute(folder, configuration.stateFolder));
  (*json)["library"] = whole;
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
  configuration.library = std::move(whole);
  return true;
}

}  // namespace agent
