// The input as a file, for what takes a path: in a folder of the process's own, which goes with the process.
#pragma once

#include <stdlib.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "Check.h"

class InputFolder {
 public:
  InputFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "fuzz-XXXXXX").string();
    CHECK(mkdtemp(name.data()) != nullptr);
    path_ = name;
  }
  ~InputFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  InputFolder(const InputFolder&) = delete;
  InputFolder& operator=(const InputFolder&) = delete;

  const std::string& Path() const { return path_; }
  // Replaces what the file of this name held.
  std::string Write(const std::string& name, std::string_view bytes) const {
    const std::string path = path_ + "/" + name;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    CHECK(file.flush().good());
    return path;
  }

 private:
  std::string path_;
};

inline std::string_view BytesOf(const uint8_t* data, size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}
