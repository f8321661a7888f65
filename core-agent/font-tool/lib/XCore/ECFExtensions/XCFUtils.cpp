#include "XCore/ECFExtensions/XCFUtils.h"

#include <cassert>
#include <cstdio>
#include <cstdlib>

#include "platform/Files.h"
#include "platform/PropertyList.h"

namespace XCFUtils {

using platform::Boolean;
using platform::Data;
using platform::Number;

namespace {

template <class T>
bool GetInteger(const Dictionary& dictionary, std::string_view key, T& out) {
  const Number number(dictionary.Get(key));
  if (!number) return false;
  out = static_cast<T>(number.Integer());
  return true;
}

template <class T>
bool GetReal(const Dictionary& dictionary, std::string_view key, T& out) {
  const Number number(dictionary.Get(key));
  if (!number) return false;
  out = static_cast<T>(number.Real());
  return true;
}

void PutInteger(Dictionary& dictionary, std::string_view key, long value) {
  dictionary.Set(key, Number::FromInteger(value));
}

}  // namespace

String GetCFStringFromDict(const Dictionary& dictionary, std::string_view key) { return dictionary.GetString(key); }
Array GetCFArrayFromDict(const Dictionary& dictionary, std::string_view key) { return dictionary.GetArray(key); }
Number GetCFNumberFromDict(const Dictionary& dictionary, std::string_view key) { return Number(dictionary.Get(key)); }
Boolean GetCFBooleanFromDict(const Dictionary& dictionary, std::string_view key) {
  return Boolean(dictionary.Get(key));
}

bool GetBoolFromDict(const Dictionary& dictionary, std::string_view key, bool& out) {
  const Boolean boolean(dictionary.Get(key));
  if (boolean) out = boolean.IsTrue();
  return static_cast<bool>(boolean);
}

bool GetCharFromDict(const Dictionary& d, std::string_view key, char& out) { return GetInteger(d, key, out); }
bool GetShortFromDict(const Dictionary& d, std::string_view key, short& out) { return GetInteger(d, key, out); }
bool GetLongFromDict(const Dictionary& d, std::string_view key, long& out) { return GetInteger(d, key, out); }
bool GetLongLongFromDict(const Dictionary& d, std::string_view key, long long& out) { return GetInteger(d, key, out); }
bool GetFloatFromDict(const Dictionary& d, std::string_view key, float& out) { return GetReal(d, key, out); }
bool GetDoubleFromDict(const Dictionary& d, std::string_view key, double& out) { return GetReal(d, key, out); }

long GetLongFromDictString(const Dictionary& dictionary, std::string_view key, platform::TextEncoding) {
  const String text = dictionary.GetString(key);
  return text ? std::atol(text.CString()) : 0;
}

String XCFGetCFStringFromDictionary(const Value& dictionary, std::string_view key) {
  assert(Dictionary(dictionary) && "the value is a dictionary");
  assert(!key.empty());
  return Dictionary(dictionary).GetString(key);
}

bool GetNumberFromCFValue(const Value& pValue, long long& out) {
  assert(static_cast<bool>(pValue) && "pValue != NULL");
  const Number number(pValue);
  if (number) out = number.Integer();
  return static_cast<bool>(number);
}

void PutBoolIntoDict(Dictionary d, std::string_view key, bool value) { d.Set(key, Boolean::From(value)); }
void PutCharIntoDict(Dictionary d, std::string_view key, char value) { PutInteger(d, key, value); }
void PutShortIntoDict(Dictionary d, std::string_view key, short value) { PutInteger(d, key, value); }
void PutLongIntoDict(Dictionary d, std::string_view key, long value) { PutInteger(d, key, value); }
void PutULongIntoDict(Dictionary d, std::string_view key, unsigned long value) {
  PutInteger(d, key, static_cast<long>(value));
}
void PutLongIntoDictAsString(Dictionary d, std::string_view key, long value) { d.Set(key, std::to_string(value)); }
void PutULongIntoDictAsString(Dictionary d, std::string_view key, unsigned long value) {
  d.Set(key, std::to_string(value));
}

void PutUTF8NullTermCharPtrIntoDict(Dictionary d, std::string_view key, const char* inValue) {
  assert(inValue != NULL);
  d.Set(key, std::string_view(inValue));
}

void PutNullTermCharPtrIntoDict(Dictionary d, std::string_view key, const char* inValue,
                                platform::TextEncoding encoding) {
  assert(inValue != NULL);
  if (const auto text = platform::DecodeText(inValue, encoding)) d.Set(key, *text);
}

void AppendBoolOntoArray(Array array, bool value) { array.Append(Boolean::From(value)); }
void AppendShortOntoArray(Array array, short value) { array.Append(Number::FromInteger(value)); }
void AppendLongOntoArray(Array array, long value) { array.Append(Number::FromInteger(value)); }
void AppendULongOntoArray(Array array, unsigned long value) {
  array.Append(Number::FromInteger(static_cast<int64_t>(value)));
}
void AppendUTF8NullTermCharPtrOntoArray(Array array, const char* inValue) {
  assert(inValue != NULL);
  array.Append(String::FromUTF8(inValue));
}

std::string CFStringGetUTF8StdString(const String& text) { return text.Text(); }
std::u16string CFStringGetAsNewUtf16Buffer(const String& text) {
  return platform::UTF8ToUTF16(text.View()).value_or(std::u16string());
}
String CFStringCreateFromUtf16CString(const char16_t* text) { return text ? String::FromUTF16(text) : String(); }

bool CFDictionaryDoesStringValueContain(const Dictionary& dictionary, std::string_view key, std::string_view text,
                                        CompareOptions options) {
  const String value = dictionary.GetString(key);
  if (!value) return false;
  if (options == CompareOptions::kCaseless) return platform::ContainsCaseless(value.View(), text);
  return value.View().find(text) != std::string_view::npos;
}

Data XCFCreateCFDataRefFromPath(const std::string& path) {
  std::string content;
  const std::error_code error = platform::ReadFile(path, content);
  if (!error && !content.empty()) return Data::From(std::as_bytes(std::span(content)));
  std::printf("XCFUtils::XCFCreateCFDataRefFromPath:  '%s': %s\n", path.c_str(),
              error ? platform::DescribeError(error).c_str() : "the file is empty");
  return Data();
}

Value XCFCreateCFPropertyListFromPath(const char* path, unsigned) {
  if (!path || !*path) return Value();
  const Data data = XCFCreateCFDataRefFromPath(path);
  if (!data) return Value();
  const auto bytes = data.Bytes();
  platform::PropertyListResult result =
      platform::ParseXMLPropertyList({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  if (!result.value) {
    std::printf("XCFUtils::XCFCreateCFPropertyListFromPath:  error returned.  %s\n", result.error.c_str());
  }
  return result.value;
}

bool XCFWriteCFPropertyListToXMLFile(const Value& list, const std::string& path) {
  const std::string xml = platform::CreateXMLPropertyList(list);
  return !xml.empty() && !platform::ReplaceFile(path, xml);
}

bool XCFWriteCFDataRefToXMLFile(const Data& data, const std::string& path) {
  if (!data) return false;
  const auto bytes = data.Bytes();
  return !platform::ReplaceFile(path, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

}  // namespace XCFUtils
