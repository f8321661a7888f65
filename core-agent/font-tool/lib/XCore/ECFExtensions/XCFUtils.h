// Typed access to dictionaries and arrays. Reading a missing key, or a value of another type, returns the null object,
// 0, or false with the output unchanged. Writing replaces the old value. Font records store numbers as decimal text.
#pragma once

#include <string>
#include <string_view>

#include "platform/TextEncoding.h"
#include "platform/Value.h"

namespace XCFUtils {

using platform::Array;
using platform::Dictionary;
using platform::String;
using platform::Value;

String GetCFStringFromDict(const Dictionary& dictionary, std::string_view key);
Array GetCFArrayFromDict(const Dictionary& dictionary, std::string_view key);
platform::Number GetCFNumberFromDict(const Dictionary& dictionary, std::string_view key);
platform::Boolean GetCFBooleanFromDict(const Dictionary& dictionary, std::string_view key);

bool GetBoolFromDict(const Dictionary& dictionary, std::string_view key, bool& out);
bool GetCharFromDict(const Dictionary& dictionary, std::string_view key, char& out);
bool GetShortFromDict(const Dictionary& dictionary, std::string_view key, short& out);
bool GetLongFromDict(const Dictionary& dictionary, std::string_view key, long& out);
bool GetLongLongFromDict(const Dictionary& dictionary, std::string_view key, long long& out);
bool GetFloatFromDict(const Dictionary& dictionary, std::string_view key, float& out);
bool GetDoubleFromDict(const Dictionary& dictionary, std::string_view key, double& out);

// Reads a string as a decimal integer.
long GetLongFromDictString(const Dictionary& dictionary, std::string_view key,
                           platform::TextEncoding encoding = platform::TextEncoding::kUTF8);
// Asserts that both arguments are set.
String XCFGetCFStringFromDictionary(const Value& dictionary, std::string_view key);
// Asserts that the value is set; returns false if it is not a number.
bool GetNumberFromCFValue(const Value& value, long long& out);

void PutBoolIntoDict(Dictionary dictionary, std::string_view key, bool value);
void PutCharIntoDict(Dictionary dictionary, std::string_view key, char value);
void PutShortIntoDict(Dictionary dictionary, std::string_view key, short value);
void PutLongIntoDict(Dictionary dictionary, std::string_view key, long value);
void PutULongIntoDict(Dictionary dictionary, std::string_view key, unsigned long value);
void PutLongIntoDictAsString(Dictionary dictionary, std::string_view key, long value);
void PutULongIntoDictAsString(Dictionary dictionary, std::string_view key, unsigned long value);
void PutUTF8NullTermCharPtrIntoDict(Dictionary dictionary, std::string_view key, const char* value);
void PutNullTermCharPtrIntoDict(Dictionary dictionary, std::string_view key, const char* value,
                                platform::TextEncoding encoding);

void AppendBoolOntoArray(Array array, bool value);
void AppendShortOntoArray(Array array, short value);
void AppendLongOntoArray(Array array, long value);
void AppendULongOntoArray(Array array, unsigned long value);
void AppendUTF8NullTermCharPtrOntoArray(Array array, const char* value);

std::string CFStringGetUTF8StdString(const String& text);
std::u16string CFStringGetAsNewUtf16Buffer(const String& text);
String CFStringCreateFromUtf16CString(const char16_t* text);

enum class CompareOptions { kExact, kCaseless };
bool CFDictionaryDoesStringValueContain(const Dictionary& dictionary, std::string_view key, std::string_view text,
                                        CompareOptions options);

// Reads a whole file. Returns null for an empty file and on failure, with a line on standard output.
platform::Data XCFCreateCFDataRefFromPath(const std::string& path);
// Returns null for a null or empty path and on failure; prints a parse error to standard output. `options` has no
// effect here.
Value XCFCreateCFPropertyListFromPath(const char* path, unsigned options = 0);
// Replace the file atomically. Return false on failure.
bool XCFWriteCFPropertyListToXMLFile(const Value& list, const std::string& path);
bool XCFWriteCFDataRefToXMLFile(const platform::Data& data, const std::string& path);

}  // namespace XCFUtils
