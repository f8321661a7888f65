// A folder that is removed with its content when the object is destroyed.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

namespace test_support {

class TempFolder {
 public:
  TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "test-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder can be made");
    path_ = std::filesystem::canonical(name).string();
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& Path() const { return path_; }
  std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

  // Writes a file, and the folders above it. Returns its path.
  std::string Write(std::string_view name, std::string_view content) const {
    const std::string path = *this / name;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream file(path, std::ios::binary);
    file << content;
    if (!file.flush()) throw std::runtime_error(path + " can't be written");
    return path;
  }
  // Writes a fontconfig file that makes the fonts of these folders active, and no others. Returns its path.
  std::string WriteFontsConf(std::initializer_list<std::string> folders) const {
    std::string text = "<fontconfig>";
    for (const std::string& folder : folders) text += "<dir>" + folder + "</dir>";
    return Write("fonts.conf", text + "<cachedir>" + *this / "cache" + "</cachedir></fontconfig>");
  }
  // Returns the content of a file; empty for a missing one.
  static std::string Content(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  // Returns the names in a folder below this one.
  std::set<std::string> Names(std::string_view below = ".") const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(*this / below)) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }

 private:
  std::string path_;
};

}  // namespace test_support
