// Converts text of uncertain encoding and Pascal strings to UTF-8.
//
// A Pascal string (platform string) is a length byte and up to 255 bytes.
#pragma once

#include <string>

#include "platform/Value.h"

using PlatformString = unsigned char*;
using ConstPlatformString = const unsigned char*;

// The local character set.
extern const std::string local_charset;

// Converts the text with iconv. Empty text gives an empty result. Throws std::runtime_error if iconv does not know the
// conversion or the text cannot be converted. With "//IGNORE" appended to `to`, drops what cannot be converted instead
// of throwing: characters that `to` lacks, malformed bytes, and an incomplete last character.
std::string iconv_string(const std::string& in, const char* to, const char* from);
std::string local_to_utf8(const std::string& text);
std::string utf8_to_local(const std::string& text);

// Tries UTF-8, MacRoman, Windows Latin 1, ISO Latin 1, ASCII and non-lossy ASCII, in this order. MacRoman accepts any
// bytes, so text that is not UTF-8 is read as MacRoman. Null for a null pointer.
platform::String CFStringCreateWithUncertainEncoding(const char* text);
std::string CreateUTF8StringFromUncertainEncoding(const char* text);  // empty on failure

std::string GetStdString(const platform::String& text);
void GetUTF8String(const platform::String& text, std::string& out);

unsigned GetPlatformStringLength(ConstPlatformString text);  // 0 for null
platform::String XCFStringCreateWithPlatformString(ConstPlatformString text);
// Writes the text in the system encoding, or else in MacRoman, with a 0 after it unless the text fills the buffer.
// `size` is the size of the whole buffer in bytes. Returns false if the text does not fit or cannot be encoded.
bool XCFStringGetPlatformString(const platform::String& text, PlatformString buffer, size_t size);
std::string STLStringFromPlatformString(ConstPlatformString text);  // cut at the first NUL
std::string STLStringFromPascalString(ConstPlatformString text);
bool CopyPascalStringToCString(char* c, ConstPlatformString text);  // `c` has room for 256 bytes
void PlatformStringCopy(PlatformString destination, ConstPlatformString source);
void PlatformStringConcat(PlatformString destination, ConstPlatformString source);  // appends what fits in 255 bytes
// No bounds check: copies the whole text and a NUL; the length byte is the low byte of the length.
void CopyCStringToPascalString(PlatformString destination, const char* c);
bool CopyUTF8CStringToMacRomanPascalString(PlatformString destination, size_t size, const char* c);

// Replaces every occurrence. Replacements are not searched again.
void replaceAll(std::string& text, const std::string& from, const std::string& to);
