// UTF-8 text as it goes to a terminal.
#pragma once

#include <string>
#include <string_view>

namespace console {

// Whether the byte goes on with a character that began before it.
constexpr bool IsContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// Malformed bytes count for something, too.
size_t CountCharacters(std::string_view text);

// The first characters, at most so many.
std::string_view FirstCharacters(std::string_view text, size_t most);

// One line without side effects on a terminal: control characters, which may stand in the names of files and fonts, are
// written as escapes such as "\n" and "\x1b".
std::string OneLine(std::string_view text);

}  // namespace console
