#include "XCore/ECFExtensions/TextConversion.h"

#include <gmock/gmock.h>

#include <cstring>

#include "CoreFixtures.h"

namespace {

using namespace std::string_literals;
using Pascal = std::vector<unsigned char>;

// A Pascal string in a buffer of 256 bytes and a guard.
Pascal MakePascal(const std::string& text) {
  Pascal buffer(300, 0xEE);
  buffer[0] = static_cast<unsigned char>(text.size());
  std::memcpy(buffer.data() + 1, text.data(), text.size());
  return buffer;
}

TEST(TextConversion, Iconv) {
  std::string wide;
  for (int i = 0; i < 1000; ++i) wide += "\xE4\0\0\0"s;
  const std::tuple<std::string, const char*, const char*, std::string> cases[] = {
      {"", "nowhere", "nothing", ""},
      {"\xE4", "UTF-8", "ISO-8859-1", "\xC3\xA4"},
      {"\xC3\xA4", "ISO-8859-1", "UTF-8", "\xE4"},
      {"a\xFF z\xC3", "UTF-8//IGNORE", "UTF-8", "a z"},  // malformed in the middle, cut off at the end
      {"\xC3", "UTF-8//IGNORE", "UTF-8", ""},
      {"a\xFF\xC3\xA4\xE4\xB8\x80z\xE4\xB8", "ISO-8859-1//IGNORE", "UTF-8", "a\xE4z"},
      {std::string(1000, '\xE4'), "UTF-32LE", "ISO-8859-1", wide},  // far longer than the buffer
  };
  for (const auto& [in, to, from, out] : cases) EXPECT_EQ(iconv_string(in, to, from), out) << to;
}

std::string MessageOf(const std::string& text, const char* to) {
  try {
    iconv_string(text, to, "UTF-8");
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "nothing thrown";
}

TEST(TextConversion, IconvThrowsWhatWentWrong) {
  EXPECT_EQ(MessageOf("a", "nowhere"), "Unable to initialize iconv (error 22)");
  EXPECT_EQ(MessageOf("a\xFF", "UTF-16"), "Unable to convert string to UTF-16 (error 84): a\xFF");
  EXPECT_EQ(MessageOf("\xC3", "UTF-8"), "Unable to convert string to UTF-8 (error 22): \xC3");
}

TEST(TextConversion, TheLocalCharacterSetIsUTF8) {
  EXPECT_EQ(local_charset, "UTF-8");
  for (const char* text : {"", "a", "\xC3\xA4\xF0\x9F\x98\x80"}) {
    EXPECT_EQ(local_to_utf8(text), text);
    EXPECT_EQ(utf8_to_local(text), text);
  }
  EXPECT_EQ(local_to_utf8("a\xFF z\xFF"), "a z");  // malformed bytes are removed on input
  EXPECT_THROW(utf8_to_local("\xED\xA0\x80"), std::runtime_error);
}

TEST(TextConversion, UncertainEncodings) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"\xC3\xA4", "\xC3\xA4"},
      {"\xE4", "\xE2\x80\xB0"},  // MacRoman's per mille, not Latin 1's umlaut
      {"\x8A", "\xC3\xA4"}};
  for (const auto& [bytes, text] : cases) {
    EXPECT_EQ(CreateUTF8StringFromUncertainEncoding(bytes), text);
    EXPECT_TRUE(CFStringCreateWithUncertainEncoding(bytes));
  }
  EXPECT_FALSE(CFStringCreateWithUncertainEncoding(nullptr));
  EXPECT_EQ(CreateUTF8StringFromUncertainEncoding(nullptr), "");
  std::string out = "old";
  GetUTF8String(platform::String(), out);
  EXPECT_EQ(out, "");
}

