// The contents of descriptors, lists and references. All are values: putting one into another copies it, so there are
// no cycles, and freeing one never affects another.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "host/include/HostSuites.h"

namespace host {

using host_sdk::FourCharCode;

struct DescriptorData;
struct ListData;

struct EnumeratedValue {
  FourCharCode type = 0;
  FourCharCode value = 0;
};

// A file as UTF-16 text. The path of a cloud document, and a path that is not UTF-8, is stored as bytes.
struct AliasData {
  int32_t kind = host_sdk::kAliasKindUnicode;
  std::string bytes;
  std::u16string text;

  static AliasData OfPath(const std::string& path);
  std::string Path() const;  // empty if the text is not valid UTF-16
};

struct ObjectValue {
  FourCharCode objectClass = 0;
  std::shared_ptr<const DescriptorData> data;
};

// One step of a reference.
struct ReferenceForm {
  enum class Kind { kProperty, kEnumerated, kIndex, kIdentifier };
  Kind kind = Kind::kProperty;
  FourCharCode objectClass = 0;
  FourCharCode key = 0;  // the property
  EnumeratedValue enumerated;
  uint32_t number = 0;  // index from 1, or identifier
};
struct ReferenceData {
  std::vector<ReferenceForm> forms;
};

using ActionValue = std::variant<int32_t, double, bool, std::string, EnumeratedValue, AliasData, ObjectValue,
                                 std::shared_ptr<const ListData>, ReferenceData>;

// Keys are in the order in which they were first put.
struct DescriptorData {
  std::vector<std::pair<FourCharCode, ActionValue>> items;

  void Put(FourCharCode key, ActionValue value);
  const ActionValue* Find(FourCharCode key) const;
  // Returns the value of the key if it has this type, otherwise null.
  template <class T>
  const T* Get(FourCharCode key) const {
    const ActionValue* value = Find(key);
    return value ? std::get_if<T>(value) : nullptr;
  }
};

struct ListData {
  std::vector<ActionValue> items;
};

FourCharCode TypeOf(const ActionValue& value);

}  // namespace host
