// Makes texts of font files and of the file system safe for records and logs. Functions without state, for any thread.
#pragma once

#include <string>
#include <string_view>

namespace agent {

// Replaces each character that XML forbids in records or that a terminal would obey: the control characters (below
// U+0020, and U+007F to U+009F), U+FFFE and U+FFFF. Malformed UTF-8 stays as it is.
std::string WithoutControls(std::string_view utf8, std::string_view replacement = "");

// WithoutControls for a path or file name, with U+FFFD for each of these characters. Its bytes may be malformed UTF-8
// and stay so: ToText in CallEncoding.h replaces them for the socket.
std::string ShownPath(std::string_view path);

// Converts UTF-16 in network order, as font files have it, to UTF-8. Drops lone surrogates and an odd last byte; keeps
// control characters.
std::string DecodeUTF16(std::string_view bytes);

}  // namespace agent
