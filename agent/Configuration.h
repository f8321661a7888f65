// What nexcore.json in the state folder says.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace agent {

struct Configuration {
  std::string stateFolder;           // absolute
  std::vector<std::string> library;  // absolute folders; those given relative are meant from the state folder
  bool desktop = false;
  bool exitWithLastClient = false;
  std::set<std::string> refused;  // PostScript names that an administrator does not let be activated

  std::string RuntimeFolder() const { return stateFolder + "/run"; }
  std::string DataFolder() const { return stateFolder + "/agent"; }
  // Where the links go that make fonts active.
  std::string ActiveFolderPath() const;
};

// Nothing, with one line in error, if the folder or its configuration can't be used.
std::optional<Configuration> ReadConfiguration(const std::string& stateFolder, std::string& error);

}  // namespace agent
