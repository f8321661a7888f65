// The core library's variant: one typed value, or an array of values of one type. Copies share their elements until
// Assign replaces them.
//
// Sources: GValueTree.cpp (values that are trees), GValueXML.cpp, GValueJSON.cpp, GValue.cpp (the rest).
#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <iosfwd>
#include <nlohmann/json_fwd.hpp>
#include <set>
#include <string>
#include <vector>

#include "ErrorCodes.h"

class GKVTree;
class GLibXMLNode;
class XMLElementWriter;

class GValue {
 public:
  enum EValueType : int {
    kValueType_bool = 0,
    kValueType_byte = 1,
    kValueType_ubyte = 2,
    kValueType_short = 3,
    kValueType_long = 4,
    kValueType_ulong = 5,
    kValueType_double = 6,
    kValueType_string = 7,
    kValueType_kvtree = 8,
    kValueType_uLongLong = 9,
    kValueType_NULL = 10,
  };

  static constexpr TModuleErrorCode kValueTypeError = 0x01001007;
  static constexpr TModuleErrorCode kArrayIndexError = 0x02001007;
  static constexpr TModuleErrorCode kEmptyValueBytes = 0x03001007;
  static constexpr TModuleErrorCode kValueSizeMismatch = 0x04001007;
  static constexpr TModuleErrorCode kValueConversionError = 0x05001007;

  static constexpr const char* kStrTypeName_bool = "bool";
  static constexpr const char* kStrTypeName_byte = "TByte";
  static constexpr const char* kStrTypeName_ubyte = "TUByte";
  static constexpr const char* kStrTypeName_short = "TSInt16";
  static constexpr const char* kStrTypeName_long = "TSInt32";
  static constexpr const char* kStrTypeName_ulong = "TUInt32";
  static constexpr const char* kStrTypeName_double = "double";
  static constexpr const char* kStrTypeName_string = "string";
  static constexpr const char* kStrTypeName_kvtree = "kvtree";
  static constexpr const char* kStrTypeName_uLongLong = "TUInt64";
  static constexpr const char* kStrTypeName_NULL = "null";

  static constexpr const char* kStrElementName_value = "value";
  static constexpr const char* kStrAttributeName_type = "type";
  static constexpr const char* kStrAttributeName_isArray = "isArray";
  static constexpr const char* kStrAttributeName_size = "size";
  static constexpr const char* kStrElementName_str = "str";
  static constexpr const char* kStrElementName_integer = "integer";

  // One element. The pointer that is set says which field is used.
  struct GValueImpl {
    int64_t integral = 0;  // integers, booleans and the bits of a double
    boost::shared_ptr<std::string> text;
    boost::shared_ptr<GKVTree> tree;
  };

  GValue();  // null
  template <class T>
  explicit GValue(const T& value) : GValue() {
    Assign(value);
  }
  static GValue CreateNULLValue() { return GValue(); }

  void Assign(bool value);
  void Assign(char value);
  void Assign(unsigned char value);
  void Assign(short value);
  void Assign(int value);
  void Assign(unsigned int value);
  void Assign(uint64_t value);
  void Assign(double value);
  void Assign(const std::string& value);
  void Assign(const char* value) { Assign(std::string(value)); }
  void Assign(const GKVTree& value);
  template <class T>
  void Assign(const std::vector<T>& values);
  template <class T>
  void Assign(const std::set<T>& values);

  // A wrong type gives kValueTypeError, an index past the end kArrayIndexError. `out` is set on success only.
  TModuleErrorCode GetValue(bool& out, size_t index = 0) const;
  TModuleErrorCode GetValue(char& out, size_t index = 0) const;
  TModuleErrorCode GetValue(unsigned char& out, size_t index = 0) const;
  TModuleErrorCode GetValue(short& out, size_t index = 0) const;
  TModuleErrorCode GetValue(int& out, size_t index = 0) const;
  TModuleErrorCode GetValue(unsigned int& out, size_t index = 0) const;
  TModuleErrorCode GetValue(uint64_t& out, size_t index = 0) const;
  TModuleErrorCode GetValue(double& out, size_t index = 0) const;
  TModuleErrorCode GetValue(std::string& out, size_t index = 0) const;
  TModuleErrorCode GetValue(GKVTree& out, size_t index = 0) const;
  // All elements.
  template <class T>
  TModuleErrorCode GetValue(std::vector<T>& out) const;
  template <class T>
  TModuleErrorCode GetValue(std::set<T>& out) const;

