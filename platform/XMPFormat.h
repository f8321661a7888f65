// Detects by content which of the formats that this system supports a file has. The XMP library would choose among many
// more, also by the file's name, and some of its handlers loop forever on damaged files.
#pragma once

#include <string>

#include "platform/Export.h"

namespace platform {

enum class XMPFormat { kOther, kLayered, kJPEG, kTIFF, kPNG, kPostScript };

XMPFormat FindXMPFormat(const std::string& path);
// False if a search through the file finds no packet of metadata in any encoding. True also if that is not known: the
// file is empty or cannot be read.
PLATFORM_API bool MayHavePacket(const std::string& path);
// The extension that the library expects for such a file.
const char* ExtensionOf(XMPFormat format);

}  // namespace platform
