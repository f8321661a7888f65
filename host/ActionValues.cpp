#include "host/ActionValues.h"

#include <algorithm>

#include "platform/TextEncoding.h"

namespace host {

AliasData AliasData::OfPath(const std::string& path) {
  AliasData alias;
  const auto text = platform::UTF8ToUTF16(path);
  if (text) {
    alias.text = *text;
  } else {
    alias.kind = host_sdk::kAliasKindDirect;
    alias.bytes = path;
  }
  return alias;
}

std::string AliasData::Path() const {
  return kind == host_sdk::kAliasKindDirect ? bytes : platform::UTF16ToUTF8(text).value_or(std::string());
}

void DescriptorData::Put(FourCharCode key, ActionValue value) {
  const auto found = std::find_if(items.begin(), items.end(), [key](const auto& item) { return item.first == key; });
  if (found != items.end()) {
    found->second = std::move(value);
  } else {
    items.emplace_back(key, std::move(value));
  }
}

const ActionValue* DescriptorData::Find(FourCharCode key) const {
  const auto found = std::find_if(items.begin(), items.end(), [key](const auto& item) { return item.first == key; });
  return found == items.end() ? nullptr : &found->second;
}

FourCharCode TypeOf(const ActionValue& value) {
  // In the order of the variant's types.
  static constexpr FourCharCode kTypes[] = {
      host_sdk::kTypeInteger, host_sdk::kTypeFloat,      host_sdk::kTypeBoolean,
      host_sdk::kTypeText,    host_sdk::kTypeEnumerated, host_sdk::kTypeAlias,
      host_sdk::kTypeObject,  host_sdk::kTypeList,       host_sdk::kTypeReference};
  static_assert(std::size(kTypes) == std::variant_size_v<ActionValue>);
  return kTypes[value.index()];
}

}  // namespace host
