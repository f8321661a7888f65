// Makes texts of font files and of the file system safe for records and logs.
#pragma once

#include <string>
#include <string_view>

namespace agent {

// Replaces what a record's XML form cannot contain or a terminal would obey: control characters and the code points
// U+FFFE and U+FFFF. The replacement may be empty. Malformed UTF-8 is not changed.
std::string WithoutControls(std::string_view utf8, std::string_view replacement = "");

// A path or file name, which may contain any bytes. What cannot be shown becomes U+FFFD.
std::string ShownPath(std::string_view path);

// Converts UTF-16 in network order to UTF-8. Drops lone surrogates and an odd last byte.
std::string DecodeUTF16(std::string_view bytes);

}  // namespace agent
