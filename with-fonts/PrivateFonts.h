// A folder with links to the fonts of one program, and the fontconfig file by which only this program sees them.
#pragma once

#include <string>

#include "platform/Descriptor.h"

namespace with_fonts {

// STATE/private/NAME. The folder is locked as long as a process has this object or was forked while it existed. A folder
// that killed processes left is removed by the next Create.
class PrivateFonts {
 public:
  // Returns an empty text, or one line that names the file.
  std::string Create(const std::string& stateFolder);
  // Removes the folder, for all processes.
  void Remove();

  bool IsCreated() const { return static_cast<bool>(lock_); }
  std::string LinksFolder() const { return folder_ + "/fonts"; }
  std::string ConfigurationFile() const { return folder_ + "/fonts.conf"; }

 private:
  std::string folder_;
  platform::Descriptor lock_;
};

}  // namespace with_fonts
