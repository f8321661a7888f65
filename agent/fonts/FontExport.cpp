#include "agent/fonts/FontExport.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "platform/Descriptor.h"
#include "platform/Files.h"
#include "platform/LastError.h"

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

// A temporary file in the folder, deleted with this object unless it was given its final name.
class PartFile {
 public:
  PartFile(const std::string& folder, std::error_code& error) : path_(folder + "/.copy-XXXXXX") {
    file_ = platform::Descriptor(mkostemp(path_.data(), O_CLOEXEC));
    if (!file_) error = platform::LastError();
  }
  ~PartFile() {
    if (file_) unlink(path_.c_str());
  }
  PartFile(const PartFile&) = delete;
  PartFile& operator=(const PartFile&) = delete;

  std::error_code Write(const std::string& bytes) {
    for (size_t written = 0; written < bytes.size();) {
      const ssize_t count = write(file_.Get(), bytes.data() + written, bytes.size() - written);
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) return platform::LastError();
      written += static_cast<size_t>(count);
    }
    return fchmod(file_.Get(), 0644) != 0 || fsync(file_.Get()) != 0 ? platform::LastError() : std::error_code();
  }

  // Returns std::errc::file_exists if the name is taken.
  std::error_code Name(const std::string& path) const {
    if (renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, path.c_str(), RENAME_NOREPLACE) == 0) return {};
    // Network file systems cannot rename without replacing, but can create a link.
    if (errno == EINVAL && link(path_.c_str(), path.c_str()) == 0) return {};
    return platform::LastError();
  }

 private:
  std::string path_;
  platform::Descriptor file_;
};

}  // namespace

std::error_code ExportFile(const std::string& file, const std::string& folder, std::string* copy) {
  std::string bytes;
  if (const std::error_code error = platform::ReadFile(file, bytes)) return error;
  std::error_code error;
  PartFile part(folder, error);
  if (!error) error = part.Write(bytes);
  if (error) return error;
  const std::string name = file.substr(file.rfind('/') + 1);
  for (int number = 1; number <= kMostNames; ++number) {
    *copy = folder + "/" + NumberedName(name, number);
    error = part.Name(*copy);
    if (error != std::errc::file_exists) return error;
    if (HoldsSameBytes(*copy, bytes)) return {};
  }
  return std::make_error_code(std::errc::file_exists);
}

}  // namespace agent
