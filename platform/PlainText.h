// UTF-8 text for a terminal.
#pragma once

#include <string>
#include <string_view>

#include "platform/Export.h"

namespace platform {

// True if the byte continues a character.
constexpr bool IsContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

inline constexpr char32_t kMalformed = 0xFFFFFFFF;

// Removes the first character from a text that is not empty, and returns its code point. If the text does not start
// with a well-formed character, removes one byte and returns kMalformed.
PLATFORM_API char32_t TakeCharacter(std::string_view& text);

// Counts characters. A malformed byte that looks like the start of a character counts as one.
PLATFORM_API size_t CountCharacters(std::string_view text);

// Returns the first characters of the text, at most `most`.
PLATFORM_API std::string_view FirstCharacters(std::string_view text, size_t most);

// Returns the longest prefix that is well-formed UTF-8.
PLATFORM_API std::string_view ValidStart(std::string_view text);

// Converts the text to one line that is safe for a terminal. Names of files and fonts may contain anything: control
// characters (U+0000 to U+001F, U+007F to U+009F), line separators, marks that change the direction of text, and bytes
// that are not UTF-8 become escapes such as "\n", "\x1b" and "\u202e".
PLATFORM_API std::string OneLine(std::string_view text);

}  // namespace platform
