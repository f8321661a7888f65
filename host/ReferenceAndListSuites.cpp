#include "host/HostObjects.h"
#include "host/Suites.h"
#include "host/TextOut.h"

using namespace host_sdk;

namespace host {

namespace {

HostObjects& Objects() { return HostObjects::Shared(); }

SPErr MakeReference(PIActionReference* reference) {
  if (!reference) return kBadParameters;
  *reference = Objects().references.Add({});
  return kNoErr;
}

SPErr FreeReference(PIActionReference reference) {
  return Objects().references.Remove(reference) ? kNoErr : kBadParameters;
}

SPErr Append(PIActionReference reference, const ReferenceForm& form) {
  ReferenceData* data = Objects().references.Find(reference);
  if (!data) return kBadParameters;
  data->forms.push_back(form);
  return kNoErr;
}

SPErr PutProperty(PIActionReference reference, FourCharCode objectClass, FourCharCode key) {
  ReferenceForm form;
  form.kind = ReferenceForm::Kind::kProperty;
  form.objectClass = objectClass;
  form.key = key;
  return Append(reference, form);
}

SPErr PutEnumerated(PIActionReference reference, FourCharCode objectClass, FourCharCode type, FourCharCode value) {
  ReferenceForm form;
  form.kind = ReferenceForm::Kind::kEnumerated;
  form.objectClass = objectClass;
  form.enumerated = {type, value};
  return Append(reference, form);
}

SPErr PutNumber(PIActionReference reference, ReferenceForm::Kind kind, FourCharCode objectClass, uint32_t number) {
  ReferenceForm form;
  form.kind = kind;
  form.objectClass = objectClass;
  form.number = number;
  return Append(reference, form);
}

SPErr PutIndex(PIActionReference reference, FourCharCode objectClass, uint32_t index) {
  return PutNumber(reference, ReferenceForm::Kind::kIndex, objectClass, index);
}

SPErr PutIdentifier(PIActionReference reference, FourCharCode objectClass, uint32_t identifier) {
  return PutNumber(reference, ReferenceForm::Kind::kIdentifier, objectClass, identifier);
}

SPErr FreeList(PIActionList list) { return Objects().lists.Remove(list) ? kNoErr : kBadParameters; }

SPErr GetCount(PIActionList list, uint32_t* count) {
  const ListData* data = Objects().lists.Find(list);
  if (!data || !count) return kBadParameters;
  *count = static_cast<uint32_t>(data->items.size());
  return kNoErr;
}

// Returns the item if the list exists and the index and type are right; otherwise null and the error.
template <class T>
const T* Item(PIActionList list, uint32_t index, SPErr& error) {
  const ListData* data = Objects().lists.Find(list);
  const ActionValue* value = data && index < data->items.size() ? &data->items[index] : nullptr;
  const T* typed = value ? std::get_if<T>(value) : nullptr;
  error = typed ? kNoErr : data && !value ? kNoSuchObject : kBadParameters;
  return typed;
}

SPErr GetType(PIActionList list, uint32_t index, FourCharCode* type) {
  const ListData* data = Objects().lists.Find(list);
  if (!data || !type) return kBadParameters;
  if (index >= data->items.size()) return kNoSuchObject;
  *type = TypeOf(data->items[index]);
  return kNoErr;
}

SPErr GetStringLength(PIActionList list, uint32_t index, uint32_t* length) {
  SPErr error = kNoErr;
  const std::string* text = Item<std::string>(list, index, error);
  if (!length) return kBadParameters;
  if (text) *length = static_cast<uint32_t>(text->size());
  return error;
}

SPErr GetString(PIActionList list, uint32_t index, char* buffer, uint32_t size) {
  SPErr error = kNoErr;
  const std::string* text = Item<std::string>(list, index, error);
  return text ? CopyText(*text, buffer, size) : error;
}

SPErr GetList(PIActionList list, uint32_t index, PIActionList* value) {
  SPErr error = kNoErr;
  const auto* stored = Item<std::shared_ptr<const ListData>>(list, index, error);
  if (!value) return kBadParameters;
  if (stored) *value = Objects().lists.Add(**stored);
  return error;
}

SPErr GetObject(PIActionList list, uint32_t index, FourCharCode* objectClass, PIActionDescriptor* value) {
  SPErr error = kNoErr;
  const ObjectValue* stored = Item<ObjectValue>(list, index, error);
  if (!objectClass || !value) return kBadParameters;
  if (!stored) return error;
  *objectClass = stored->objectClass;
  *value = Objects().descriptors.Add(*stored->data);
  return kNoErr;
}

}  // namespace

const PSActionReferenceSuite& ActionReferenceSuite() {
  static constexpr PSActionReferenceSuite sSuite = {MakeReference, FreeReference, PutProperty,
                                                    PutEnumerated, PutIndex,      PutIdentifier};
  return sSuite;
}

const PSActionListSuite& ActionListSuite() {
  static constexpr PSActionListSuite sSuite = {FreeList,  GetCount, GetType,  GetStringLength,
                                               GetString, GetList,  GetObject};
  return sSuite;
}

}  // namespace host
