// The documents on the command line, one by one: files and, with -r, the files in folders.
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
    bool isNamed;  // on the command line, not found in a folder
  };
  // Returns the next file. A folder gives its regular files, sorted by name, then those of its subfolders. Skips hidden
  // entries and does not follow links to folders. A path that cannot be walked is returned like a file, so that reading
  // it reports why.
  std::optional<File> Next();

 private:
  bool Enter(const std::string& folder);

  bool recursive_;
  std::vector<File> waiting_;  // next one last
};

}  // namespace docfonts
