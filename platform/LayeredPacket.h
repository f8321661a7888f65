// Replaces the packet of metadata in a layered document (.psd, .psb): the image resource 1060. Only the section of the
// image resources is parsed and written; everything else stays byte for byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Export.h"

namespace platform {

// Replaces bytes in a file by others.
struct Splice {
  uint64_t at = 0;
  std::string old;
  std::string bytes;
};

// Reads the packet that the XMP library reads, too: the first one. Returns false if there is none, or if the file
// cannot be read up to it.
bool FindLayeredPacket(const std::string& path, std::string& packet);

// Plans how to replace the packet. A packet that fits the place of the old one, which may end in blanks, is padded to
// its length, so that both sides of the splice have the same length. Returns false, with one line in *problem, if the
// file cannot be read or its image resources are damaged.
bool PlanLayeredPacket(const std::string& path, const std::string& packet, Splice& splice, std::string* problem);

// Makes room in image resources (without the length before them): adds at least `room` blanks to the packet of
// metadata, so that it can grow in place; adds an empty packet if there is none. Returns false if there is room
// already, if the resources are damaged, or if the packet has another form than ours.
PLATFORM_API bool MakePacketRoom(std::string_view resources, size_t room, std::string& roomy);

}  // namespace platform
