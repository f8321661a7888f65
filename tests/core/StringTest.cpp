#include <gmock/gmock.h>

#include "CoreFixtures.h"
#include "GDateTime.h"
#include "GString.h"
#include "GStringUtils.h"

namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using Utils = GStringUtils;

constexpr auto kSingle = Utils::kStringEncoding_SingleByte;
constexpr auto kUTF8 = Utils::kStringEncoding_UTF8;
constexpr size_t kNone = std::string::npos;

int Sign(int value) { return (value > 0) - (value < 0); }

TEST(Strings, CaselessComparison) {
  struct {
    Utils::EStringEncoding encoding;
    const char *a, *b;
    int expected;
  } const cases[] = {
      {kUTF8, "abc", "ABC", 0},
      {kUTF8, "abc", "ab", 1},
      {kUTF8, nullptr, "", 0},
      {kUTF8, "", "a", -1},
      {kUTF8, "a", nullptr, 1},
      {kUTF8, "aB", "Ac", -1},
      {kUTF8, "\xC3\x84", "\xC3\xA4", 0},
      {kUTF8, "z", "\xC3\xA4", 1},  // the localized order sorts the umlaut with its letter
      {kUTF8, "a1", "aB", -1},
      {kUTF8, "\xFF", "\xFE", 1},
      {kSingle, "abc", "ABC", 0},
      {kSingle, "ABCD", "abc", 1},
      {kSingle, "b", "A", 1},
      {kSingle, nullptr, "x", -1},
      {static_cast<Utils::EStringEncoding>(3), "a", "b", 0},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Sign(Utils::CompareStringsNoCase(c.encoding, c.a, c.b)), c.expected);
    if (!c.a || !c.b) continue;
    const std::string a = c.a, b = c.b;
    EXPECT_EQ(Sign(Utils::CompareStringsNoCase(c.encoding, a, b)), c.expected) << a << " " << b;
    EXPECT_EQ(Sign(Utils::CompareStringsNoCase(c.encoding, a, c.b)), c.expected);
    EXPECT_EQ(Sign(Utils::CompareStringsNoCase(c.encoding, c.a, b)), c.expected);
    if (c.encoding == kUTF8) {
      EXPECT_EQ(Utils::ISUTF8StringLessThanNoCase(a, b), c.expected < 0);
    }
  }
  EXPECT_EQ(Utils::OSCompareStringsNoCase(kUTF8, "abcd", "ab"), 2);  // the difference of the lengths
  EXPECT_EQ(Utils::OSCompareStringsNoCase(kUTF8, "aC", "ab"), 1);    // by upper-case forms
  EXPECT_EQ(Utils::OSCompareStringsNoCase(kSingle, "abcde", 3, "ABCxx", 3), 0);
}