TEST(PascalStrings, BecomeTextAndBack) {
  const Pascal umlaut = MakePascal("\x8A");  // MacRoman
  EXPECT_EQ(GetPlatformStringLength(nullptr), 0u);
  EXPECT_EQ(GetPlatformStringLength(umlaut.data()), 1u);
  EXPECT_EQ(XCFStringCreateWithPlatformString(umlaut.data()).View(), "\xC3\xA4");
  EXPECT_FALSE(XCFStringCreateWithPlatformString(nullptr));
  for (auto* convert : {STLStringFromPlatformString, STLStringFromPascalString}) {
    EXPECT_EQ(convert(MakePascal("a\0b"s).data()), "a");
    EXPECT_EQ(convert(MakePascal(std::string(255, 'x')).data()), std::string(255, 'x'));
    EXPECT_EQ(convert(nullptr), "");
  }
  char c[256];
  EXPECT_TRUE(CopyPascalStringToCString(c, MakePascal("abc").data()));
  EXPECT_STREQ(c, "abc");
  EXPECT_FALSE(CopyPascalStringToCString(nullptr, umlaut.data()) || CopyPascalStringToCString(c, nullptr));
}

TEST(PascalStrings, ABufferIsNeverOverrun) {
  struct {
    std::string text;
    size_t size;
    bool succeeds;
  } const cases[] = {{"abc", 256, true},
                     {"abc", 4, true},
                     {"abc", 3, false},
                     {"abc", 0, false},
                     {std::string(255, 'x'), 256, true},
                     {std::string(256, 'x'), 290, false},
                     {"\xC3\xA4", 2, true},
                     {"\xE4\xB8\x80", 256, false}};
  for (const auto& c : cases) {
    Pascal buffer(300, 0xEE), other = buffer;
    const auto string = platform::String::FromUTF8(c.text);
    EXPECT_EQ(XCFStringGetPlatformString(string, buffer.data(), c.size), c.succeeds) << c.text;
    EXPECT_EQ(CopyUTF8CStringToMacRomanPascalString(other.data(), c.size, c.text.c_str()), c.succeeds) << c.text;
    EXPECT_EQ(buffer[c.size], 0xEE);
    EXPECT_EQ(other[c.size], 0xEE);
    if (c.size > 0) {
      EXPECT_TRUE(other[c.size - 1] == 0 || c.size == other[0] + 1u);
    }
    if (!c.succeeds) continue;
    EXPECT_EQ(std::memcmp(buffer.data(), other.data(), buffer[0] + 1u), 0);
    if (c.size > buffer[0] + 1u) {
      EXPECT_EQ(buffer[buffer[0] + 1], 0);
    }
  }
  EXPECT_FALSE(XCFStringGetPlatformString(platform::String(), Pascal(256).data(), 256));
}

TEST(PascalStrings, CopyAndConcatenate) {
  Pascal target = MakePascal(std::string(200, 'a'));
  PlatformStringConcat(target.data(), MakePascal(std::string(100, 'b')).data());
  EXPECT_EQ(STLStringFromPascalString(target.data()), std::string(200, 'a') + std::string(55, 'b'));
  EXPECT_EQ(target[256], 0xEE);
  PlatformStringCopy(target.data(), MakePascal("xy").data());
  PlatformStringConcat(target.data(), nullptr);
  PlatformStringConcat(target.data(), target.data());
  EXPECT_EQ(STLStringFromPascalString(target.data()), "xyxy");

  CopyCStringToPascalString(target.data(), std::string(260, 'c').c_str());
  EXPECT_EQ(target[0], 4);  // the low byte of the length, followed by the whole text
  EXPECT_EQ(target[260], 'c');
  EXPECT_EQ(target[261], 0);
}

TEST(TextConversion, ReplacementsAreNotScannedAgain) {
  const std::tuple<std::string, const char*, const char*, const char*> cases[] = {
      {"aaa", "a", "aa", "aaaaaa"}, {"a-b-", "-", "", "ab"}, {"x", "", "y", "x"}, {"abab", "ab", "b", "bb"}};
  for (auto [text, from, to, expected] : cases) {
    replaceAll(text, from, to);
    EXPECT_EQ(text, expected);
  }
  std::string large = LongText(2'000'000);  // in one pass, without moving the rest for each match
  replaceAll(large, "x", "yy");
  EXPECT_EQ(large.size(), 4'000'000u);
}

}  // namespace
