#include "platform/TemporaryFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/FileBytes.h"

namespace platform {

std::string TemporaryFile::Folder() {
  const char* folder = std::getenv("TMPDIR");
  return folder && *folder ? folder : "/tmp";
}

std::error_code TemporaryFile::Create() {
  file_ = Descriptor(open(Folder().c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
  if (!file_) {
    // Not every file system can create files without a name.
    std::string name = Folder() + "/XXXXXX";
    file_ = Descriptor(mkostemp(name.data(), O_CLOEXEC));
    if (!file_) return LastError();
    if (unlink(name.c_str()) != 0) {
      const std::error_code error = LastError();
      file_.Close();
      return error;
    }
  }
  path_ = "/proc/self/fd/" + std::to_string(file_.Get());
  return {};
}

std::error_code TemporaryFile::Write(std::string_view bytes) { return WriteAll(file_.Get(), bytes); }

void TemporaryFile::Remove() {
  path_.clear();
  file_.Close();
}

}  // namespace platform