TEST(Strings, SearchesAreWhatTheySay) {
  EXPECT_EQ(Utils::StringFindNoCase("Times NEW Roman", "new"), 6u);
  EXPECT_EQ(Utils::StringFindNoCase("Times", "roman"), kNone);
  EXPECT_EQ(Utils::StringFindNoCase("Times", ""), 0u);
  EXPECT_TRUE(Utils::BeginsWith("abc", "ab") && Utils::EndsWith("abc", "bc") && Utils::Contains("abc", "b"));
  EXPECT_FALSE(Utils::BeginsWith("a", "ab") || Utils::EndsWith("a", "ba") || Utils::Contains("abc", "B"));
  const std::tuple<std::string, const char*, bool> expressions[] = {
      {"abc", "a.c", true},
      {"abcd", "a.c", false},
      {"abc", "[", false},
      {"\xC3\xA4", ".", true},
      {"\xC3", ".", false},
      {"a", "\xC3", false},
      {std::string(20'000, 'a'), "(a|b)*", true},
      {std::string(40, 'a') + "b", "(a+)+c", false},  // would backtrack for years
  };
  for (const auto& [text, expression, expected] : expressions) {
    EXPECT_EQ(Utils::IsRegExMatch(text, expression), expected) << expression;
  }
}

TEST(Strings, CaseAndSpace) {
  EXPECT_EQ(Utils::OSToLowerCase("AbZ\xC3\x84"), "abz\xC3\x84");
  EXPECT_EQ(Utils::OSToUpperCase("aBz\xC3\xA4"), "ABZ\xC3\xA4");
  struct {
    const char *text, *both, *front, *back;
    size_t first;
  } const cases[] = {{" \t\n\v\f\ra b \r\n", "a b", "a b \r\n", " \t\n\v\f\ra b", 6},
                     {"", "", "", "", kNone},
                     {" \n", "", "", "", kNone},
                     {"a", "a", "a", "a", 0}};
  for (const auto& c : cases) {
    EXPECT_EQ(Utils::StripWhitespace(c.text), c.both);
    EXPECT_EQ(Utils::StripPrecedingWhitespace(c.text), c.front);
    EXPECT_EQ(Utils::StripTrailingWhitespace(c.text), c.back);
    EXPECT_EQ(Utils::FirstNonWhiteSpaceCharacterLoc(c.text), c.first);
  }
  EXPECT_EQ(Utils::StripPrecedingString("\"\"a", "\""), "\"a");
  EXPECT_EQ(Utils::StripTrailingString("a\"\"", "\""), "a\"");
  EXPECT_EQ(Utils::EnsureEndsWith("a", "/") + Utils::EnsureEndsWith("b/", "/"), "a/b/");
}

TEST(Strings, SplittingAndJoining) {
  EXPECT_THAT(Utils::Split("a,,b,", ","), ElementsAre("a", "", "b", ""));
  EXPECT_THAT(Utils::Split("", ","), ElementsAre(""));
  EXPECT_THAT(Utils::Split("a,b", ""), ElementsAre("a,b"));
  EXPECT_THAT(Utils::Split("a::b:c", "::"), ElementsAre("a", "b:c"));
  EXPECT_THAT(Utils::TokenizeString("\r\na\r\n\nb\r", "\r\n"), ElementsAre("a", "b"));
  EXPECT_THAT(Utils::TokenizeString("\n", "\r\n"), ElementsAre());
  EXPECT_EQ(Utils::Join({"a", "", "b"}, ", "), "a, , b");
}

TEST(Strings, WhatCountsAsANumber) {
  const std::pair<const char*, bool> cases[] = {{"7", true},  {"-0", true},   {"0", true},  {"", false},
                                                {"a", false}, {"12a", false}, {"0x", true}, {"12", true},
                                                {"-5", true}, {"-", false},   {" 7", true}, {"0abc", true}};
  for (const auto& [text, expected] : cases) EXPECT_EQ(Utils::IsNumber(text), expected) << text;
}

TEST(Strings, NumbersByExtraction) {
  const std::pair<const char*, bool> truths[] = {{" YES ", true}, {"True", true}, {"1", true},  {"0", false},
                                                 {"2", false},    {"", false},    {"no", false}};
  for (const auto& [text, expected] : truths) EXPECT_EQ(Utils::UTF8StringToBool(text), expected) << text;

  const std::pair<const char*, int64_t> numbers[] = {
      {" 42 ", 42}, {"-7x", -7}, {"", 0}, {"x", 0}, {"9223372036854775807", INT64_MAX}, {"9223372036854775808", 0},
      {"+3", 3},    {"1e3", 1}};
  for (const auto& [text, expected] : numbers) {
    EXPECT_EQ(Utils::UTF8StringToSInt64(text), expected) << text;
    EXPECT_EQ(Utils::NumberFromString(text), expected) << text;
  }
  // The largest of each width, and 0 for one more.
  EXPECT_EQ(Utils::UTF8StringToSInt16("-32768") - Utils::UTF8StringToSInt16("32768"), -32768);
  EXPECT_EQ(Utils::UTF8StringToUInt16("65535") + Utils::UTF8StringToUInt16("65536"), 65535);
  EXPECT_EQ(Utils::UTF8StringToSInt32("2147483647") + Utils::UTF8StringToSInt32("2147483648"), INT32_MAX);
  EXPECT_EQ(Utils::UTF8StringToUInt32("4294967295") + Utils::UTF8StringToUInt32("4294967296"), UINT32_MAX);
  EXPECT_EQ(Utils::UTF8StringToUInt64("18446744073709551615"), UINT64_MAX);
  EXPECT_EQ(Utils::UTF8StringToTFloat64(" -1.5e3 ") + Utils::UTF8StringToTFloat64("1e999"), -1500.0);
  EXPECT_EQ(Utils::HexadecimalString("\x00\x9F\xFF"s), "009fff");
  EXPECT_TRUE(Utils::IsValidHexChar('f') && Utils::IsValidHexChar('A') && Utils::IsValidHexChar('0'));
  EXPECT_FALSE(Utils::IsValidHexChar('g') || Utils::IsValidHexChar('@') || Utils::IsValidHexChar('\xC3'));
}

TEST(Strings, Replacing) {
  EXPECT_EQ(Utils::StringReplace("aXbXc", "X", "Y", 1), "aYbXc");
  EXPECT_EQ(Utils::StringReplace("aaa", "a", "aa"), "aaaaaa");
  EXPECT_EQ(Utils::StringReplace("abc", "", "x"), "abc");
  EXPECT_EQ(Utils::StringReplace("abc", "b", "x", 0), "abc");
  EXPECT_EQ(Utils::StringReplace("ab", "ab", ""), "");
}

TEST(Strings, TruncationKeepsCharactersWhole) {
  const std::string face = "\xF0\x9F\x98\x80";
  const std::tuple<std::string, size_t, std::string, TModuleErrorCode> cases[] = {
      {"abc", 3, "abc", 0},
      {"abc", 2, "ab", 0},
      {"a\xC3\xA4", 2, "a", 0},
      {face + "b", 3, "", 0},
      {face + "b", 4, face, 0},
      {"a\xC3", 1, "a\xC3", 0x05000000},
      {"\xED\xA0\x80", 100, "\xED\xA0\x80", 0x05000000},
  };
  for (auto [text, maxBytes, expected, code] : cases) {
    EXPECT_EQ(Utils::OSTruncateUTF8String(text, maxBytes), code);
    EXPECT_EQ(text, expected);
  }
}

TEST(Strings, Escaping) {
  EXPECT_EQ(Utils::EscapeRequiredXMLEntities("<&>'\""), "&lt;&amp;&gt;&apos;&quot;");
  EXPECT_EQ(Utils::UnescapeRequiredXMLEntities("&lt;&amp;&gt;&apos;&quot;"), "<&>'\"");
  EXPECT_EQ(Utils::UnescapeRequiredXMLEntities("&amp;lt;"), "<");
  EXPECT_EQ(Utils::EscapeJSON("a/\"\\\b\t\n\f\r\xC3\xA4"), "a\\/\\\"\\\\\\b\\t\\n\\f\\r\xC3\xA4");
  EXPECT_EQ(Utils::EscapeURL("http://x/a b?c=\xC3\xA4&d#e", true), "http://x/a%20b?c=%C3%A4&d#e");
  EXPECT_EQ(Utils::EscapeURLComponent("a/b c&\x01"), "a%2Fb%20c%26%01");
}

TEST(Strings, TheQuickTestOfShape) {
  for (const std::string& text : {""s, "abc"s, "\xC3\xA4"s, "\xC3\xA4 a"s, "\x80\x80"s, "\xF0\x80 a"s, "\xC3\0"s,
                                  "\xC3\0a"s}) {  // the length that a lead byte announces is not checked
    EXPECT_TRUE(GString::ValidateUTF8String(text)) << text;
  }
  for (const std::string& text : {"\x80"s, "\xC0"s, "\xC1\x80"s, "\xF5\x80"s, "a\xC3"s, "\xC3 a"s, "a\0\xC3"s}) {
    EXPECT_FALSE(GString::ValidateUTF8String(text)) << text;
  }
}

// A text, its code points, and the same text as big-endian UTF-16.
struct Encoded {
  std::string utf8;
  std::u32string points;
  std::string utf16;
};

TEST(Strings, ConversionsBetweenEncodings) {
  const Encoded cases[] = {
      {"", U"", ""},
      {"\x7F\xC2\x80\xDF\xBF", U"\x7F\x80\x7FF", "\0\x7F\0\x80\x07\xFF"s},
      {"\xE0\xA0\x80\xEF\xBF\xBD", U"\x800\xFFFD", "\x08\0\xFF\xFD"s},
      {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", U"\x10000\x10FFFF", "\xD8\0\xDC\0\xDB\xFF\xDF\xFF"s},
      {"\xEF\xBB\xBF"
       "a",
       U"\xFEFF"
       U"a",
       "\xFE\xFF\0a"s},
      {"a\0b"s, std::u32string(U"a\0b", 3), "\0a\0\0\0b"s},
  };
  for (const Encoded& c : cases) {
    const std::wstring wide(c.points.begin(), c.points.end());
    std::u32string points = U"old";
    GString::Convert(c.utf8, points);
    EXPECT_EQ(points, c.points);
    EXPECT_EQ(GString::OSUtf8ToUnicode(c.utf8), wide);
    EXPECT_EQ(GString::OSUnicodeToUtf8(wide), c.utf8);
    EXPECT_EQ(GString::OSUtf16BigEndianToUtf8(c.utf16), c.utf8);
    EXPECT_EQ(GString::OSUtf8ToUtf8(c.utf8), c.utf8);
  }
}

TEST(Strings, MalformedTextGivesNothing) {
  for (const char* text : {"\x80", "\xC3", "\xC0\xAF", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
    const LogRecorder log;
    std::u32string points = U"old";
    GString::Convert(text, points);
    EXPECT_EQ(points, U"") << text;
    EXPECT_EQ(GString::OSUtf8ToUnicode(text), L"") << text;
    EXPECT_EQ(GString::OSUtf8ToUtf8(text), "") << text;
    EXPECT_THAT(log.lines, ElementsAre(testing::StartsWith("[Miscellaneous]\t[Error]\t"),
                                       testing::HasSubstr("Expression='(osStr) == nullptr'  Code='83886080'")));
  }
  for (const std::string& bytes : {"a"s, "\xD8\0"s, "\xDC\0\0a"s, "\xD8\0\0a"s}) {
    EXPECT_EQ(GString::OSUtf16BigEndianToUtf8(bytes), "");
  }
  for (const wchar_t unit : {wchar_t{0xD800}, wchar_t{0xDFFF}, wchar_t{0x110000}, wchar_t(-1)}) {
    EXPECT_EQ(GString::OSUnicodeToUtf8(std::wstring(L"a") + unit), "");
  }
}

TEST(Strings, APairOfTextAndObject) {
  GString text("a");
  text.SetUTF8String("b", false);
  EXPECT_FALSE(text.GetOSString());
  text.SetUTF8String("c", true);
  EXPECT_EQ(text.GetOSString().View(), "c");
  text.SetOSString(platform::String::FromUTF8("d"), true);
  EXPECT_EQ(text.GetUTF8String(), "d");
  text.SetOSString(platform::String(), false);
  EXPECT_EQ(text.GetUTF8String(), "");
}

TEST(Dates, AreWrittenInUTC) {
  EXPECT_EQ(GDateTime(0).ToISO8601(false), "1970-01-01T00:00:00Z");
  EXPECT_EQ(GDateTime(1764000427.999).ToISO8601(true), "2025-11-24T16:07:07.999Z");
  EXPECT_EQ(GDateTime(-0.5).ToISO8601(true), "1969-12-31T23:59:59.500Z");
}

}  // namespace
