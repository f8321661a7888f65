#include "GString.h"

#include <unicode/utf8.h>

#include <optional>

#include "FailedCheck.h"
#include "platform/TextEncoding.h"

namespace {

constexpr const char* kLogIdentifier = "Miscellaneous";
constexpr char32_t kLastCodePoint = 0x10FFFF;

std::optional<std::u32string> CodePoints(std::string_view text) {
  if (!platform::IsValidUTF8(text)) return std::nullopt;
  std::u32string points;
  points.reserve(text.size());
  for (size_t i = 0; i < text.size();) {
    size_t length = 0;
    char32_t point = 0;
    U8_NEXT_UNSAFE(text.data() + i, length, point);
    points.push_back(point);
    i += length;
  }
  return points;
}

}  // namespace

GString::GString(const platform::String& object) : mUTF8(object.Text()), mOSString(object) {}
GString::~GString() = default;

void GString::SetUTF8String(const std::string& text, bool updateOSString) {
  mUTF8 = text;
  if (updateOSString) mOSString = platform::String::FromUTF8(text);
}

void GString::SetOSString(const platform::String& object, bool) {
  mOSString = object;
  mUTF8 = object.Text();
}

// Bytes with the high bit are collected in runs. The length that a lead byte announces is not checked, and a run before
// a NUL is dropped whatever its length.
bool GString::ValidateUTF8String(const std::string& text) {
  size_t run = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte > 244 || byte == 0xC0 || byte == 0xC1) return false;
    if (byte >= 0x80) {
      ++run;
    } else {
      if (byte != 0 && run == 1) return false;
      run = 0;
    }
  }
  return run != 1;
}

void GString::Convert(const std::string& text, std::u32string& out) {
  out.clear();
  if (auto points = CodePoints(text)) {
    out = std::move(*points);
  } else {
    GLogger::GetSharedInstance()->LogError(kLogIdentifier, "%s", "the text is not valid UTF-8");
  }
}

std::wstring GString::OSUtf8ToUnicode(const std::string& text) {
  static_assert(sizeof(wchar_t) == 4);
  const platform::String osStr = platform::String::FromUTF8(text);
  if (!osStr) {
    ReportFailedCheck(kLogIdentifier, CoreErrorCodes::kNullPointer, __FILE__, __LINE__, "(osStr) == nullptr");
    return {};
  }
  const auto unicodeData = CodePoints(osStr.View());
  if (!unicodeData) {
    ReportFailedCheck(kLogIdentifier, CoreErrorCodes::kNullPointer, __FILE__, __LINE__, "(unicodeData) == nullptr");
    return {};
  }
  return std::wstring(unicodeData->begin(), unicodeData->end());
}

std::string GString::OSUnicodeToUtf8(const std::wstring& wide) {
  std::string out;
  out.reserve(wide.size());
  for (const wchar_t unit : wide) {
    const auto point = static_cast<char32_t>(unit);
    if (point > kLastCodePoint || U_IS_SURROGATE(point)) return {};
    char bytes[U8_MAX_LENGTH];
    size_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, point);
    out.append(bytes, length);
  }
  return out;
}

std::string GString::OSUtf16BigEndianToUtf8(std::string_view bytes) {
  return platform::DecodeText(bytes, platform::TextEncoding::kUTF16BE).value_or("");
}

std::string GString::OSUtf8ToUtf8(const std::string& bytes) {
  return platform::IsValidUTF8(bytes) ? bytes : std::string();
}
