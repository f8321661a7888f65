// Numbers, part of GStringUtils.
#include <cstdlib>
#include <sstream>

#include "GStringUtils.h"

namespace {

template <class T>
T Extract(const std::string& text) {
  std::istringstream stream(GStringUtils::StripWhitespace(text));
  stream.imbue(std::locale::classic());
  T value{};
  stream >> value;
  return stream.fail() ? T{} : value;
}

}  // namespace

// Tests only whether the last character contributed a digit: "12a" is not a number, "0x" is one. Callers depend on it.
bool GStringUtils::IsNumber(const std::string& text) {
  if (text.empty()) return false;
  const int number = std::atoi(text.c_str());
  if (number != 0) return std::atoi(text.substr(0, text.size() - 1).c_str()) != number;
  return text[0] == '0' || (text[0] == '-' && text.size() > 1 && text[1] == '0');
}

bool GStringUtils::UTF8StringToBool(const std::string& text) {
  std::string value = OSToLowerCase(StripWhitespace(text));
  if (value == "true" || value == "yes") value = "1";
  return Extract<bool>(value);
}

int16_t GStringUtils::UTF8StringToSInt16(const std::string& text) { return Extract<int16_t>(text); }
uint16_t GStringUtils::UTF8StringToUInt16(const std::string& text) { return Extract<uint16_t>(text); }
int32_t GStringUtils::UTF8StringToSInt32(const std::string& text) { return Extract<int32_t>(text); }
uint32_t GStringUtils::UTF8StringToUInt32(const std::string& text) { return Extract<uint32_t>(text); }
int64_t GStringUtils::UTF8StringToSInt64(const std::string& text) { return Extract<int64_t>(text); }
uint64_t GStringUtils::UTF8StringToUInt64(const std::string& text) { return Extract<uint64_t>(text); }
double GStringUtils::UTF8StringToTFloat64(const std::string& text) { return Extract<double>(text); }
int64_t GStringUtils::NumberFromString(const std::string& text) { return Extract<int64_t>(text); }

std::string GStringUtils::AsciiStringFromNumber(int64_t number) { return std::to_string(number); }
std::string GStringUtils::AsciiStringFromUnsignedNumber(uint64_t number) { return std::to_string(number); }

bool GStringUtils::IsValidHexChar(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

std::string GStringUtils::HexadecimalString(const std::string& bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string out;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    out.push_back(kDigits[byte >> 4]);
    out.push_back(kDigits[byte & 15]);
  }
  return out;
}
