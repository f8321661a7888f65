// The documents that the command line names, one after the other: files, and with -r what is in folders.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace docfonts {

class FileWalk {
 public:
  FileWalk(const std::vector<std::string>& arguments, bool recursive);

  struct File {
    std::string path;
    bool isNamed;  // on the command line, and not found in a folder
  };
  // Folders give their regular files by name, then those of the folders in them; hidden entries are left out, and links to
  // folders are not followed. A path that can't be walked is given like a file, so that reading it says why.
  std::optional<File> Next();

 private:
  bool Enter(const std::string& folder);

  bool recursive_;
  std::vector<File> waiting_;  // the next one last
};

}  // namespace docfonts
