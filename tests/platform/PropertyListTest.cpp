// Property lists: a written list reads back equal, and text that is not exactly in the format is refused with its line.
#include "platform/PropertyList.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace platform {
namespace {

Value Nested(int depth) {
  Value value = Array::Create();
  for (int i = 0; i < depth; ++i) {
    Array around = Array::Create();
    around.Append(value);
    value = around;
  }
  return value;
}

Data Bytes(std::string_view text) { return Data::From({reinterpret_cast<const std::byte*>(text.data()), text.size()}); }

TEST(PropertyList, WhatIsWrittenComesBack) {
  std::vector<Value> values = {Boolean::From(true), Boolean::From(false), Array::Create(), Dictionary::Create()};
  for (const char* text : {"", " blanks at both ends ", "a&<>\"']]>", "line\nline\r\n\ttab\rreturn", "日本 𝄞 é"}) {
    values.push_back(String::FromUTF8(text));
    Dictionary keyed = Dictionary::Create();
    keyed.Set(text, String::FromUTF8(text));
    values.push_back(keyed);
  }
  for (const int64_t integer : {INT64_C(0), INT64_C(-1), INT64_C(4000), INT64_MIN, INT64_MAX}) {
    values.push_back(Number::FromInteger(integer));
  }
  for (const double real : {0.0, 0.1, -1.0 / 3, 1e300, 5e-324, std::numeric_limits<double>::infinity()}) {
    values.push_back(Number::FromReal(real));
  }
  for (const std::string_view bytes : {"", "a", "ab", "abc", "abcd"}) values.push_back(Bytes(bytes));
  values.push_back(Bytes(std::string(1000, '\xFF') + std::string(3, '\0')));
  // Empty containers next to each other are not nested.
  Array many = Array::Create();
  for (int i = 0; i < 2 * kDeepestPropertyList; ++i)
    many.Append(i % 2 ? Value(Array::Create()) : Value(Dictionary::Create()));
  values.push_back(many);
  values.push_back(Nested(kDeepestPropertyList));
  Dictionary ordered = Dictionary::Create();
  for (const char* key : {"zebra", "apple", "Zebra", "10", "9"}) ordered.Set(key, key);
  values.push_back(ordered);
  for (const Value& value : values) {
    const std::string xml = CreateXMLPropertyList(value);
    const PropertyListResult read = ParseXMLPropertyList(xml);
    EXPECT_EQ(read.error, "") << xml;
    EXPECT_TRUE(read.value.Equals(value)) << xml;
    EXPECT_EQ(Dictionary(read.value).Keys(), Dictionary(value).Keys()) << xml;
  }
  EXPECT_TRUE(std::isnan(Number(ParseXMLPropertyList(CreateXMLPropertyList(Number::FromReal(NAN))).value).Real()));
}

TEST(PropertyList, WhatXMLCannotHoldIsNotWritten) {
  Array withNull = Array::Create();
  withNull.Append(Value());
  Dictionary badKey = Dictionary::Create(), brokenKey = Dictionary::Create();
  badKey.Set("a\x01", "text");
  brokenKey.Set("a\xFF", "text");
  const Value values[] = {Value(),
                          withNull,
                          badKey,
                          brokenKey,
                          String::FromUTF8(std::string_view("a\0b", 3)),
                          String::FromUTF8("a\x1F"),
                          String::FromUTF8("a\uFFFE"),
                          Nested(kDeepestPropertyList + 1)};
  for (const Value& value : values) EXPECT_EQ(CreateXMLPropertyList(value), "");
}

TEST(PropertyList, OtherWritersAreRead) {
  const struct {
    const char* xml;
    Value expected;
  } rows[] = {
      {"<string>no plist around it</string>", String::FromUTF8("no plist around it")},
      {"\xEF\xBB\xBF<plist version=\"1.0\"><!-- c --><string>a<!-- c -->b</string></plist>", String::FromUTF8("ab")},
      {"<plist><string><![CDATA[<a>&amp;]]>&#x1F600;&amp;</string></plist>", String::FromUTF8("<a>&amp;😀&")},
      {"<?xml version='1.0' encoding='ISO-8859-1'?><plist><string>é</string></plist>", String::FromUTF8("é")},
      {"<plist><integer> -0x10 </integer></plist>", Number::FromInteger(-16)},
      {"<plist><integer>+7</integer></plist>", Number::FromInteger(7)},
      {"<plist><real> +1.5e3 </real></plist>", Number::FromReal(1500)},
      {"<plist><data>\n\tYW\n\tI=\n</data></plist>", Bytes("ab")},
      {"<plist><true></true></plist>", Boolean::From(true)}};
  for (const auto& row : rows) {
    const PropertyListResult read = ParseXMLPropertyList(row.xml);
    EXPECT_EQ(read.error, "") << row.xml;
    EXPECT_TRUE(read.value.Equals(row.expected)) << row.xml;
  }
}

TEST(PropertyList, FaultsAreRefusedWithTheirPlace) {
  std::string deep;
  for (const char* tag : {"<array>", "</array>"}) {
    for (int i = 0; i < 1000; ++i) deep += tag;
  }
  const struct {
    std::string body, error;
  } rows[] = {{"<array>\n<string>a</string>", "line 2"},
              {"<dict>\n<key>a</key></dict>", "a key without a value (line 1)"},
              {"<dict><key>a</key>\n<key>b</key><true/></dict>", "a key without a value (line 2)"},
              {"<dict>\n<string>a</string></dict>", "a value without a key (line 2)"},
              {"<string>a</string>\n<string>b</string>", "a second value (line 2)"},
              {"", "no value"},
              {"text", "text between values"},
              {"<array>text</array>", "text between values"},
              {"<string>a<b/></string>", "an element in a text"},
              {"<bogus/>", "an element 'bogus'"},
              {"<date>2011-01-01T00:00:00Z</date>", "an element 'date'"},
              {"<integer>12a</integer>", "'12a' for an integer"},
              {"<integer></integer>", "'' for an integer"},
              {"<integer>1\n2</integer>", "'1 2' for an integer"},
              {"<real>" + std::string(39, '1') + "\xC3\xA4</real>", "'" + std::string(39, '1') + "...' for a number"},
              {"<integer>9223372036854775808</integer>", "for an integer"},
              {"<real>1,5</real>", "'1,5' for a number"},
              {"<data>YQ=</data>", "Base64"},
              {"<data>Y===</data>", "Base64"},
              {"<data>YQ==YQ==</data>", "Base64"},
              {"<data>Y*==</data>", "Base64"},
              {"<string>&unknown;</string>", "unknown"},
              {"<string>&#0;</string>", "xmlChar"},
              {"<string>&#xD800;</string>", "xmlChar"},
              {"<string>a\x01</string>", "line 1"},
              {deep, "xcessive depth"},
              {"<array><!-- </array></array> -->" + deep + "</array>", "xcessive depth"}};
  for (const auto& row : rows) {
    const PropertyListResult read = ParseXMLPropertyList("<plist version=\"1.0\">" + row.body + "</plist>");
    EXPECT_FALSE(read.value) << row.body.substr(0, 100);
    EXPECT_THAT(read.error, testing::HasSubstr(row.error)) << row.body.substr(0, 100);
    EXPECT_EQ(read.error.find('\n'), std::string::npos) << "one line: " << read.error;
  }
}

TEST(PropertyList, WholeTextsAreRefused) {
  const std::string doctype =
      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">";
  const std::string plist = "<plist version=\"1.0\"><string>a</string></plist>";
  const std::string expansion =
      "<!DOCTYPE plist [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;\">]><plist><string>&b;</string></plist>";
  EXPECT_TRUE(ParseXMLPropertyList(doctype + plist).value);
  const std::string refused[] = {"",
                                 "  ",
                                 "bplist00\xA1\x01",
                                 plist + "junk",
                                 plist + plist,
                                 expansion,
                                 doctype + "<plist><string>&from_outside;</string></plist>",
                                 "<plist><string>a\xFF</string></plist>",
                                 plist.substr(0, plist.size() - 1),
                                 std::string(plist.begin(), plist.end()).insert(5, 1, '\0')};
  for (const std::string& text : refused) {
    const PropertyListResult read = ParseXMLPropertyList(text);
    EXPECT_FALSE(read.value) << text;
    EXPECT_NE(read.error, "") << text;
  }
}

}  // namespace
}  // namespace platform
