// Conversion between byte encodings and UTF-8, and the platform's ways to compare text.
#pragma once

#include <compare>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/Export.h"

namespace platform {

// The values are the platform's numbers of its string encodings.
enum class TextEncoding : uint32_t {
  kMacRoman = 0,
  kISOLatin1 = 0x0201,
  kWindowsLatin1 = 0x0500,
  kASCII = 0x0600,
  kNonLossyASCII = 0x0BFF,  // ASCII, with \ooo and \uxxxx for other characters
  kUTF8 = 0x08000100,
  kUTF16BE = 0x10000100,
};

// The encoding of old system interfaces.
inline constexpr TextEncoding kSystemEncoding = TextEncoding::kMacRoman;

// Converts bytes of the encoding to UTF-8; nothing if they are invalid. MacRoman accepts any bytes.
PLATFORM_API std::optional<std::string> DecodeText(std::string_view bytes, TextEncoding encoding);
// Converts UTF-8 to the encoding; nothing if the text is malformed or contains characters that the encoding lacks.
PLATFORM_API std::optional<std::string> EncodeText(std::string_view utf8, TextEncoding encoding);

PLATFORM_API bool IsValidUTF8(std::string_view text);
// Nothing for a lone surrogate.
PLATFORM_API std::optional<std::string> UTF16ToUTF8(std::u16string_view text);
PLATFORM_API std::optional<std::u16string> UTF8ToUTF16(std::string_view text);

// Comparisons of UTF-8. Results are below, equal to or above 0. Malformed text is compared by bytes.
PLATFORM_API int CompareCaseless(std::string_view a, std::string_view b);           // by folded code points
PLATFORM_API int CompareLocalizedCaseless(std::string_view a, std::string_view b);  // in the user's locale
PLATFORM_API int CompareNumerically(std::string_view a, std::string_view b);        // runs of digits by value
PLATFORM_API bool EqualCaseless(std::string_view a, std::string_view b);
PLATFORM_API bool ContainsCaseless(std::string_view text, std::string_view part);
// Both are independent of the user's locale, because documents store the results.
PLATFORM_API std::string ToLowercase(std::string_view text);
// Changes the first letter of each word to upper case, the others to lower case.
PLATFORM_API std::string Capitalize(std::string_view text);
// Removes Unicode white space at both ends.
PLATFORM_API std::string TrimWhitespace(std::string_view text);
// Returns the number at the start of the text, after white space; 0 if there is none. The integer is clamped to 32
// bits.
PLATFORM_API int32_t IntegerOfText(std::string_view text);
PLATFORM_API double RealOfText(std::string_view text);

}  // namespace platform
