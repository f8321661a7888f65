#include "platform/TextEncoding.h"

#include <unicode/coll.h>
#include <unicode/uchar.h>
#include <unicode/ucnv.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <charconv>
#include <compare>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/Iconv.h"

namespace platform {

namespace {

bool IsASCII(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}
char LowerASCII(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
bool AreEqualASCIILetters(char a, char b) { return LowerASCII(a) == LowerASCII(b); }

// Returns nothing if a character has no exact conversion.
std::optional<std::string> ConvertExactly(std::string_view bytes, const char* to, const char* from) {
  IconvResult result = ConvertWithIconv(bytes, to, from);
  if (result.openError != 0 || result.error != 0 || result.replaced > 0) return std::nullopt;
  return std::move(result.text);
}

// Uses ICU, because the C library's table of MacRoman differs from the published one in two places.
class MacRoman {
 public:
  MacRoman() : converter_(ucnv_open("macintosh", &status_)) {
    ucnv_setFromUCallBack(converter_, UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status_);
    ucnv_setFallback(converter_, false);
  }
  ~MacRoman() { ucnv_close(converter_); }
  MacRoman(const MacRoman&) = delete;
  MacRoman& operator=(const MacRoman&) = delete;

  std::optional<std::string> Decode(std::string_view bytes) {
    std::u16string units(bytes.size(), u'\0');  // one for each byte
    ucnv_toUChars(converter_, units.data(), static_cast<int32_t>(units.size()), bytes.data(),
                  static_cast<int32_t>(bytes.size()), &status_);
    return U_SUCCESS(status_) ? UTF16ToUTF8(units) : std::nullopt;
  }
  std::optional<std::string> Encode(std::u16string_view text) {
    std::string bytes(text.size(), '\0');
    ucnv_fromUChars(converter_, bytes.data(), static_cast<int32_t>(bytes.size()), text.data(),
                    static_cast<int32_t>(text.size()), &status_);
    return U_SUCCESS(status_) ? std::optional(bytes) : std::nullopt;
  }

 private:
  UErrorCode status_ = U_ZERO_ERROR;
  UConverter* converter_;
};

const char* NameOf(TextEncoding encoding) {
  switch (encoding) {
    case TextEncoding::kISOLatin1: return "ISO-8859-1";
    case TextEncoding::kWindowsLatin1: return "CP1252";
    case TextEncoding::kASCII: return "ASCII";
    case TextEncoding::kUTF16BE: return "UTF-16BE";
    case TextEncoding::kUTF8: return "UTF-8";
    case TextEncoding::kMacRoman:
    case TextEncoding::kNonLossyASCII: return nullptr;
  }
  return nullptr;
}

void AppendUnit(std::u16string& out, unsigned value) { out.push_back(static_cast<char16_t>(value)); }

std::optional<unsigned> ReadDigits(std::string_view text, size_t count, int base) {
  if (text.size() < count) return std::nullopt;
  unsigned value = 0;
  for (size_t i = 0; i < count; ++i) {
    const int digit = u_digit(static_cast<unsigned char>(text[i]), static_cast<int8_t>(base));
    if (digit < 0) return std::nullopt;
    value = value * static_cast<unsigned>(base) + static_cast<unsigned>(digit);
  }
  return value;
}

// Decodes "\\" as a backslash, "\ooo" as one of the first 256 characters, and "\uxxxx" as a UTF-16 unit.
std::optional<std::string> DecodeNonLossyASCII(std::string_view bytes) {
  std::u16string units;
  for (size_t i = 0; i < bytes.size();) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    if (byte > 127) return std::nullopt;
    if (byte != '\\') {
      AppendUnit(units, byte);
      ++i;
      continue;
    }
    const std::string_view rest = bytes.substr(i + 1);
    if (rest.substr(0, 1) == "\\") {
      AppendUnit(units, '\\');
      i += 2;
    } else if (rest.substr(0, 1) == "u") {
      const auto unit = ReadDigits(rest.substr(1), 4, 16);
      if (!unit) return std::nullopt;
      AppendUnit(units, *unit);
      i += 6;
    } else {
      const auto unit = ReadDigits(rest, 3, 8);
      if (!unit || *unit > 255) return std::nullopt;
      AppendUnit(units, *unit);
      i += 4;
    }
  }
  return UTF16ToUTF8(units);
}

std::optional<std::string> EncodeNonLossyASCII(std::string_view utf8) {
  const auto units = UTF8ToUTF16(utf8);
  if (!units) return std::nullopt;
  std::string out;
  char buffer[8];
  for (const char16_t unit : *units) {
    if (unit == '\\') {
      out += "\\\\";
    } else if (unit < 128) {
      out.push_back(static_cast<char>(unit));
    } else {
      std::snprintf(buffer, sizeof buffer, unit < 256 ? "\\%03o" : "\\u%04x", static_cast<unsigned>(unit));
      out += buffer;
    }
  }
  return out;
}

icu::UnicodeString Unicode(std::string_view text) {
  return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

std::string UTF8(const icu::UnicodeString& text) {
  std::string out;
  text.toUTF8String(out);
  return out;
}

int Sign(int value) { return (value > 0) - (value < 0); }

int CompareBytes(std::string_view a, std::string_view b) { return Sign(a.compare(b)); }

// Texts longer than ICU's index range are compared by bytes.
constexpr size_t kLongestForICU = static_cast<size_t>(std::numeric_limits<int32_t>::max()) / 4;

bool AreForICU(std::string_view a, std::string_view b) {
  return a.size() < kLongestForICU && b.size() < kLongestForICU && IsValidUTF8(a) && IsValidUTF8(b);
}

}  // namespace

std::optional<std::string> DecodeText(std::string_view bytes, TextEncoding encoding) {
  if (encoding == TextEncoding::kUTF8) return IsValidUTF8(bytes) ? std::optional(std::string(bytes)) : std::nullopt;
  if (encoding == TextEncoding::kNonLossyASCII) return DecodeNonLossyASCII(bytes);
  if (encoding == TextEncoding::kMacRoman)
    return bytes.size() < kLongestForICU ? MacRoman().Decode(bytes) : std::nullopt;
  return ConvertExactly(bytes, "UTF-8", NameOf(encoding));
}

std::optional<std::string> EncodeText(std::string_view utf8, TextEncoding encoding) {
  if (!IsValidUTF8(utf8)) return std::nullopt;
  if (encoding == TextEncoding::kUTF8) return std::string(utf8);
  if (encoding == TextEncoding::kNonLossyASCII) return EncodeNonLossyASCII(utf8);
  if (encoding == TextEncoding::kMacRoman) {
    return utf8.size() < kLongestForICU ? MacRoman().Encode(*UTF8ToUTF16(utf8)) : std::nullopt;
  }
  return ConvertExactly(utf8, NameOf(encoding), "UTF-8");
}

bool IsValidUTF8(std::string_view text) {
  const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
  const size_t size = text.size();
  size_t at = 0;
  while (at < size) {
    if (bytes[at] < 0x80) {
      ++at;
      continue;
    }
    // A sequence has at most 4 bytes, so the macro's 32-bit indexes are relative to it.
    const int32_t most = static_cast<int32_t>(std::min<size_t>(size - at, 4));
    int32_t length = 0;
    UChar32 point;
    U8_NEXT(bytes + at, length, most, point);
    if (point < 0) return false;
    at += static_cast<size_t>(length);
  }
  return true;
}

std::optional<std::string> UTF16ToUTF8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    UChar32 point = text[i];
    if (U16_IS_SURROGATE(point)) {
      if (!U16_IS_SURROGATE_LEAD(point) || i + 1 >= text.size() || !U16_IS_TRAIL(text[i + 1])) return std::nullopt;
      point = U16_GET_SUPPLEMENTARY(point, text[i + 1]);
      ++i;
    }
    char buffer[U8_MAX_LENGTH];
    int32_t length = 0;
    U8_APPEND_UNSAFE(buffer, length, point);
    out.append(buffer, static_cast<size_t>(length));
  }
  return out;
}

