// Where the packet of metadata stands in a layered document (.psd, .psb): the image resource 1060. Only the section of the
// image resources is looked at and made anew; everything else of the document stays byte for byte.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

// The bytes that take the place of a part of a file.
struct Splice {
  uint64_t at = 0, length = 0;  // what is replaced
  std::string bytes;
};

// False with one line in *problem if the file can't be read or its image resources are damaged.
bool PlanLayeredPacket(const std::string& path, const std::string& packet, Splice& splice, std::string* problem);

}  // namespace platform
