// The contents of nexcore.json in the state folder.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "agent/fonts/Workgroup.h"

namespace agent {

struct Configuration {
  std::string stateFolder;           // absolute
  std::vector<std::string> library;  // absolute folders of the first library; relative ones start at the state folder
  Workgroups ownLibraries;           // further ones, that the user has made
  uint32_t lastLibraryID = 0;        // of those that were made so far, so that no ID is used again
  std::string webFolder;             // of packed fonts, absolute; empty if there is none
  bool hasWebFonts = false;          // its fonts are wanted
  bool desktop = false;
  bool exitWithLastClient = false;
  std::set<std::string> refused;  // PostScript names of fonts that must not be activated

  std::string RuntimeFolder() const;
  // Of the logs, which a person needs most when the state folder cannot be written.
  std::string LogFolder() const;
  std::string DataFolder() const { return stateFolder + "/agent"; }
  std::string UnpackedFolder() const { return DataFolder() + "/webfonts"; }
  // The folder of the links that activate fonts.
  std::string ActiveFolderPath() const;
  // Every workgroup, in the order in which they are searched.
  Workgroups AllWorkgroups() const;
};

// Makes a path absolute, without a slash at its end; a relative one starts at the state folder.
std::string CleanFolder(const Configuration& configuration, const std::string& path);

// Stores what changes while the agent runs: the libraries and web fonts. The rest of the file stays as it is. On an
// error the file is not changed, and `error` is one line.
bool StoreConfiguration(const Configuration& configuration, std::string& error);

// Returns nothing, with one line in `error`, if the folder or its configuration cannot be used.
std::optional<Configuration> ReadConfiguration(const std::string& stateFolder, std::string& error);

}  // namespace agent
