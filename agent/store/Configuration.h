// The contents of nexcore.json in the state folder.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace agent {

struct Configuration {
  std::string stateFolder;           // absolute
  std::vector<std::string> library;  // absolute folders; relative ones start at the state folder
  bool desktop = false;
  bool exitWithLastClient = false;
  std::set<std::string> refused;  // PostScript names of fonts that must not be activated

  std::string RuntimeFolder() const { return stateFolder + "/run"; }
  std::string DataFolder() const { return stateFolder + "/agent"; }
  // The folder of the links that activate fonts.
  std::string ActiveFolderPath() const;
};

// Replaces the list of folders in the file and in the object. On an error neither is changed, and `error` is one line.
bool StoreLibrary(Configuration& configuration, const std::vector<std::string>& folders, std::string& error);

// Returns nothing, with one line in `error`, if the folder or its configuration cannot be used.
std::optional<Configuration> ReadConfiguration(const std::string& stateFolder, std::string& error);

}  // namespace agent