  // Returns the element as text: "true" or "false", a decimal number, or the string itself. kValueConversionError for a
  // tree or null.
  TModuleErrorCode GetValueAsUTF8String(std::string& out, size_t index = 0) const;

  // Reads the XML form: an element "value" with the attributes type, isArray and size, and a child "str", "integer" or
  // "kvtree" for each element. Other holders of a shared vector keep their values. On failure the value is unchanged
  // and the code is one of GLibXMLSerializable or kValueSizeMismatch. A null value is written but cannot be read back:
  // its type name is refused like an unknown one.
  TModuleErrorCode SetFromXMLNode(const GLibXMLNode& node);
  // Writes element names with the prefix and a colon, unless the prefix is empty. Writes nothing on failure:
  // kInvalidTextContent for text that XML cannot contain, kNotSupported for trees nested deeper than a reader accepts.
  TModuleErrorCode WriteToXMLStream(std::ostream& stream, const std::string& prefix = "", bool pretty = false,
                                    unsigned indent = 0) const;
  // Converts to a JSON value of the same kind, or an array of them. kEmptyValueBytes for a single value without an
  // element, kValueConversionError for malformed UTF-8. `json` is set on success.
  TModuleErrorCode ConvertToJSON(nlohmann::json& json) const;

  EValueType GetValueType() const { return m_eValueType; }
  bool IsArray() const { return m_isArray || m_dataPtr->size() > 1; }
  size_t GetSize() const { return m_dataPtr->size(); }
  const GValueImpl& GetElement(size_t index) const { return (*m_dataPtr)[index]; }  // index below GetSize

  static EValueType GetTypeFromString(const std::string& name);
  static const char* GetStringFromType(EValueType type);

  friend bool operator==(const GValue& a, const GValue& b);

 private:
  friend class GKVTree;
  TModuleErrorCode CheckForXML(unsigned depth) const;
  void WriteXML(XMLElementWriter& writer, unsigned indent) const;

  void Replace(EValueType type, bool isArray, std::vector<GValueImpl> elements);
  TModuleErrorCode CheckType(EValueType type) const;
  TModuleErrorCode Check(EValueType type, size_t index) const;

  EValueType m_eValueType = kValueType_NULL;
  bool m_isArray = false;  // created as an array, whatever its length
  boost::shared_ptr<std::vector<GValueImpl>> m_dataPtr;
};

template <class T>
TModuleErrorCode GValue::GetValue(std::vector<T>& out) const {
  // Checks the type of an empty array, too.
  if (const TModuleErrorCode code = CheckType(GValue(T{}).m_eValueType)) return code;
  std::vector<T> values;
  for (size_t i = 0; i < m_dataPtr->size(); ++i) {
    T value{};
    if (const TModuleErrorCode code = GetValue(value, i)) return code;
    values.push_back(value);
  }
  out.swap(values);
  return CoreErrorCodes::kSuccess;
}

template <class T>
TModuleErrorCode GValue::GetValue(std::set<T>& out) const {
  std::vector<T> values;
  if (const TModuleErrorCode code = GetValue(values)) return code;
  out = std::set<T>(values.begin(), values.end());
  return CoreErrorCodes::kSuccess;
}

template <class T>
void GValue::Assign(const std::vector<T>& values) {
  std::vector<GValueImpl> elements;
  GValue one;
  one.Assign(T{});
  const EValueType type = one.m_eValueType;
  for (auto&& value : values) {  // also the proxies of a vector of booleans
    one.Assign(static_cast<const T&>(value));
    elements.push_back(one.m_dataPtr->front());
  }
  Replace(type, true, std::move(elements));
}

template <class T>
void GValue::Assign(const std::set<T>& values) {
  Assign(std::vector<T>(values.begin(), values.end()));
}
