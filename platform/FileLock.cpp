#include "platform/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>

#include "platform/LastError.h"

namespace platform {

FileLock::FileLock(const std::string& path, std::error_code* error) {
  const size_t slash = path.rfind('/');
  const size_t name = slash == std::string::npos ? 0 : slash + 1;
  const std::string lock = path.substr(0, name) + "." + path.substr(name) + ".lock";
  descriptor_ = Descriptor(open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
  int result = descriptor_ ? 0 : -1;
  while (descriptor_ && (result = flock(descriptor_.Get(), LOCK_EX)) != 0 && errno == EINTR) {
  }
  *error = result == 0 ? std::error_code() : LastError();
  if (*error) descriptor_.Close();
}

}  // namespace platform
