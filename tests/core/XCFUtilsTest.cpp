#include "XCore/ECFExtensions/XCFUtils.h"

#include <gmock/gmock.h>

#include "CoreFixtures.h"

namespace {

using namespace XCFUtils;
using platform::Boolean;
using platform::Number;

// One entry of each type, each under the name of its type.
Dictionary MakeDictionary() {
  Dictionary d = Dictionary::Create();
  d.Set("string", "42");
  d.Set("number", Number::FromInteger(-7));
  d.Set("real", Number::FromReal(2.5));
  d.Set("bool", Boolean::From(true));
  d.Set("array", Array::Create());
  return d;
}

template <class T>
std::string Read(bool (*read)(const Dictionary&, std::string_view, T&), const char* key) {
  T out = static_cast<T>(99);
  const bool found = read(MakeDictionary(), key, out);
  if (!found) return out == static_cast<T>(99) ? "-" : "touched";
  return std::to_string(out);
}

// The result of each function that reads a number.
std::vector<std::string> ReadNumbers(const char* key) {
  return {Read(GetCharFromDict, key),     Read(GetShortFromDict, key), Read(GetLongFromDict, key),
          Read(GetLongLongFromDict, key), Read(GetFloatFromDict, key), Read(GetDoubleFromDict, key)};
}

TEST(XCFUtils, TypedReads) {
  EXPECT_THAT(ReadNumbers("number"), testing::ElementsAre("-7", "-7", "-7", "-7", "-7.000000", "-7.000000"));
  EXPECT_THAT(ReadNumbers("real"), testing::ElementsAre("2", "2", "2", "2", "2.500000", "2.500000"));
  for (const char* key : {"string", "array", "missing"}) {
    EXPECT_THAT(ReadNumbers(key), testing::Each("-")) << key;
    EXPECT_EQ(Read(GetBoolFromDict, key), "-") << key;
  }
  EXPECT_EQ(Read(GetBoolFromDict, "bool") + Read(GetBoolFromDict, "number"), "1-");
  const Dictionary d = MakeDictionary();
  EXPECT_TRUE(GetCFStringFromDict(d, "string") && GetCFArrayFromDict(d, "array") && GetCFNumberFromDict(d, "real"));
  EXPECT_TRUE(GetCFBooleanFromDict(d, "bool"));
  EXPECT_FALSE(GetCFStringFromDict(d, "number") || GetCFArrayFromDict(d, "string") || GetCFNumberFromDict(d, "string"));
  EXPECT_FALSE(GetCFBooleanFromDict(d, "number") || GetCFStringFromDict(Dictionary(), "string"));
}

TEST(XCFUtils, DecimalTexts) {
  Dictionary d = MakeDictionary();
  d.Set("odd", " -12abc");
  d.Set("word", "abc");
  d.Set("huge", "99999999999999999999");
  const std::pair<const char*, long> cases[] = {{"string", 42}, {"number", 0}, {"missing", 0},
                                                {"odd", -12},   {"word", 0},   {"huge", LONG_MAX}};
  for (const auto& [key, value] : cases) EXPECT_EQ(GetLongFromDictString(d, key), value) << key;
  PutLongIntoDictAsString(d, "n", LONG_MIN);
  PutULongIntoDictAsString(d, "u", ULONG_MAX);
  EXPECT_EQ(d.GetString("n").View(), "-9223372036854775808");
  EXPECT_EQ(d.GetString("u").View(), "18446744073709551615");
  EXPECT_EQ(GetLongFromDictString(d, "n"), LONG_MIN);
}

TEST(XCFUtils, TypedWritesReplaceWhatWasThere) {
  Dictionary d = MakeDictionary();
  PutBoolIntoDict(d, "string", false);
  PutCharIntoDict(d, "bool", 'A');
  PutShortIntoDict(d, "array", -2);
  PutLongIntoDict(d, "real", 1L << 40);
  PutULongIntoDict(d, "u", 7);
  PutUTF8NullTermCharPtrIntoDict(d, "number", "text");
  PutNullTermCharPtrIntoDict(d, "mac", "\x8A", platform::TextEncoding::kMacRoman);
  bool boolean = true;
  EXPECT_TRUE(GetBoolFromDict(d, "string", boolean) && !boolean);
  const std::pair<const char*, long long> numbers[] = {{"bool", 'A'}, {"array", -2}, {"real", 1LL << 40}, {"u", 7}};
  for (const auto& [key, expected] : numbers) EXPECT_EQ(GetCFNumberFromDict(d, key).Integer(), expected) << key;
  EXPECT_EQ(d.GetString("number").View(), "text");
  EXPECT_EQ(d.GetString("mac").View(), "\xC3\xA4");
}

TEST(XCFUtils, WhatMustHoldIsAsserted) {
  const Dictionary d = MakeDictionary();
  EXPECT_EQ(XCFGetCFStringFromDictionary(d, "string").View(), "42");
  EXPECT_FALSE(XCFGetCFStringFromDictionary(d, "number"));
  long long number = 0;
  EXPECT_TRUE(GetNumberFromCFValue(Number::FromInteger(5), number) && number == 5);
  EXPECT_FALSE(GetNumberFromCFValue(d, number));
  EXPECT_DEATH(XCFGetCFStringFromDictionary(Value(), "k"), "Assertion");
  EXPECT_DEATH(XCFGetCFStringFromDictionary(Array::Create(), "k"), "Assertion");
  EXPECT_DEATH(XCFGetCFStringFromDictionary(d, ""), "Assertion");
  EXPECT_DEATH(GetNumberFromCFValue(Value(), number), "pValue != NULL");
  EXPECT_DEATH(PutUTF8NullTermCharPtrIntoDict(d, "k", nullptr), "inValue != NULL");
  EXPECT_DEATH(PutNullTermCharPtrIntoDict(d, "k", nullptr, platform::TextEncoding::kUTF8), "inValue != NULL");
}

TEST(XCFUtils, TextsAndParts) {
  EXPECT_EQ(CFStringGetUTF8StdString(String()), "");
  EXPECT_EQ(CFStringGetAsNewUtf16Buffer(String::FromUTF8("a\xF0\x9F\x98\x80")), u"a\U0001F600");
  EXPECT_EQ(CFStringCreateFromUtf16CString(u"\U0001F600").View(), "\xF0\x9F\x98\x80");
  EXPECT_FALSE(CFStringCreateFromUtf16CString(u"\xD800"));
  EXPECT_FALSE(CFStringCreateFromUtf16CString(nullptr));
  Dictionary d = MakeDictionary();
  d.Set("name", "Helvetica Neue");
  const auto contains = [&](const char* key, const char* text, CompareOptions options) {
    return CFDictionaryDoesStringValueContain(d, key, text, options);
  };
  EXPECT_TRUE(contains("name", "Neue", CompareOptions::kExact) && contains("name", "neUE", CompareOptions::kCaseless));
  EXPECT_FALSE(contains("name", "neue", CompareOptions::kExact) || contains("number", "7", CompareOptions::kExact));
}

TEST(XCFUtils, FilesOfDataAndPropertyLists) {
  const TempFolder folder;
  const std::string path = folder.Path() + "/list.plist";
  testing::internal::CaptureStdout();
  ASSERT_TRUE(XCFWriteCFPropertyListToXMLFile(MakeDictionary(), path));
  EXPECT_TRUE(XCFCreateCFPropertyListFromPath(path.c_str()).Equals(MakeDictionary()));
  const platform::Data data = XCFCreateCFDataRefFromPath(path);
  ASSERT_TRUE(data);
  ASSERT_TRUE(XCFWriteCFDataRefToXMLFile(data, folder.Path() + "/copy"));
  EXPECT_EQ(TempFolder::Content(folder.Path() + "/copy"), TempFolder::Content(path));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");

  testing::internal::CaptureStdout();
  EXPECT_FALSE(XCFCreateCFPropertyListFromPath(nullptr) || XCFCreateCFPropertyListFromPath(""));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  for (const std::string& bad : {folder.Path() + "/missing", folder.Write("empty", ""), folder.Path()}) {
    testing::internal::CaptureStdout();
    EXPECT_FALSE(XCFCreateCFDataRefFromPath(bad));
    EXPECT_THAT(testing::internal::GetCapturedStdout(), testing::HasSubstr(bad));
  }
  testing::internal::CaptureStdout();
  EXPECT_FALSE(XCFCreateCFPropertyListFromPath(folder.Write("bad", "<plist><dict>").c_str()));
  EXPECT_THAT(testing::internal::GetCapturedStdout(),
              testing::StartsWith("XCFUtils::XCFCreateCFPropertyListFromPath:  error returned."));
  EXPECT_FALSE(XCFWriteCFPropertyListToXMLFile(MakeDictionary(), folder.Path() + "/no/such"));
}

}  // namespace
