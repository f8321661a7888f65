// Any bytes as text in each encoding and as a Pascal string: gives a result, an empty result or the exception of the
// conversion. Valid text comes back from each conversion.
#include <cstring>
#include <stdexcept>

#include "Check.h"
#include "GString.h"
#include "GStringUtils.h"
#include "Input.h"
#include "XCore/ECFExtensions/TextConversion.h"
#include "platform/TextEncoding.h"

namespace {

int Sign(int value) { return (value > 0) - (value < 0); }

void ConvertUnicode(const std::string& text) {
  const bool isValid = platform::IsValidUTF8(text);
  CHECK(GString::OSUtf8ToUtf8(text) == (isValid ? text : ""));
  CHECK(GString::OSUnicodeToUtf8(GString::OSUtf8ToUnicode(text)) == (isValid ? text : ""));
  std::u32string points;
  GString::Convert(text, points);
  CHECK(points.empty() == (!isValid || text.empty()));
  if (isValid) CHECK(GString::ValidateUTF8String(text));
  CHECK(platform::IsValidUTF8(GString::OSUtf16BigEndianToUtf8(text)));
}

void ConvertThroughIconv(const std::string& text) {
  for (const char* from : {"UTF-8", "MACINTOSH", "ISO-8859-1", "UTF-16", "SHIFT_JIS"}) {
    try {
      const std::string utf8 = iconv_string(text, "UTF-8", from);
      // In UTF-8 the library accepts more code points than Unicode has.
      CHECK(platform::IsValidUTF8(utf8) || (utf8 == text && std::strcmp(from, "UTF-8") == 0));
    } catch (const std::runtime_error& error) {
      CHECK(std::strncmp(error.what(), "Unable to convert string to UTF-8 (error ", 41) == 0);
    }
  }
  CHECK(local_to_utf8(text).size() <= text.size());
  try {
    CHECK(utf8_to_local(text) == text);
  } catch (const std::runtime_error&) {
    CHECK(!platform::IsValidUTF8(text));
  }
}

void ConvertPascal(const std::string& text) {
  const std::string uncertain = CreateUTF8StringFromUncertainEncoding(text.c_str());
  CHECK(platform::IsValidUTF8(uncertain) && uncertain.empty() == (text[0] == '\0'));
  unsigned char buffer[256];
  const size_t size = text.empty() ? 0 : static_cast<unsigned char>(text[0]) + 1u;
  if (CopyUTF8CStringToMacRomanPascalString(buffer, size, text.c_str())) {
    CHECK(XCFStringCreateWithPlatformString(buffer).View() == text.c_str());
  }
  std::memset(buffer, 0, sizeof buffer);
  PlatformStringConcat(buffer, reinterpret_cast<const unsigned char*>(text.substr(0, 256).append(256, 'x').data()));
  PlatformStringConcat(buffer, buffer);
  CHECK(STLStringFromPascalString(buffer).size() <= GetPlatformStringLength(buffer));
}

void Edit(const std::string& text) {
  std::string cut = text;
  if (GStringUtils::OSTruncateUTF8String(cut, text.size() / 2) == CoreErrorCodes::kSuccess) {
    CHECK(cut.size() <= text.size() / 2 && platform::IsValidUTF8(cut) && text.starts_with(cut));
  }
  const std::string other(text.rbegin(), text.rend());
  for (const auto encoding : {GStringUtils::kStringEncoding_SingleByte, GStringUtils::kStringEncoding_UTF8}) {
    const int there = GStringUtils::CompareStringsNoCase(encoding, text, other);
    CHECK(Sign(there) == -Sign(GStringUtils::CompareStringsNoCase(encoding, other, text)));
  }
  CHECK(GStringUtils::EscapeRequiredXMLEntities(text).find_first_of("<>\"'") == std::string::npos);
  CHECK(GStringUtils::EscapeURLComponent(text).size() <= 3 * text.size());
  GStringUtils::IsNumber(text);
  GStringUtils::UTF8StringToSInt16(text);
  GStringUtils::UTF8StringToTFloat64(text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(BytesOf(data, size));
  ConvertUnicode(text);
  ConvertThroughIconv(text);
  ConvertPascal(text);
  Edit(text);
  return 0;
}
