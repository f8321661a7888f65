#include "host/HostObjects.h"
#include "host/Suites.h"
#include "host/TextOut.h"
#include "platform/TextEncoding.h"

using namespace host_sdk;

namespace host {

namespace {

HostObjects& Objects() { return HostObjects::Shared(); }

// Returns the value if the object exists and the key has this type; otherwise null and the error.
template <class T>
const T* Read(PIActionDescriptor descriptor, FourCharCode key, SPErr& error) {
  const DescriptorData* data = Objects().descriptors.Find(descriptor);
  const ActionValue* value = data ? data->Find(key) : nullptr;
  const T* typed = value ? std::get_if<T>(value) : nullptr;
  error = typed ? kNoErr : data && !value ? kNoSuchObject : kBadParameters;
  return typed;
}

SPErr Put(PIActionDescriptor descriptor, FourCharCode key, ActionValue value) {
  DescriptorData* data = Objects().descriptors.Find(descriptor);
  if (!data) return kBadParameters;
  data->Put(key, std::move(value));
  return kNoErr;
}

template <class Stored, class Given>
SPErr GetNumber(PIActionDescriptor descriptor, FourCharCode key, Given* value) {
  SPErr error = kNoErr;
  const Stored* stored = Read<Stored>(descriptor, key, error);
  if (!value) return kBadParameters;
  if (stored) *value = static_cast<Given>(*stored);
  return error;
}

SPErr Make(PIActionDescriptor* descriptor) {
  if (!descriptor) return kBadParameters;
  *descriptor = Objects().descriptors.Add({});
  return kNoErr;
}

SPErr Free(PIActionDescriptor descriptor) { return Objects().descriptors.Remove(descriptor) ? kNoErr : kBadParameters; }

SPErr HasKey(PIActionDescriptor descriptor, FourCharCode key, int32_t* has) {
  const DescriptorData* data = Objects().descriptors.Find(descriptor);
  if (!data || !has) return kBadParameters;
  *has = data->Find(key) != nullptr;
  return kNoErr;
}

SPErr GetCount(PIActionDescriptor descriptor, uint32_t* count) {
  const DescriptorData* data = Objects().descriptors.Find(descriptor);
  if (!data || !count) return kBadParameters;
  *count = static_cast<uint32_t>(data->items.size());
  return kNoErr;
}

SPErr Clear(PIActionDescriptor descriptor) {
  DescriptorData* data = Objects().descriptors.Find(descriptor);
  if (!data) return kBadParameters;
  data->items.clear();
  return kNoErr;
}

SPErr GetKey(PIActionDescriptor descriptor, uint32_t index, FourCharCode* key) {
  const DescriptorData* data = Objects().descriptors.Find(descriptor);
  if (!data || !key) return kBadParameters;
  if (index >= data->items.size()) return kNoSuchObject;
  *key = data->items[index].first;
  return kNoErr;
}

SPErr GetType(PIActionDescriptor descriptor, FourCharCode key, FourCharCode* type) {
  const DescriptorData* data = Objects().descriptors.Find(descriptor);
  if (!data || !type) return kBadParameters;
  const ActionValue* value = data->Find(key);
  if (!value) return kNoSuchObject;
  *type = TypeOf(*value);
  return kNoErr;
}

SPErr PutInteger(PIActionDescriptor descriptor, FourCharCode key, int32_t value) { return Put(descriptor, key, value); }

SPErr PutBoolean(PIActionDescriptor descriptor, FourCharCode key, int32_t value) {
  return Put(descriptor, key, value != 0);
}

SPErr PutString(PIActionDescriptor descriptor, FourCharCode key, const char* utf8) {
  return utf8 && platform::IsValidUTF8(utf8) ? Put(descriptor, key, std::string(utf8)) : kBadParameters;
}

SPErr PutEnumerated(PIActionDescriptor descriptor, FourCharCode key, FourCharCode type, FourCharCode value) {
  return Put(descriptor, key, EnumeratedValue{type, value});
}

SPErr PutAlias(PIActionDescriptor descriptor, FourCharCode key, Handle alias) {
  const AliasData* data = Objects().handles.Find(alias);
  return data ? Put(descriptor, key, *data) : kBadParameters;
}

SPErr PutObject(PIActionDescriptor descriptor, FourCharCode key, FourCharCode objectClass, PIActionDescriptor value) {
  const DescriptorData* data = Objects().descriptors.Find(value);
  if (!data) return kBadParameters;
  return Put(descriptor, key, ObjectValue{objectClass, std::make_shared<const DescriptorData>(*data)});
}

SPErr PutList(PIActionDescriptor descriptor, FourCharCode key, PIActionList value) {
  const ListData* data = Objects().lists.Find(value);
  return data ? Put(descriptor, key, std::make_shared<const ListData>(*data)) : kBadParameters;
}

SPErr PutReference(PIActionDescriptor descriptor, FourCharCode key, PIActionReference value) {
  const ReferenceData* data = Objects().references.Find(value);
  return data ? Put(descriptor, key, *data) : kBadParameters;
}

SPErr GetInteger(PIActionDescriptor descriptor, FourCharCode key, int32_t* value) {
  return GetNumber<int32_t>(descriptor, key, value);
}

SPErr GetFloat(PIActionDescriptor descriptor, FourCharCode key, double* value) {
  return GetNumber<double>(descriptor, key, value);
}

SPErr GetBoolean(PIActionDescriptor descriptor, FourCharCode key, int32_t* value) {
  return GetNumber<bool>(descriptor, key, value);
}

SPErr GetEnumerated(PIActionDescriptor descriptor, FourCharCode key, FourCharCode* type, FourCharCode* value) {
  SPErr error = kNoErr;
  const EnumeratedValue* stored = Read<EnumeratedValue>(descriptor, key, error);
  if (!type || !value) return kBadParameters;
  if (!stored) return error;
  *type = stored->type;
  *value = stored->value;
  return kNoErr;
}

SPErr GetObject(PIActionDescriptor descriptor, FourCharCode key, FourCharCode* objectClass, PIActionDescriptor* value) {
  SPErr error = kNoErr;
  const ObjectValue* stored = Read<ObjectValue>(descriptor, key, error);
  if (!objectClass || !value) return kBadParameters;
  if (!stored) return error;
  *objectClass = stored->objectClass;
  *value = Objects().descriptors.Add(*stored->data);
  return kNoErr;
}

SPErr GetAlias(PIActionDescriptor descriptor, FourCharCode key, Handle* alias) {
  SPErr error = kNoErr;
  const AliasData* stored = Read<AliasData>(descriptor, key, error);
  if (!alias) return kBadParameters;
  if (stored) *alias = Objects().handles.Add(*stored);
  return error;
}

SPErr GetList(PIActionDescriptor descriptor, FourCharCode key, PIActionList* value) {
  SPErr error = kNoErr;
  const auto* stored = Read<std::shared_ptr<const ListData>>(descriptor, key, error);
  if (!value) return kBadParameters;
  if (stored) *value = Objects().lists.Add(**stored);
  return error;
}

SPErr GetStringLength(PIActionDescriptor descriptor, FourCharCode key, uint32_t* length) {
  SPErr error = kNoErr;
  const std::string* stored = Read<std::string>(descriptor, key, error);
  if (!length) return kBadParameters;
  if (stored) *length = static_cast<uint32_t>(stored->size());
  return error;
}

SPErr GetString(PIActionDescriptor descriptor, FourCharCode key, char* buffer, uint32_t size) {
  SPErr error = kNoErr;
  const std::string* stored = Read<std::string>(descriptor, key, error);
  return stored ? CopyText(*stored, buffer, size) : error;
}

SPErr GetZString(PIActionDescriptor descriptor, FourCharCode key, ASZString* value) {
  SPErr error = kNoErr;
  const std::string* stored = Read<std::string>(descriptor, key, error);
  if (!value) return kBadParameters;
  if (stored) *value = Objects().strings.Add(*stored);
  return error;
}

}  // namespace

const PSActionDescriptorSuite& ActionDescriptorSuite() {
  static constexpr PSActionDescriptorSuite sSuite = {
      Make,       Free,       HasKey,        GetCount,  Clear,     GetKey,  GetType,         PutInteger,
      PutBoolean, PutString,  PutEnumerated, PutAlias,  PutObject, PutList, PutReference,    GetInteger,
      GetFloat,   GetBoolean, GetEnumerated, GetObject, GetAlias,  GetList, GetStringLength, GetString,
      GetZString,
  };
  return sSuite;
}

}  // namespace host
