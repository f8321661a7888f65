// The files of the panel's page, held in memory. Immutable, so thread-safe.
#pragma once

#include <map>
#include <string>

namespace panel {

class PageFiles {
 public:
  struct File {
    std::string bytes;
    const char* type = nullptr;  // the media type
  };

  // Reads the .html, .css, .js and .svg files of the folder. Throws std::exception if one can't be read or there is no
  // index.html.
  explicit PageFiles(const std::string& folder);
  const File* Find(const std::string& name) const;  // null if there is none

 private:
  std::map<std::string, File> files_;
};

}  // namespace panel
