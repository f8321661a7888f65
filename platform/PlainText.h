// UTF-8 text as it goes to a terminal.
#pragma once

#include <string>
#include <string_view>

#include "platform/Export.h"

namespace platform {

// Whether the byte continues a character that began before it.
constexpr bool IsContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// Counts a malformed byte that looks like the start of a character as one.
PLATFORM_API size_t CountCharacters(std::string_view text);

// The first characters of the text, at most `most` of them.
PLATFORM_API std::string_view FirstCharacters(std::string_view text, size_t most);

// The longest start of the text that is well-formed UTF-8.
PLATFORM_API std::string_view ValidStart(std::string_view text);

// The text as one line that a terminal only shows. Names of files and fonts may contain anything: control characters
// (U+0000 to U+001F, U+007F to U+009F), line separators, marks that change the direction of text, and bytes that are not
// UTF-8 become escapes such as "\n", "\x1b" and "\u202e".
PLATFORM_API std::string OneLine(std::string_view text);

}  // namespace platform
