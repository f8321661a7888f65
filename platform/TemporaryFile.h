// A private file for data that another part of this process reads by path. It has mode 0600 and no name in its folder,
// so the kernel removes it with the object and also when the process is killed. Not thread-safe.
#pragma once

#include <string>
#include <string_view>
#include <system_error>

#include "platform/Descriptor.h"
#include "platform/Export.h"

namespace platform {

class PLATFORM_API TemporaryFile {
 public:
  TemporaryFile() = default;
  ~TemporaryFile() { Remove(); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  // The folder for temporary files: TMPDIR, or else /tmp.
  static std::string Folder();
  // Makes the file in that folder and opens it for writing. Call it once.
  std::error_code Create();
  // Appends.
  std::error_code Write(std::string_view bytes);
  // Opens the file within this process only (needs /proc). Empty while there is no file.
  const std::string& Path() const { return path_; }
  // Closes the file, which removes it unless a reader still has it open.
  void Remove();

 private:
  std::string path_;
  Descriptor file_;
};

}  // namespace platform