std::optional<std::u16string> UTF8ToUTF16(std::string_view text) {
  if (!IsValidUTF8(text)) return std::nullopt;
  std::u16string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size();) {
    int32_t length = 0;
    UChar32 point;
    U8_NEXT_UNSAFE(text.data() + i, length, point);
    i += static_cast<size_t>(length);
    if (point > 0xFFFF) {
      out.push_back(static_cast<char16_t>(U16_LEAD(point)));
      out.push_back(static_cast<char16_t>(U16_TRAIL(point)));
    } else {
      out.push_back(static_cast<char16_t>(point));
    }
  }
  return out;
}

int CompareCaseless(std::string_view a, std::string_view b) {
  if (IsASCII(a) && IsASCII(b)) {
    const auto order = std::lexicographical_compare_three_way(
        a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return LowerASCII(x) <=> LowerASCII(y); });
    return order < 0 ? -1 : order > 0;
  }
  if (!AreForICU(a, b)) return CompareBytes(a, b);
  return Sign(Unicode(a).caseCompare(Unicode(b), U_FOLD_CASE_DEFAULT));
}

int CompareLocalizedCaseless(std::string_view a, std::string_view b) {
  if (!AreForICU(a, b)) return CompareBytes(a, b);
  static std::mutex sMutex;
  static std::unique_ptr<icu::Collator> sCollator;
  const std::lock_guard lock(sMutex);
  UErrorCode status = U_ZERO_ERROR;
  if (!sCollator) {
    // The C locale would compare code points, case-sensitively; use the root collation instead.
    const icu::Locale locale = icu::Locale::getDefault();
    const bool isC = std::string_view(locale.getName()) == "en_US_POSIX";
    sCollator.reset(icu::Collator::createInstance(isC ? icu::Locale::getRoot() : locale, status));
    if (U_FAILURE(status) || !sCollator) return CompareCaseless(a, b);
    sCollator->setStrength(icu::Collator::SECONDARY);
  }
  return Sign(sCollator->compare(Unicode(a), Unicode(b), status));
}

