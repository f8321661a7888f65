// Which of the formats that this system serves a file has, by its content. The XMP library itself would choose among many
// more, also by the file's name, and some of its handlers never end on damaged files.
#pragma once

#include <string>

namespace platform {

enum class XMPFormat { kOther, kLayered, kJPEG, kTIFF, kPNG, kPostScript };

XMPFormat FindXMPFormat(const std::string& path);
// What the library expects at the end of the name of such a file.
const char* ExtensionOf(XMPFormat format);

}  // namespace platform
