// Encodings and the platform's ways to compare text.
#include "platform/TextEncoding.h"

#include <gtest/gtest.h>
#include <unicode/uloc.h>

namespace platform {
namespace {

constexpr TextEncoding kEveryEncoding[] = {
    TextEncoding::kMacRoman,      TextEncoding::kISOLatin1, TextEncoding::kWindowsLatin1, TextEncoding::kASCII,
    TextEncoding::kNonLossyASCII, TextEncoding::kUTF8,      TextEncoding::kUTF16BE};

TEST(TextEncoding, BytesAndTextGoBothWays) {
  using std::string_literals::operator""s;
  const struct {
    TextEncoding encoding;
    std::string bytes;
    std::string text;
  } rows[] = {
      {TextEncoding::kUTF8, "\xE2\x88\x86", "∆"},
      {TextEncoding::kUTF16BE, "\x22\x06\xD8\x34\xDD\x1E"s, "∆𝄞"},
      {TextEncoding::kUTF16BE, "\0A"s, "A"},
      // Tables differ in the euro sign, the increment and the private code point of the vendor's sign.
      {TextEncoding::kMacRoman, "caf\x8E \xDB\xC6\xF0\xCA", "café €∆\uF8FF\u00A0"},
      {TextEncoding::kWindowsLatin1, "\x80\xE9\x93", "€é“"},
      {TextEncoding::kISOLatin1, "\xE9\x80", "é\u0080"},
      {TextEncoding::kASCII, "plain", "plain"},
      {TextEncoding::kNonLossyASCII, R"(a\\\351\u2206)", "a\\é∆"},
      {TextEncoding::kNonLossyASCII, R"(\ud834\udd1e)", "𝄞"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(DecodeText(row.bytes, row.encoding), row.text) << row.text;
    EXPECT_EQ(EncodeText(row.text, row.encoding), row.bytes) << row.text;
  }
  std::string longText;
  for (int i = 0; i < 5000; ++i) longText += i % 3 ? "é" : "a";
  for (const TextEncoding encoding : kEveryEncoding) {
    for (const std::string& text : {std::string(), encoding == TextEncoding::kASCII ? "a" : longText}) {
      EXPECT_EQ(DecodeText(EncodeText(text, encoding).value_or("nothing"), encoding), text);
    }
  }
}

TEST(TextEncoding, MacRomanTakesEveryByteAndGivesItBack) {
  for (int byte = 0; byte < 256; ++byte) {
    const std::string bytes(1, static_cast<char>(byte));
    const auto text = DecodeText(bytes, TextEncoding::kMacRoman);
    ASSERT_TRUE(text) << byte;
    EXPECT_EQ(EncodeText(*text, TextEncoding::kMacRoman), bytes) << byte;
  }
}

TEST(TextEncoding, MalformedBytesAreNothing) {
  using std::string_literals::operator""s;
  const struct {
    TextEncoding encoding;
    std::string bytes;
  } rows[] = {{TextEncoding::kUTF8, "\xC0\xAF"},          // an overlong form
              {TextEncoding::kUTF8, "\xED\xA0\x80"},      // a surrogate
              {TextEncoding::kUTF8, "\xF4\x90\x80\x80"},  // beyond the last code point
              {TextEncoding::kUTF8, "a\xE2\x88"},         // truncated
              {TextEncoding::kUTF16BE, "\0A\0"s},
              {TextEncoding::kUTF16BE, "\xD8\x34\0A"s},
              {TextEncoding::kUTF16BE, "\xDD\x1E"},
              {TextEncoding::kASCII, "\x80"},
              {TextEncoding::kWindowsLatin1, "\x81"},
              {TextEncoding::kNonLossyASCII, "\x80"},
              {TextEncoding::kNonLossyASCII, R"(\u12)"},
              {TextEncoding::kNonLossyASCII, R"(\u+123)"},
              {TextEncoding::kNonLossyASCII, R"(\400)"},
              {TextEncoding::kNonLossyASCII, R"(\389)"},
              {TextEncoding::kNonLossyASCII, R"(end\)"},
              {TextEncoding::kNonLossyASCII, R"(\ud834 alone)"},
              {TextEncoding::kNonLossyASCII, R"(\udd1e\ud834)"}};
  for (const auto& row : rows) EXPECT_FALSE(DecodeText(row.bytes, row.encoding)) << row.bytes;
}

TEST(TextEncoding, TextThatAnEncodingLacksIsNothing) {
  for (const TextEncoding encoding : kEveryEncoding) EXPECT_FALSE(EncodeText("a\xFF", encoding));
  for (const TextEncoding encoding :
       {TextEncoding::kMacRoman, TextEncoding::kISOLatin1, TextEncoding::kWindowsLatin1, TextEncoding::kASCII}) {
    EXPECT_FALSE(EncodeText("日本", encoding));
    EXPECT_FALSE(EncodeText("caf\u0065\u0301 𝄞", encoding)) << "no likeness in place of a character";
  }
}

TEST(TextEncoding, Comparisons) {
  EXPECT_TRUE(EqualCaseless("STRASSE", "straße"));
  EXPECT_TRUE(EqualCaseless("ΑΣ", "ας"));
  EXPECT_FALSE(EqualCaseless("Arial", "Arial "));
  EXPECT_FALSE(EqualCaseless("[", "{")) << "only letters have a case";
  EXPECT_TRUE(ContainsCaseless("OpenType TrueType", "opentype"));
  EXPECT_TRUE(ContainsCaseless("GRÖẞE", "öss"));
  EXPECT_TRUE(ContainsCaseless("", ""));
  EXPECT_FALSE(ContainsCaseless("Open", "OpenType"));
  EXPECT_EQ(CompareLocalizedCaseless("ZEBRA", "zebra"), 0);
  const struct {
    const char *less, *more;
  } rows[] = {{"1.9", "1.10"}, {"a2", "a10"}, {"2", "02a"}, {"", "0"}, {"Version 9", "version 1"}, {"x", "x1"}};
  for (const auto& row : rows) {
    EXPECT_LT(CompareNumerically(row.less, row.more), 0) << row.less;
    EXPECT_GT(CompareNumerically(row.more, row.less), 0) << row.less;
  }
  EXPECT_EQ(CompareNumerically("1.05", "1.5"), 0);
  const char* const names[] = {"", "[", "_", "A", "arial", "Arial Bold", "ARIAL C", "zapf", "été", "ÉTÉ 2"};
  for (size_t i = 1; i < std::size(names); ++i) {
    EXPECT_LT(CompareCaseless(names[i - 1], names[i]), 0) << names[i];
    EXPECT_GT(CompareCaseless(names[i], names[i - 1]), 0) << names[i];
  }
  EXPECT_EQ(CompareCaseless("arial", "ARIAL"), 0);
}

TEST(TextEncoding, NumbersThatTextsBeginWith) {
  const struct {
    const char* text;
    double real;
    int32_t integer;
  } rows[] = {{"12", 12, 12},
              {" \t-7x", -7, -7},
              {"+3.5", 3.5, 3},
              {"1.2.3", 1.2, 1},
              {".5", 0.5, 0},
              {"1e", 1, 1},
              {"Version 1.0", 0, 0},
              {"inf", 0, 0},
              {"-nan", 0, 0},
              {"+-5", 0, 0},
              {"", 0, 0},
              {"99999999999", 99999999999.0, INT32_MAX},
              {"-99999999999999999999", -99999999999999999999.0, INT32_MIN},
              {"0x10", 0, 0}};
  for (const auto& row : rows) {
    EXPECT_EQ(RealOfText(row.text), row.real) << row.text;
    EXPECT_EQ(IntegerOfText(row.text), row.integer) << row.text;
  }
}

TEST(TextEncoding, CaseAndWhiteSpace) {
  const std::string before = uloc_getDefault();
  for (const char* locale : {"en", "tr", "nl"}) {
    UErrorCode status = U_ZERO_ERROR;
    uloc_setDefault(locale, &status);
    EXPECT_EQ(Capitalize("type-maker & SÖHNE ijs"), "Type-Maker & Söhne Ijs") << locale;
    EXPECT_EQ(ToLowercase("ÀBI"), "àbi") << locale;
  }
  UErrorCode status = U_ZERO_ERROR;
  uloc_setDefault(before.c_str(), &status);
  EXPECT_EQ(TrimWhitespace("\u00A0\t a b \u3000\n"), "a b");
  EXPECT_EQ(TrimWhitespace(" \t"), "");
  for (const char* malformed : {"a\xFF ", "\xC3"}) EXPECT_EQ(TrimWhitespace(malformed), malformed);
}

}  // namespace
}  // namespace platform
