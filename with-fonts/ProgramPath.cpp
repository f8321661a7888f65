#include "with-fonts/ProgramPath.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "platform/Files.h"

namespace with_fonts {

namespace fs = std::filesystem;

std::string PathOfProgram(const std::string& name, bool isReal) {
  std::string found = name.find('/') != std::string::npos ? name : "";
  const char* path = std::getenv("PATH");
  std::istringstream folders(path ? path : "/usr/local/bin:/usr/bin:/bin");
  for (std::string folder; found.empty() && std::getline(folders, folder, ':');) {
    const std::string file = (folder.empty() ? "." : folder) + "/" + name;
    if (platform::FileExists(file) && access(file.c_str(), X_OK) == 0) found = file;
  }
  std::error_code error;
  const std::string real = fs::canonical(found, error).string();
  if (error) return "";
  return isReal ? real : fs::absolute(found, error).lexically_normal().string();
}

bool IsSandboxed(const std::vector<std::string>& words) {
  // Not the real path: the launchers of Snap are links to one program.
  const std::string program = PathOfProgram(words[0], false);
  if (fs::path(program).filename() == "flatpak") return words.size() > 1 && words[1] == "run";
  return program.find("/flatpak/exports/bin/") != std::string::npos || program.starts_with("/snap/bin/");
}

}  // namespace with_fonts
