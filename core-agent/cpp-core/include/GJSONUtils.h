// JSON for callers that use error codes: each step of building and reading a tree returns a TModuleErrorCode, and
// failures are reported under "Miscellaneous".
//
//   Parse              kInvalidParam for malformed text; nothing is thrown
//   Set, Add           kOutOfMemory; newValue is the added node
//   GetValueForKey     kNotFound without the key, kError for a value of another kind, reported at debug level only; the
//                      output is written on success
//
// Exceptions of a node pass through: adding to a value of the wrong kind, an array element that is not an integer, and
// malformed UTF-8 in a text. Integers are read as 64 bits and truncated to the requested type without a report.
#pragma once

#include <concepts>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "FailedCheck.h"
#include "JsonNode.h"
#include "JsonParser.h"

namespace GJSONUtils {

using restful_mapper::Json::Node;
using restful_mapper::Json::Parser;

template <class T>
concept Integer = (std::integral<T> && !std::same_as<T, bool>) || std::is_enum_v<T>;

// The parser owns the tree of `node`.
TModuleErrorCode Parse(Parser& parser, const std::string& text, Node& node);
// The value is unchanged on failure.
TModuleErrorCode Parse(const std::string& text, nlohmann::json& value);

bool HasValueForKey(const Node& jsonValue, const std::string& key);

TModuleErrorCode SetValueForKey(const std::string& value, const std::string& key, const Node& jsonValue,
                                Node& newValue);
TModuleErrorCode SetValueForKey(const char* value, const std::string& key, const Node& jsonValue, Node& newValue);
TModuleErrorCode SetValueForKey(double value, const std::string& key, const Node& jsonValue, Node& newValue);
TModuleErrorCode SetValueForKey(bool value, const std::string& key, const Node& jsonValue, Node& newValue);
TModuleErrorCode AddArrayForKey(const std::string& key, const Node& jsonValue, Node& newValue);
TModuleErrorCode AddMapForKey(const std::string& key, const Node& jsonValue, Node& newValue);

TModuleErrorCode GetValueForKey(const Node& jsonValue, const std::string& key, Node& value);
TModuleErrorCode GetValueForKey(const Node& jsonValue, const std::string& key, std::string& value);
TModuleErrorCode GetValueForKey(const Node& jsonValue, const std::string& key, double& value);
TModuleErrorCode GetValueForKey(const Node& jsonValue, const std::string& key, bool& value);
// Reads all elements and replaces the contents of the vector.
TModuleErrorCode GetValueForKey(const Node& jsonValue, const std::string& key, std::vector<unsigned int>& value);
TModuleErrorCode GetValueForKey(const Node& jsonValue, const std::string& key, std::set<unsigned int>& value);

TModuleErrorCode AddValueToArray(const std::string& value, const Node& jsonValue, Node& newValue);
TModuleErrorCode AddValueToArray(const char* value, const Node& jsonValue, Node& newValue);
TModuleErrorCode AddValueToArray(double value, const Node& jsonValue, Node& newValue);
TModuleErrorCode AddValueToArray(bool value, const Node& jsonValue, Node& newValue);
TModuleErrorCode AddArrayToArray(const Node& jsonValue, Node& newValue);
TModuleErrorCode AddMapToArray(const Node& jsonValue, Node& newValue);

// Integers and enumerations.
TModuleErrorCode SetValueForKey(int64_t value, const std::string& key, const Node& jsonValue, Node& newValue);
TModuleErrorCode GetValueForKey(const Node& jsonValue, const std::string& key, int64_t& value);
TModuleErrorCode AddValueToArray(int64_t value, const Node& jsonValue, Node& newValue);

template <Integer T>
TModuleErrorCode SetValueForKey(T value, const std::string& key, const Node& jsonValue, Node& newValue) {
  return SetValueForKey(static_cast<int64_t>(value), key, jsonValue, newValue);
}

// Reads the node as an integer and throws for any other kind. Do not change it: callers that pass an array depend on
// the exception.
template <std::same_as<Node> T>
TModuleErrorCode SetValueForKey(const T& value, const std::string& key, const Node& jsonValue, Node& newValue) {
  return SetValueForKey(static_cast<int64_t>(value.to_int()), key, jsonValue, newValue);
}

template <Integer T>
TModuleErrorCode GetValueForKey(const Node& jsonValue, const std::string& key, T& value) {
  int64_t wide = 0;
  PASS_ON_ERROR(GetValueForKey(jsonValue, key, wide));
  value = static_cast<T>(wide);
  return CoreErrorCodes::kSuccess;
}

template <Integer T>
TModuleErrorCode AddValueToArray(T value, const Node& jsonValue, Node& newValue) {
  return AddValueToArray(static_cast<int64_t>(value), jsonValue, newValue);
}

// The keys and operations of JSON Patch (RFC 6902).
const std::string& GetJSONPatchOpKey();
const std::string& GetJSONPatchPathKey();
const std::string& GetJSONPatchValueKey();
const std::string& GetJSONPatchFromKey();
const std::string& GetJSONPatchPathDelimiter();
const std::string& GetJSONPatchOpAdd();
const std::string& GetJSONPatchOpRemove();
const std::string& GetJSONPatchOpReplace();
const std::string& GetJSONPatchOpCopy();
const std::string& GetJSONPatchOpMove();
const std::string& GetJSONPatchOpTest();

}  // namespace GJSONUtils
