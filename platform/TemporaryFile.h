// A file for data that another part of the program reads by path and that nobody else may see: of mode 0600, in the folder
// for temporary files (TMPDIR, or else /tmp), under a name that can't be guessed. It goes with the object. One thread.
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

  // Makes the file, open for writing. Once.
  std::error_code Create();
  // Appends.
  std::error_code Write(std::string_view bytes);
  // Empty while there is no file.
  const std::string& Path() const { return path_; }
  void Remove();

 private:
  std::string path_;
  Descriptor file_;
};

}  // namespace platform
