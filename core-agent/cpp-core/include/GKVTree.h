// A string-keyed map of values, whose values may again hold trees. It owns its values.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "GValue.h"

class GKVTree {
 public:
  void Assign(const GKVTree& other) { mValues = other.mValues; }
  void Clear() { mValues.clear(); }
  bool IsEmpty() const { return mValues.empty(); }
  std::vector<std::string> GetKeys() const;  // in order
  // Null for a missing key.
  const GValue* GetValuePtrForKey(const std::string& key) const;
  GValue* GetWritableValuePtrForKey(const std::string& key);
  void SetValueForKey(const GValue& value, const std::string& key);  // replaces or inserts
  GValue::EValueType GetValueTypeForKey(const std::string& key) const;  // kValueType_NULL for a missing key
  void ClearValueForKey(const std::string& key) { mValues.erase(key); }

  friend bool operator==(const GKVTree&, const GKVTree&) = default;

 private:
  std::map<std::string, GValue> mValues;
};
