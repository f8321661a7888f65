#include "GKVTree.h"

std::vector<std::string> GKVTree::GetKeys() const {
  std::vector<std::string> keys;
  for (const auto& entry : mValues) keys.push_back(entry.first);
  return keys;
}

const GValue* GKVTree::GetValuePtrForKey(const std::string& key) const {
  const auto found = mValues.find(key);
  return found == mValues.end() ? nullptr : &found->second;
}

GValue* GKVTree::GetWritableValuePtrForKey(const std::string& key) {
  const auto found = mValues.find(key);
  return found == mValues.end() ? nullptr : &found->second;
}

void GKVTree::SetValueForKey(const GValue& value, const std::string& key) { mValues.insert_or_assign(key, value); }

GValue::EValueType GKVTree::GetValueTypeForKey(const std::string& key) const {
  const GValue* value = GetValuePtrForKey(key);
  return value ? value->GetValueType() : GValue::kValueType_NULL;
}
