// The JSON form of values and trees.
#include <nlohmann/json.hpp>

#include "FailedCheck.h"
#include "GKVTree.h"
#include "platform/TextEncoding.h"

namespace {

TModuleErrorCode ConvertElement(GValue::EValueType type, const GValue& value, size_t index, nlohmann::json& json) {
  const GValue::GValueImpl& element = value.GetElement(index);
  switch (type) {
    case GValue::kValueType_bool: json = element.integral != 0; break;
    case GValue::kValueType_uLongLong: json = static_cast<uint64_t>(element.integral); break;
    case GValue::kValueType_double: {
      double number = 0;
      PASS_ON_ERROR(value.GetValue(number, index));
      json = number;
      break;
    }
    case GValue::kValueType_string:
      RETURN_IF("Value", !platform::IsValidUTF8(*element.text), GValue::kValueConversionError);
      json = *element.text;
      break;
    case GValue::kValueType_kvtree: return element.tree->ConvertToJSON(json);
    default: json = element.integral;
  }
  return CoreErrorCodes::kSuccess;
}

}  // namespace

TModuleErrorCode GValue::ConvertToJSON(nlohmann::json& json) const {
  if (m_eValueType == kValueType_NULL) {
    json = nullptr;
    return CoreErrorCodes::kSuccess;
  }
  if (!IsArray()) {
    RETURN_IF("Value", m_dataPtr->empty(), kEmptyValueBytes);
    return ConvertElement(m_eValueType, *this, 0, json);
  }
  nlohmann::json array = nlohmann::json::array();
  for (size_t i = 0; i < m_dataPtr->size(); ++i) {
    PASS_ON_ERROR(ConvertElement(m_eValueType, *this, i, array.emplace_back()));
  }
  json = std::move(array);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GKVTree::ConvertToJSON(nlohmann::json& json) const {
  nlohmann::json object = nlohmann::json::object();
  for (const auto& [key, value] : mValues) {
    RETURN_IF("KVTree", !platform::IsValidUTF8(key), GValue::kValueConversionError);
    PASS_ON_ERROR(value.ConvertToJSON(object[key]));
  }
  json = std::move(object);
  return CoreErrorCodes::kSuccess;
}