int CompareNumerically(std::string_view a, std::string_view b) {
  const auto isDigit = [](std::string_view text, size_t at) {
    return at < text.size() && text[at] >= '0' && text[at] <= '9';
  };
  const auto digitsAt = [&](std::string_view text, size_t& at) {
    while (isDigit(text, at) && text[at] == '0' && isDigit(text, at + 1)) ++at;
    const size_t start = at;
    while (isDigit(text, at)) ++at;
    return text.substr(start, at - start);
  };
  size_t i = 0, j = 0;
  while (i < a.size() && j < b.size()) {
    if (isDigit(a, i) && isDigit(b, j)) {
      const std::string_view left = digitsAt(a, i), right = digitsAt(b, j);
      if (left.size() != right.size()) return left.size() < right.size() ? -1 : 1;
      if (const int order = CompareBytes(left, right)) return order;
      continue;
    }
    if (a[i] != b[j]) return static_cast<unsigned char>(a[i]) < static_cast<unsigned char>(b[j]) ? -1 : 1;
    ++i, ++j;
  }
  return static_cast<int>(i < a.size()) - static_cast<int>(j < b.size());
}

// Fast path: nearly all compared text is ASCII, which needs no conversion.

bool EqualCaseless(std::string_view a, std::string_view b) {
  if (!IsASCII(a) || !IsASCII(b)) return CompareCaseless(a, b) == 0;
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), AreEqualASCIILetters);
}

bool ContainsCaseless(std::string_view text, std::string_view part) {
  if (IsASCII(text) && IsASCII(part)) {
    return std::search(text.begin(), text.end(), part.begin(), part.end(), AreEqualASCIILetters) != text.end() ||
           part.empty();
  }
  if (!AreForICU(text, part)) return text.find(part) != std::string_view::npos;
  icu::UnicodeString folded = Unicode(text), sought = Unicode(part);
  return folded.foldCase().indexOf(sought.foldCase()) >= 0 || part.empty();
}

std::string ToLowercase(std::string_view text) {
  if (IsASCII(text)) {
    std::string out(text);
    for (char& c : out) c = LowerASCII(c);
    return out;
  }
  if (!AreForICU(text, "")) return std::string(text);
  return UTF8(Unicode(text).toLower(icu::Locale::getRoot()));
}

std::string Capitalize(std::string_view text) {
  if (!AreForICU(text, "")) return std::string(text);
  return UTF8(Unicode(text).toTitle(nullptr, icu::Locale::getRoot()));
}

std::string TrimWhitespace(std::string_view text) {
  if (IsASCII(text)) {
    constexpr std::string_view kWhitespace = "\t\n\v\f\r ";
    const size_t first = text.find_first_not_of(kWhitespace);
    if (first == std::string_view::npos) return "";
    return std::string(text.substr(first, text.find_last_not_of(kWhitespace) - first + 1));
  }
  if (!AreForICU(text, "")) return std::string(text);
  const icu::UnicodeString all = Unicode(text);
  int32_t begin = 0, end = all.length();
  while (begin < end && u_isUWhiteSpace(all.char32At(begin))) begin = all.moveIndex32(begin, 1);
  while (end > begin && u_isUWhiteSpace(all.char32At(end - 1))) end = all.moveIndex32(end, -1);
  return UTF8(all.tempSubStringBetween(begin, end));
}

int32_t IntegerOfText(std::string_view text) {
  const long long value = std::strtoll(std::string(text).c_str(), nullptr, 10);
  if (value > std::numeric_limits<int32_t>::max()) return std::numeric_limits<int32_t>::max();
  if (value < std::numeric_limits<int32_t>::min()) return std::numeric_limits<int32_t>::min();
  return static_cast<int32_t>(value);
}

double RealOfText(std::string_view text) {
  const size_t start = text.find_first_not_of(" \t\n\v\f\r");
  if (start == std::string_view::npos) return 0.0;
  text.remove_prefix(start);
  const bool hasPlus = text.front() == '+';
  if (hasPlus) text.remove_prefix(1);
  // Accepts plain decimal numbers only: words for infinity look like the start of some font versions.
  double value = 0.0;
  const size_t digits = !hasPlus && text.starts_with('-') ? 1 : 0;
  if (digits >= text.size() || !((text[digits] >= '0' && text[digits] <= '9') || text[digits] == '.')) return 0.0;
  // Independent of the locale, unlike the C library's function.
  return std::from_chars(text.data(), text.data() + text.size(), value).ec == std::errc() ? value : 0.0;
}

}  // namespace platform
