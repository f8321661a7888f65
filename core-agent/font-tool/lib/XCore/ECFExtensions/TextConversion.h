// Text of uncertain encoding and Pascal strings, turned into UTF-8.
//
// A Pascal string (platform string) is a length byte followed by up to 255 bytes.
#pragma once

#include <string>

#include "platform/Value.h"

using PlatformString = unsigned char*;
using ConstPlatformString = const unsigned char*;

// The local character set.
extern const std::string local_charset;

// Converts the text through iconv; an empty text gives an empty result. Throws std::runtime_error if iconv does not know
// the conversion or the text cannot be converted. With "//IGNORE" appended to `to` nothing is thrown for the text: what
// cannot be converted is left out, malformed bytes and a last character that is cut off as well as what `to` lacks.
std::string iconv_string(const std::string& in, const char* to, const char* from);
std::string local_to_utf8(const std::string& text);
std::string utf8_to_local(const std::string& text);

// Tries UTF-8, MacRoman, Windows Latin 1, ISO Latin 1, ASCII and non-lossy ASCII in this order. As MacRoman accepts any
// bytes, a text that is not UTF-8 ends there. Null for a null pointer.
platform::String CFStringCreateWithUncertainEncoding(const char* text);
std::string CreateUTF8StringFromUncertainEncoding(const char* text);  // empty on failure

std::string GetStdString(const platform::String& text);
void GetUTF8String(const platform::String& text, std::string& out);

unsigned GetPlatformStringLength(ConstPlatformString text);  // 0 for null
platform::String XCFStringCreateWithPlatformString(ConstPlatformString text);
// In the system encoding or else in MacRoman, with a 0 behind the text unless it fills the buffer; size is that of the
// whole buffer in bytes. False if it does not fit or can't be encoded.
bool XCFStringGetPlatformString(const platform::String& text, PlatformString buffer, size_t size);
std::string STLStringFromPlatformString(ConstPlatformString text);  // cut at the first NUL
std::string STLStringFromPascalString(ConstPlatformString text);
bool CopyPascalStringToCString(char* c, ConstPlatformString text);  // c has room for 256 bytes
void PlatformStringCopy(PlatformString destination, ConstPlatformString source);
void PlatformStringConcat(PlatformString destination, ConstPlatformString source);  // takes only what fits into 255
// No bounds check: the length byte takes the low byte of the length, the whole text is copied and a NUL follows.
void CopyCStringToPascalString(PlatformString destination, const char* c);
bool CopyUTF8CStringToMacRomanPascalString(PlatformString destination, size_t size, const char* c);

// Replaces every occurrence; what was put in is not scanned again.
void replaceAll(std::string& text, const std::string& from, const std::string& to);
