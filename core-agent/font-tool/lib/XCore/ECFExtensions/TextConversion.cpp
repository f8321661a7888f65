#include "XCore/ECFExtensions/TextConversion.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "GLogger.h"
#include "GStringUtils.h"
#include "platform/Iconv.h"
#include "platform/TextEncoding.h"

const std::string local_charset = "UTF-8";

namespace {

constexpr size_t kLongestPascalString = 255;

constexpr platform::TextEncoding sEncodingsToTry[] = {
    platform::TextEncoding::kUTF8,      platform::TextEncoding::kMacRoman, platform::TextEncoding::kWindowsLatin1,
    platform::TextEncoding::kISOLatin1, platform::TextEncoding::kASCII,    platform::TextEncoding::kNonLossyASCII,
};

std::string_view Contents(ConstPlatformString text) {
  return {reinterpret_cast<const char*>(text + 1), GetPlatformStringLength(text)};
}

void Store(PlatformString destination, std::string_view bytes) {
  destination[0] = static_cast<unsigned char>(bytes.size());
  std::memcpy(destination + 1, bytes.data(), bytes.size());
}

// Well-formed text needs no conversion, and opening a converter costs more than converting most texts.
bool IsItsOwnConversion(const std::string& text) { return local_charset == "UTF-8" && platform::IsValidUTF8(text); }

}  // namespace

std::string iconv_string(const std::string& in, const char* to, const char* from) {
  if (in.empty()) return "";
  platform::IconvResult result = platform::ConvertWithIconv(in, to, from);
  if (result.openError != 0) {
    throw std::runtime_error("Unable to initialize iconv (error " + std::to_string(result.openError) + ")");
  }
  if (result.error != 0) {
    throw std::runtime_error(std::string("Unable to convert string to ") + to + " (error " +
                             std::to_string(result.error) + "): " + in);
  }
  return std::move(result.text);
}

std::string local_to_utf8(const std::string& text) {
  return IsItsOwnConversion(text) ? text : iconv_string(text, "UTF-8//IGNORE", local_charset.c_str());
}

std::string utf8_to_local(const std::string& text) {
  return IsItsOwnConversion(text) ? text : iconv_string(text, local_charset.c_str(), "UTF-8");
}

platform::String CFStringCreateWithUncertainEncoding(const char* text) {
  if (!text) return platform::String();
  for (const platform::TextEncoding encoding : sEncodingsToTry) {
    if (const auto decoded = platform::DecodeText(text, encoding)) return platform::String::FromUTF8(*decoded);
  }
  GLogger::GetSharedInstance()->LogError(
      "Miscellaneous", "CFStringCreateWithCString failed on '%s' for all encoding types. %s() returning NULL.", text,
      __func__);
  return platform::String();
}

std::string CreateUTF8StringFromUncertainEncoding(const char* text) {
  return CFStringCreateWithUncertainEncoding(text).Text();
}

std::string GetStdString(const platform::String& text) { return text.Text(); }

void GetUTF8String(const platform::String& text, std::string& out) { out = text.Text(); }

unsigned GetPlatformStringLength(ConstPlatformString text) { return text ? text[0] : 0; }

platform::String XCFStringCreateWithPlatformString(ConstPlatformString text) {
  if (!text) return platform::String();
  const auto decoded = platform::DecodeText(Contents(text), platform::TextEncoding::kMacRoman);
  return decoded ? platform::String::FromUTF8(*decoded) : platform::String();
}

bool XCFStringGetPlatformString(const platform::String& text, PlatformString buffer, size_t size) {
  if (!text || !buffer) return false;
  auto bytes = platform::EncodeText(text.View(), platform::kSystemEncoding);
  if (!bytes) bytes = platform::EncodeText(text.View(), platform::TextEncoding::kMacRoman);
  if (!bytes || bytes->size() > kLongestPascalString || bytes->size() + 1 > size) return false;
  Store(buffer, *bytes);
  if (bytes->size() + 1 < size) buffer[bytes->size() + 1] = 0;
  return true;
}

std::string STLStringFromPlatformString(ConstPlatformString text) {
  if (!text) return "";
  const std::string_view bytes = Contents(text);
  return std::string(bytes.substr(0, bytes.find('\0')));
}

std::string STLStringFromPascalString(ConstPlatformString text) { return STLStringFromPlatformString(text); }

bool CopyPascalStringToCString(char* c, ConstPlatformString text) {
  if (!c || !text) return false;
  const std::string_view bytes = Contents(text);
  std::memcpy(c, bytes.data(), bytes.size());
  c[bytes.size()] = '\0';
  return true;
}

void PlatformStringCopy(PlatformString destination, ConstPlatformString source) {
  if (!destination) return;
  destination[0] = 0;
  PlatformStringConcat(destination, source);
}

void PlatformStringConcat(PlatformString destination, ConstPlatformString source) {
  if (!destination || !source) return;
  const size_t used = destination[0];
  const size_t taken = std::min<size_t>(source[0], kLongestPascalString - used);
  std::memmove(destination + 1 + used, source + 1, taken);
  destination[0] = static_cast<unsigned char>(used + taken);
}

void CopyCStringToPascalString(PlatformString destination, const char* c) {
  if (!destination || !c) return;
  const size_t length = std::strlen(c);
  destination[0] = static_cast<unsigned char>(length);
  std::memcpy(destination + 1, c, length + 1);
}

bool CopyUTF8CStringToMacRomanPascalString(PlatformString destination, size_t size, const char* c) {
  if (!destination || !c || size == 0) return false;
  std::memset(destination, 0, size);
  const auto bytes = platform::EncodeText(c, platform::TextEncoding::kMacRoman);
  if (!bytes || bytes->size() > kLongestPascalString || bytes->size() + 1 > size) return false;
  Store(destination, *bytes);
  return true;
}

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
  text = GStringUtils::StringReplace(text, from, to);
}
