#include "agent/FontExport.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "platform/Descriptor.h"
#include "platform/Files.h"

namespace agent {

namespace {

constexpr int kMostNames = 1000;

std::string NumberedName(const std::string& name, int number) {
  if (number == 1) return name;
  const size_t dot = name.rfind('.');
  const size_t end = dot == std::string::npos || dot == 0 ? name.size() : dot;
  return name.substr(0, end) + " " + std::to_string(number) + name.substr(end);
}

bool HoldsSameBytes(const std::string& path, const std::string& bytes) {
  std::string other;
  return !platform::ReadFile(path, other) && other == bytes;
}

std::error_code WriteNew(const std::string& path, const std::string& bytes) {
  const platform::Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
  if (!file) return {errno, std::generic_category()};
  size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t count = write(file.Get(), bytes.data() + written, bytes.size() - written);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) {
      const std::error_code error(errno, std::generic_category());
      unlink(path.c_str());
      return error;
    }
    written += static_cast<size_t>(count);
  }
  return {};
}

}  // namespace

std::error_code ExportFile(const std::string& file, const std::string& folder, std::string* copy) {
  std::string bytes;
  if (const std::error_code error = platform::ReadFile(file, bytes)) return error;
  const std::string name = file.substr(file.rfind('/') + 1);
  for (int number = 1; number <= kMostNames; ++number) {
    *copy = folder + "/" + NumberedName(name, number);
    const std::error_code error = WriteNew(*copy, bytes);
    if (error != std::errc::file_exists) return error;
    if (HoldsSameBytes(*copy, bytes)) return {};
  }
  return std::make_error_code(std::errc::file_exists);
}

}  // namespace agent
