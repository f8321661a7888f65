// A UTF-8 text with the platform's own string object beside it, and conversions between encodings.
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
  // The object is shared; the flag says whether the old one is let go now, which sharing makes good in either case.
  void SetOSString(const platform::String& object, bool releaseOld);

  // A quick test of shape and no decoder: see the source for what passes.
  static bool ValidateUTF8String(const std::string& text);
  // UTF-8 to code points; a failure is logged and gives an empty result.
  static void Convert(const std::string& text, std::u32string& out);
  // UTF-8 to 32-bit units in the machine's byte order and back; refused text gives an empty result.
  static std::wstring OSUtf8ToUnicode(const std::string& text);
  static std::string OSUnicodeToUtf8(const std::wstring& wide);
  // Big-endian UTF-16 without a byte-order mark; an odd number of bytes or a lone surrogate gives an empty result.
  static std::string OSUtf16BigEndianToUtf8(std::string_view bytes);
  static std::string OSUtf8ToUtf8(const std::string& bytes);

 private:
  std::string mUTF8;
  platform::String mOSString;
};
