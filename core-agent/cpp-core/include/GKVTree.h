// A string-keyed map of values, whose values may again hold trees. It owns its values.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "GValue.h"

class GKVTree {
 public:
  static constexpr TModuleErrorCode kMisformedFormatString = 0x0100101B;

  static constexpr const char* kXMLElementName_kvtree = "kvtree";
  static constexpr const char* kXMLElementName_kv = "kv";
  static constexpr const char* kXMLElementAttr_key = "key";

  void Assign(const GKVTree& other) { mValues = other.mValues; }
  void Clear() { mValues.clear(); }
  bool IsEmpty() const { return mValues.empty(); }
  std::vector<std::string> GetKeys() const;  // in order
  // Null for a missing key.
  const GValue* GetValuePtrForKey(const std::string& key) const;
  GValue* GetWritableValuePtrForKey(const std::string& key);
  void SetValueForKey(const GValue& value, const std::string& key);     // replaces or inserts
  GValue::EValueType GetValueTypeForKey(const std::string& key) const;  // kValueType_NULL for a missing key
  void ClearValueForKey(const std::string& key) { mValues.erase(key); }

  // The XML form: an element "kvtree" with a child "kv" for each entry, in order of key, that has the attribute "key"
  // and one child "value". On failure, with a code of GLibXMLSerializable, GValue or GLibXML, or kItemAlreadyExists for
  // a repeated key, the tree is unchanged.
  TModuleErrorCode SetFromXMLNode(const GLibXMLNode& node);
  TModuleErrorCode SetFromXMLBuffer(const char* buffer, size_t length);
  // As GValue::WriteToXMLStream. A tree without entries writes nothing.
  TModuleErrorCode WriteToXMLStream(std::ostream& stream, const std::string& prefix = "", bool pretty = false,
                                    unsigned indent = 0) const;
  TModuleErrorCode ConvertToJSON(nlohmann::json& json) const;  // an object; written on success

  friend bool operator==(const GKVTree&, const GKVTree&) = default;

 private:
  friend class GValue;
  TModuleErrorCode ProcessKVXMLNode(const GLibXMLNode& node);
  TModuleErrorCode CheckForXML(unsigned depth) const;
  void WriteXML(XMLElementWriter& writer, unsigned indent) const;

  std::map<std::string, GValue> mValues;
};
