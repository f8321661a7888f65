#include "GString.h"

#include "FailedCheck.h"
#include "platform/TextEncoding.h"

namespace {

constexpr char32_t kLastCodePoint = 0x10FFFF;

bool IsSurrogate(char32_t point) { return point >= 0xD800 && point <= 0xDFFF; }

void AppendUtf8(std::string& out, char32_t point) {
  if (point < 0x80) {
    out.push_back(static_cast<char>(point));
  } else if (point < 0x800) {
    out.push_back(static_cast<char>(0xC0 | point >> 6));
    out.push_back(static_cast<char>(0x80 | (point & 0x3F)));
  } else if (point < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | point >> 12));
    out.push_back(static_cast<char>(0x80 | (point >> 6 & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (point & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | point >> 18));
    out.push_back(static_cast<char>(0x80 | (point >> 12 & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (point >> 6 & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (point & 0x3F)));
  }
}

// The text must be valid UTF-8.
std::u32string CodePoints(std::string_view text) {
  std::u32string points;
  points.reserve(text.size());
  for (size_t i = 0; i < text.size();) {
    const auto lead = static_cast<unsigned char>(text[i]);
    const size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t point = length == 1 ? lead : lead & (0xFF >> (length + 1));
    for (size_t k = 1; k < length; ++k) point = point << 6 | (static_cast<unsigned char>(text[i + k]) & 0x3F);
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

// Bytes with the high bit set are collected in runs. What a lead byte announces is not looked at, and a run before a
// NUL is let go whatever its length.
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
  if (platform::IsValidUTF8(text)) {
    out = CodePoints(text);
  } else {
    GLogger::GetSharedInstance()->LogError("Miscellaneous", "%s", "the text is not valid UTF-8");
  }
}

std::wstring GString::OSUtf8ToUnicode(const std::string& text) {
  static_assert(sizeof(wchar_t) == 4);
  const platform::String osStr = platform::String::FromUTF8(text);
  if (!osStr) {
    ReportFailedCheck("Miscellaneous", CoreErrorCodes::kNullPointer, __FILE__, __LINE__, "(osStr) == nullptr");
    return {};
  }
  const std::u32string points = CodePoints(text);
  return std::wstring(points.begin(), points.end());
}

std::string GString::OSUnicodeToUtf8(const std::wstring& wide) {
  std::string out;
  out.reserve(wide.size());
  for (const wchar_t unit : wide) {
    const auto point = static_cast<char32_t>(unit);
    if (point > kLastCodePoint || IsSurrogate(point)) return {};
    AppendUtf8(out, point);
  }
  return out;
}

std::string GString::OSUtf16BigEndianToUtf8(std::string_view bytes) {
  if (bytes.size() % 2 != 0) return {};
  std::u16string units;
  units.reserve(bytes.size() / 2);
  for (size_t i = 0; i < bytes.size(); i += 2) {
    units.push_back(
        static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) << 8 | static_cast<unsigned char>(bytes[i + 1])));
  }
  return platform::UTF16ToUTF8(units).value_or("");
}

std::string GString::OSUtf8ToUtf8(const std::string& bytes) {
  return platform::IsValidUTF8(bytes) ? bytes : std::string();
}
