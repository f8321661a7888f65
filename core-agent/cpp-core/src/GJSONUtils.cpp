#include "GJSONUtils.h"

namespace GJSONUtils {

namespace {

constexpr const char* kLogIdentifier = "Miscellaneous";

// The texts of the checks contain the names of the parameters.
#define RETURN_IF_NOT_ADDED(condition) RETURN_IF(kLogIdentifier, condition, CoreErrorCodes::kOutOfMemory)
#define RETURN_IF_NOT_FOUND(expression) RETURN_IF_ERROR_AT(kLogIdentifier, GLogger::kDebug, expression)
#define RETURN_IF_WRONG_KIND(condition) RETURN_IF_AT(kLogIdentifier, GLogger::kDebug, condition, CoreErrorCodes::kError)

}  // namespace

TModuleErrorCode Parse(Parser& parser, const std::string& text, Node& node) {
  GLogger* logger = GLogger::GetSharedInstance();
  TModuleErrorCode err = CoreErrorCodes::kSuccess;
  try {
    logger->LogDebug(kLogIdentifier, "Attempting to parse JSON: %s", text.c_str());
    parser.load(text);
    node = parser.root();
  } catch (...) {  // the text is malformed, and callers expect a code
    logger->LogDebug(kLogIdentifier, "Failed to parse JSON: %s", text.c_str());
    err = CoreErrorCodes::kInvalidParam;
  }
  RETURN_IF_ERROR(kLogIdentifier, err);
  return err;
}

bool HasValueForKey(const Node& jsonValue, const std::string& key) { return jsonValue.exists(key); }

TModuleErrorCode SetValueForKey(const std::string& value, const std::string& key, const Node& jsonValue,
                                Node& newValue) {
  RETURN_IF_NOT_ADDED(!jsonValue.add_string(key, value, newValue));
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode SetValueForKey(const char* value, const std::string& key, const Node& jsonValue, Node& newValue) {
  return SetValueForKey(std::string(value), key, jsonValue, newValue);
}

TModuleErrorCode SetValueForKey(double value, const std::string& key, const Node& jsonValue, Node& newValue) {
  RETURN_IF_NOT_ADDED(!jsonValue.add_double(key, value, newValue));
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode SetValueForKey(bool value, const std::string& key, const Node& jsonValue, Node& newValue) {
  RETURN_IF_NOT_ADDED(!jsonValue.add_bool(key, value, newValue));
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode SetValueForKey(int64_t value, const std::string& key, const Node& jsonValue, Node& newValue) {
  RETURN_IF_NOT_ADDED(!jsonValue.add_int64(key, value, newValue));
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode AddArrayForKey(const std::string& key, const Node& jsonValue, Node& newValue) {
  RETURN_IF_NOT_ADDED(!jsonValue.add_array(key, newValue));
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode AddMapForKey(const std::string& key, const Node& jsonValue, Node& newValue) {
  RETURN_IF_NOT_ADDED(!jsonValue.add_map(key, newValue));
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode AddValueToArray(const std::string& value, const Node& jsonValue, Node& newValue) {
  RETURN_IF_NOT_ADDED(!jsonValue.add_string(value, newValue));
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode AddValueToArray(const char* value, const Node& jsonValue, Node& newValue) {
  return AddValueToArray(std::string(value), jsonValue, newValue);
}

TModuleErrorCode AddValueToArray(double value, const Node& jsonValue, Node& newValue) {
  RETURN_IF_NOT_ADDED(!jsonValue.add_double(value, newValue));
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode AddValueToArray(bool value, const Node& jsonValue, Node& newValue) {
  RETURN_IF_NOT_ADDED(!jsonValue.add_bool(value, newValue));
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode AddValueToArray(int64_t value, const Node& jsonValue, Node& newValue) {
  RETURN_IF_NOT_ADDED(!jsonValue.add_int64(value, newValue));
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode AddArrayToArray(const Node& jsonValue, Node& newValue) {
  RETURN_IF_NOT_ADDED(!jsonValue.add_array(newValue));
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode AddMapToArray(const Node& jsonValue, Node& newValue) {
  RETURN_IF_NOT_ADDED(!jsonValue.add_map(newValue));
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GetValueForKey(const Node& jsonValue, const std::string& key, Node& value) {
  RETURN_IF_AT(kLogIdentifier, GLogger::kDebug, !jsonValue.find(key, value), CoreErrorCodes::kNotFound);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GetValueForKey(const Node& jsonValue, const std::string& key, std::string& value) {
  Node valueObject;
  RETURN_IF_NOT_FOUND(GetValueForKey(jsonValue, key, valueObject));
  RETURN_IF_WRONG_KIND(!valueObject.is_string());
  value = valueObject.to_string();
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GetValueForKey(const Node& jsonValue, const std::string& key, double& value) {
  Node valueObject;
  RETURN_IF_NOT_FOUND(GetValueForKey(jsonValue, key, valueObject));
  RETURN_IF_WRONG_KIND(!valueObject.is_double());
  value = valueObject.to_double();
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GetValueForKey(const Node& jsonValue, const std::string& key, bool& value) {
  Node valueObject;
  RETURN_IF_NOT_FOUND(GetValueForKey(jsonValue, key, valueObject));
  RETURN_IF_WRONG_KIND(!valueObject.is_bool());
  value = valueObject.to_bool();
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GetValueForKey(const Node& jsonValue, const std::string& key, int64_t& value) {
  Node valueObject;
  RETURN_IF_NOT_FOUND(GetValueForKey(jsonValue, key, valueObject));
  RETURN_IF_WRONG_KIND(!valueObject.is_int());
  value = valueObject.to_int64();
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GetValueForKey(const Node& jsonValue, const std::string& key, std::vector<unsigned int>& value) {
  Node valueObject;
  RETURN_IF_NOT_FOUND(GetValueForKey(jsonValue, key, valueObject));
  RETURN_IF_WRONG_KIND(!valueObject.is_array());
  const std::vector<int> elements = valueObject.to_int_array();
  value.assign(elements.begin(), elements.end());
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GetValueForKey(const Node& jsonValue, const std::string& key, std::set<unsigned int>& value) {
  Node valueObject;
  RETURN_IF_NOT_FOUND(GetValueForKey(jsonValue, key, valueObject));
  RETURN_IF_WRONG_KIND(!valueObject.is_array());
  const std::vector<int> elements = valueObject.to_int_array();
  value = std::set<unsigned int>(elements.begin(), elements.end());
  return CoreErrorCodes::kSuccess;
}

#define PATCH_WORD(Operation, word)       \
  const std::string& Operation() {        \
    static const std::string sWord(word); \
    return sWord;                         \
  }
PATCH_WORD(GetJSONPatchOpKey, "op")
PATCH_WORD(GetJSONPatchPathKey, "path")
PATCH_WORD(GetJSONPatchValueKey, "value")
PATCH_WORD(GetJSONPatchFromKey, "from")
PATCH_WORD(GetJSONPatchPathDelimiter, "/")
PATCH_WORD(GetJSONPatchOpAdd, "add")
PATCH_WORD(GetJSONPatchOpRemove, "remove")
PATCH_WORD(GetJSONPatchOpReplace, "replace")
PATCH_WORD(GetJSONPatchOpCopy, "copy")
PATCH_WORD(GetJSONPatchOpMove, "move")
PATCH_WORD(GetJSONPatchOpTest, "test")
#undef PATCH_WORD

}  // namespace GJSONUtils
