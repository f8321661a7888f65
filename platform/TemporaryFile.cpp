#include "platform/TemporaryFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/FileBytes.h"

namespace platform {

std::error_code TemporaryFile::Create() {
  const char* folder = std::getenv("TMPDIR");
  std::string path = std::string(folder && *folder ? folder : "/tmp") + "/XXXXXX";
  file_ = Descriptor(mkostemp(path.data(), O_CLOEXEC));
  if (!file_) return LastError();
  path_ = std::move(path);
  return {};
}

std::error_code TemporaryFile::Write(std::string_view bytes) { return WriteAll(file_.Get(), bytes); }

void TemporaryFile::Remove() {
  if (path_.empty()) return;
  unlink(path_.c_str());
  path_.clear();
  file_.Close();
}

}  // namespace platform
