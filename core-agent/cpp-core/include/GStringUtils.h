// Operations on text, which is UTF-8 unless noted. Nothing throws; a failure gives an empty result, 0 or a code.
// Thread-safe.
//
// Sources: GStringEscaping.cpp, GStringNumbers.cpp, GStringTruncation.cpp, GStringRegEx.cpp, GStringUtils.cpp (the
// rest).
#pragma once

#include <cstdarg>
#include <cstdint>
#include <string>
#include <vector>

#include "ErrorCodes.h"

class GStringUtils {
 public:
  enum EStringEncoding : int { kStringEncoding_SingleByte = 1, kStringEncoding_UTF8 = 2 };

  // Comparison. Returns a number below, equal to or above 0. A null pointer counts as an empty string; any other
  // encoding gives 0.
  static int OSCompareStringsNoCase(EStringEncoding encoding, const char* a, const char* b);
  static int OSCompareStringsNoCase(EStringEncoding encoding, const char* a, size_t lengthA, const char* b,
                                    size_t lengthB);
  static int CompareStringsNoCase(EStringEncoding encoding, const std::string& a, const std::string& b);
  static int CompareStringsNoCase(EStringEncoding encoding, const std::string& a, const char* b);
  static int CompareStringsNoCase(EStringEncoding encoding, const char* a, const std::string& b);
  static int CompareStringsNoCase(EStringEncoding encoding, const char* a, const char* b);
  static bool ISUTF8StringLessThanNoCase(const std::string& a, const std::string& b);
  // Returns the position of the part, ignoring the case of ASCII letters, or std::string::npos.
  static size_t StringFindNoCase(const std::string& text, const std::string& part);
  static bool BeginsWith(const std::string& text, const std::string& part);
  static bool EndsWith(const std::string& text, const std::string& part);
  static bool Contains(const std::string& text, const std::string& part);
  // True if the whole text matches the ICU regular expression. A malformed expression, malformed UTF-8, or an
  // expression that backtracks for seconds matches nothing.
  static bool IsRegExMatch(const std::string& text, const std::string& expression);

  // Case and white space, byte by byte in the C locale.
  static std::string OSToLowerCase(const std::string& text);
  static std::string OSToUpperCase(const std::string& text);
  static std::string StripWhitespace(const std::string& text);
  static std::string StripPrecedingWhitespace(const std::string& text);
  static std::string StripTrailingWhitespace(const std::string& text);
  static size_t FirstNonWhiteSpaceCharacterLoc(const std::string& text);                      // npos if there is none
  static std::string StripPrecedingString(const std::string& text, const std::string& part);  // once
  static std::string StripTrailingString(const std::string& text, const std::string& part);
  static std::string EnsureEndsWith(const std::string& text, const std::string& ending);

  // Splitting and joining. Split keeps empty pieces; the tokenizers take any of the delimiter characters and drop them.
  static std::vector<std::string> Split(const std::string& text, const std::string& separator);
  static std::vector<std::string> TokenizeString(const std::string& text, const std::string& delimiters);
  static void OSTokenizeString(const std::string& text, const std::string& delimiters,
                               std::vector<std::string>& tokens);
  static std::string Join(const std::vector<std::string>& pieces, const std::string& separator);

  // Numbers, by stream extraction from the stripped text; 0 if nothing can be extracted.
  static bool IsNumber(const std::string& text);
  static bool UTF8StringToBool(const std::string& text);
  static int16_t UTF8StringToSInt16(const std::string& text);
  static uint16_t UTF8StringToUInt16(const std::string& text);
  static int32_t UTF8StringToSInt32(const std::string& text);
  static uint32_t UTF8StringToUInt32(const std::string& text);
  static int64_t UTF8StringToSInt64(const std::string& text);
  static uint64_t UTF8StringToUInt64(const std::string& text);
  static double UTF8StringToTFloat64(const std::string& text);
  static int64_t NumberFromString(const std::string& text);
  static std::string AsciiStringFromNumber(int64_t number);
  static std::string AsciiStringFromUnsignedNumber(uint64_t number);
  static bool IsValidHexChar(char c);
  static std::string HexadecimalString(const std::string& bytes);  // two lower-case digits per byte

  // Editing.
  static std::string StringReplace(const std::string& text, const std::string& from, const std::string& to,
                                   size_t maxCount = SIZE_MAX);
  // Removes whole characters at the end until the text has at most maxBytes bytes. Malformed text is unchanged and
  // gives CoreErrorCodes::kNullPointer.
  static TModuleErrorCode OSTruncateUTF8String(std::string& text, size_t maxBytes);
  static std::vector<char> StringToByteVector(const std::string& text);
  static std::vector<unsigned char> StringToUByteVector(const std::string& text);

  // Escaping.
  static std::string EscapeRequiredXMLEntities(const std::string& text);
  static std::string UnescapeRequiredXMLEntities(const std::string& text);
  // Reserved characters are escaped in a component but not in a whole URL. Unreserved characters are never escaped.
  static std::string EscapeURL(const std::string& text, bool isWholeURL);
  static std::string EscapeURLComponent(const std::string& text);
  static std::string EscapeJSON(const std::string& text);

  static int OSvsnprintf(char* buffer, size_t size, const char* format, va_list arguments);
};
