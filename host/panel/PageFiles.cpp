#include "host/panel/PageFiles.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/Files.h"

namespace panel {

namespace {

constexpr std::pair<const char*, const char*> kTypes[] = {{".html", "text/html; charset=utf-8"},
                                                          {".css", "text/css; charset=utf-8"},
                                                          {".js", "text/javascript; charset=utf-8"},
                                                          {".svg", "image/svg+xml"}};

const char* TypeOf(const std::filesystem::path& path) {
  for (const auto& [extension, type] : kTypes) {
    if (path.extension() == extension) return type;
  }
  return nullptr;
}

}  // namespace

PageFiles::PageFiles(const std::string& folder) {
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    File file{"", TypeOf(entry.path())};
    if (!file.type) continue;
    if (const std::error_code error = platform::ReadFile(entry.path().string(), file.bytes)) {
      throw std::system_error(error, entry.path().string());
    }
    files_.emplace(entry.path().filename().string(), std::move(file));
  }
  if (!Find("index.html")) {
    throw std::system_error(std::make_error_code(std::errc::no_such_file_or_directory), folder + "/index.html");
  }
}

const PageFiles::File* PageFiles::Find(const std::string& name) const {
  const auto found = files_.find(name);
  return found == files_.end() ? nullptr : &found->second;
}

}  // namespace panel
