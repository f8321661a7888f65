// What descriptors, lists and references hold. All of them are values: what is put into another is copied, so that no cycle
// can arise and freeing one never touches another.
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

// A file, as UTF-16 text; a path that is no UTF-8, and one of a cloud document, is kept as bytes.
struct AliasData {
  int32_t kind = host_sdk::kAliasKindUnicode;
  std::string bytes;
  std::u16string text;

  static AliasData OfPath(const std::string& path);
  std::string Path() const;  // empty if the text is no valid UTF-16
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

// Keys in the order in which they were first put.
struct DescriptorData {
  std::vector<std::pair<FourCharCode, ActionValue>> items;

  void Put(FourCharCode key, ActionValue value);
  const ActionValue* Find(FourCharCode key) const;
  // The value of the key if it has this type; null otherwise.
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
