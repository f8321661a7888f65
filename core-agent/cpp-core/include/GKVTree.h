// A map from strings to values, which can themselves be trees. Owns its values.
//
// Sources: GKVTreeXML.cpp, GValueJSON.cpp (ConvertToJSON), GKVTree.cpp (the rest).
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
  std::vector<std::string> GetKeys() const;  // sorted
  // Returns null for a missing key.
  const GValue* GetValuePtrForKey(const std::string& key) const;
  GValue* GetWritableValuePtrForKey(const std::string& key);
  void SetValueForKey(const GValue& value, const std::string& key);     // replaces or inserts
  GValue::EValueType GetValueTypeForKey(const std::string& key) const;  // kValueType_NULL for a missing key
  void ClearValueForKey(const std::string& key) { mValues.erase(key); }

  // Reads the XML form: an element "kvtree" with a child "kv" for each entry, sorted by key, which has the attribute
  // "key" and one child "value". On failure the tree is unchanged and the code is one of GLibXMLSerializable, GValue or
  // GLibXML, or kItemAlreadyExists for a repeated key.
  TModuleErrorCode SetFromXMLNode(const GLibXMLNode& node);
  TModuleErrorCode SetFromXMLBuffer(const char* buffer, size_t length);
  // Like GValue::WriteToXMLStream. An empty tree writes nothing.
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
