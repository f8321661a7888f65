// How deep the metadata of a document is nested. The XMP library goes down into it by recursion, so that a document of a
// megabyte could end the program by its stack.
//
// Looked at are the metadata resource of a layered document (.psd, .psb) and, of all other files and if packets are to be
// searched, what begins like a packet. What a format hides otherwise (compressed, or under names of its own) is not seen.
#pragma once

#include <string>

namespace platform {

// False also for a file that cannot be read.
bool IsMetadataTooDeep(const std::string& path, bool searchesPackets);

}  // namespace platform
