// A UTF-8 string with an optional string object of the platform, and conversions between encodings.
#pragma once

#include <string>
#include <string_view>

#include "platform/Value.h"

class GString {
 public:
  GString() = default;
  explicit GString(std::string utf8) : mUTF8(std::move(utf8)) {}  // no native object
  explicit GString(const platform::String& object);
  virtual ~GString();

  const std::string& GetUTF8String() const { return mUTF8; }
  const platform::String& GetOSString() const { return mOSString; }
  void SetUTF8String(const std::string& text, bool updateOSString);
  // Shares the object. The flag says whether to release the old one now; it has no effect, because objects are
  // reference-counted.
  void SetOSString(const platform::String& object, bool releaseOld);

  // A quick check of the form, not a decoder; the source says what passes.
  static bool ValidateUTF8String(const std::string& text);
  // Converts UTF-8 to code points. A failure is logged and gives an empty result.
  static void Convert(const std::string& text, std::u32string& out);
  // Converts UTF-8 to 32-bit units in machine byte order and back. Invalid text gives an empty result.
  static std::wstring OSUtf8ToUnicode(const std::string& text);
  static std::string OSUnicodeToUtf8(const std::wstring& wide);
  // Converts big-endian UTF-16 without a byte-order mark. An odd number of bytes or a lone surrogate gives an empty
  // result.
  static std::string OSUtf16BigEndianToUtf8(std::string_view bytes);
  static std::string OSUtf8ToUtf8(const std::string& bytes);

 private:
  std::string mUTF8;
  platform::String mOSString;
};
