// Texts of font files and of the file system, as records and logs may carry them.
#pragma once

#include <string>
#include <string_view>

namespace agent {

// The text without what a record's XML form can't hold or a terminal would obey: control characters and the code points
// U+FFFE and U+FFFF. Each is replaced by the other text, which may be empty. Malformed UTF-8 passes unchanged.
std::string WithoutControls(std::string_view utf8, std::string_view replacement = "");

// A path or the name of a file, which may hold any bytes: what can't be shown is U+FFFD.
std::string ShownPath(std::string_view path);

// UTF-16 in network order as UTF-8. Lone surrogates and an odd last byte are left out.
std::string DecodeUTF16(std::string_view bytes);

}  // namespace agent
