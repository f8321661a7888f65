// Conversion between byte encodings and UTF-8, and the platform's ways to compare text.
#pragma once

#include <compare>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/Export.h"

namespace platform {

// Numbered as the platform numbers its string encodings.
enum class TextEncoding : uint32_t {
  kMacRoman = 0,
  kISOLatin1 = 0x0201,
  kWindowsLatin1 = 0x0500,
  kASCII = 0x0600,
  kNonLossyASCII = 0x0BFF,  // ASCII with \ooo and \uxxxx for what ASCII lacks
  kUTF8 = 0x08000100,
  kUTF16BE = 0x10000100,
};

// The encoding of old system interfaces.
inline constexpr TextEncoding kSystemEncoding = TextEncoding::kMacRoman;

// Bytes of the encoding as UTF-8; nothing if the bytes are not valid in it. MacRoman accepts any bytes.
PLATFORM_API std::optional<std::string> DecodeText(std::string_view bytes, TextEncoding encoding);
// UTF-8 as bytes of the encoding; nothing if the text is malformed or holds what the encoding lacks.
PLATFORM_API std::optional<std::string> EncodeText(std::string_view utf8, TextEncoding encoding);

PLATFORM_API bool IsValidUTF8(std::string_view text);
// Nothing for a lone surrogate.
PLATFORM_API std::optional<std::string> UTF16ToUTF8(std::u16string_view text);
PLATFORM_API std::optional<std::u16string> UTF8ToUTF16(std::string_view text);

// All of these take UTF-8; the results are below 0, 0 or above 0. Malformed text compares by bytes.
PLATFORM_API int CompareCaseless(std::string_view a, std::string_view b);           // by folded code points
PLATFORM_API int CompareLocalizedCaseless(std::string_view a, std::string_view b);  // in the user's locale
PLATFORM_API int CompareNumerically(std::string_view a, std::string_view b);        // runs of digits by value
PLATFORM_API bool EqualCaseless(std::string_view a, std::string_view b);
PLATFORM_API bool ContainsCaseless(std::string_view text, std::string_view part);
// Neither depends on the user's locale: documents store what comes of them.
PLATFORM_API std::string ToLowercase(std::string_view text);
// The first letter of each word in upper case, the others in lower case.
PLATFORM_API std::string Capitalize(std::string_view text);
// Without white space at both ends, in the sense of Unicode.
PLATFORM_API std::string TrimWhitespace(std::string_view text);
// The number that a text begins with after white space; 0 without one. The integer form stops at the limits of 32 bits.
PLATFORM_API int32_t IntegerOfText(std::string_view text);
PLATFORM_API double RealOfText(std::string_view text);

}  // namespace platform
