// Where the packet of metadata stands in a layered document (.psd, .psb): the image resource 1060. Only the section of the
// image resources is looked at and made anew; everything else of the document stays byte for byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Export.h"

namespace platform {

// The bytes that take the place of others in a file.
struct Splice {
  uint64_t at = 0;
  std::string old;
  std::string bytes;
};

// A packet that fits the place of the old one, which may end in blanks, is padded to just that: then both sides of the
// splice have one length. False with one line in *problem if the file can't be read or its image resources are damaged.
bool PlanLayeredPacket(const std::string& path, const std::string& packet, Splice& splice, std::string* problem);

// The image resources, without the length before them, with at least so many blanks in the packet of metadata, so that it
// can grow in its place; with an empty packet if they have none. False if the room is there already, the resources are
// damaged, or the packet has another form than we write.
PLATFORM_API bool MakePacketRoom(std::string_view resources, size_t room, std::string& roomy);

}  // namespace platform
