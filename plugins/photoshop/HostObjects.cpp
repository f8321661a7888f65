#include "photoshop/HostObjects.h"

#include <cstring>
#include <vector>

using namespace host_sdk;

void FreeDescriptor(PIActionDescriptor descriptor) noexcept {
  if (const auto* suite = sPSActionDescriptor.IfPresent()) suite->Free(descriptor);
}
void FreeReference(PIActionReference reference) noexcept {
  if (const auto* suite = sPSActionReference.IfPresent()) suite->Free(reference);
}
void FreeList(PIActionList list) noexcept {
  if (const auto* suite = sPSActionList.IfPresent()) suite->Free(list);
}
void FreeHandle(Handle handle) noexcept {
  if (const auto* suite = sPSHandle.IfPresent()) suite->Dispose(handle);
}
void FreeZString(ASZString string) noexcept {
  if (const auto* suite = sASZString.IfPresent()) suite->Release(string);
}

namespace {

SPErr GetText(PIActionDescriptor descriptor, FourCharCode key, std::string& out) {
  uint32_t length = 0;
  SPErr error = sPSActionDescriptor->GetStringLength(descriptor, key, &length);
  if (error != kNoErr) return error;
  std::vector<char> buffer(length + 1);
  error = sPSActionDescriptor->GetString(descriptor, key, buffer.data(), static_cast<uint32_t>(buffer.size()));
  if (error == kNoErr) out = buffer.data();
  return error;
}

SPErr GetByType(PIActionDescriptor descriptor, FourCharCode key, FourCharCode type, const HostValue& out) {
  switch (type) {
    case kTypeInteger:
      return out.integer ? sPSActionDescriptor->GetInteger(descriptor, key, out.integer) : kBadParameters;
    case kTypeBoolean:
      return out.integer ? sPSActionDescriptor->GetBoolean(descriptor, key, out.integer) : kBadParameters;
    case kTypeFloat: return out.real ? sPSActionDescriptor->GetFloat(descriptor, key, out.real) : kBadParameters;
    case kTypeText: return out.text ? GetText(descriptor, key, *out.text) : kBadParameters;
    case kTypeAlias:
    case kTypePath:
      return out.alias ? sPSActionDescriptor->GetAlias(descriptor, key, out.alias->Out()) : kBadParameters;
    case kTypeList: return out.list ? sPSActionDescriptor->GetList(descriptor, key, out.list->Out()) : kBadParameters;
    case kTypeEnumerated: {
      FourCharCode enumType = 0, value = 0;
      if (!out.integer) return kBadParameters;
      const SPErr error = sPSActionDescriptor->GetEnumerated(descriptor, key, &enumType, &value);
      if (error == kNoErr) *out.integer = static_cast<int32_t>(value);
      return error;
    }
    case kTypeObject:
    case kTypeGlobalObject: {
      FourCharCode objectClass = 0;
      return out.object ? sPSActionDescriptor->GetObject(descriptor, key, &objectClass, out.object->Out())
                        : kBadParameters;
    }
    default: return kBadParameters;
  }
}

SPErr GetThrough(PIActionReference reference, FourCharCode key, const HostValue& out) {
  ScopedDescriptor result;
  const SPErr error = sPSActionControl->Get(result.Out(), reference);
  if (error != kNoErr) return error;
  if (key != 0) return PIUGetSingleItemFromDescriptor(result.Get(), key, out);
  if (!out.object) return kBadParameters;
  *out.object = std::move(result);
  return kNoErr;
}

}  // namespace

SPErr PIUGetSingleItemFromDescriptor(PIActionDescriptor descriptor, FourCharCode key, const HostValue& out) {
  int32_t has = 0;
  SPErr error = sPSActionDescriptor->HasKey(descriptor, key, &has);
  if (error != kNoErr || !has) return error;
  FourCharCode type = 0;
  error = sPSActionDescriptor->GetType(descriptor, key, &type);
  return error != kNoErr ? error : GetByType(descriptor, key, type, out);
}

SPErr PIUGetInfo(FourCharCode objectClass, FourCharCode key, const HostValue& out) {
  ScopedReference reference;
  SPErr error = sPSActionReference->Make(reference.Out());
  if (error == kNoErr && key != 0) error = sPSActionReference->PutProperty(reference.Get(), Code("Prpr"), key);
  if (error == kNoErr) {
    error = sPSActionReference->PutEnumerated(reference.Get(), objectClass, Code("Ordn"), Code("Trgt"));
  }
  return error != kNoErr ? error : GetThrough(reference.Get(), key, out);
}

SPErr PIUGetInfoByIndex(uint32_t index, FourCharCode objectClass, FourCharCode key, const HostValue& out) {
  ScopedReference reference;
  SPErr error = sPSActionReference->Make(reference.Out());
  if (error == kNoErr && key != 0) error = sPSActionReference->PutProperty(reference.Get(), Code("Prpr"), key);
  if (error == kNoErr) error = sPSActionReference->PutIndex(reference.Get(), objectClass, index);
  return error != kNoErr ? error : GetThrough(reference.Get(), key, out);
}

SPErr PIUSelectByID(FourCharCode objectClass, int id) {
  ScopedReference reference;
  SPErr error = sPSActionReference->Make(reference.Out());
  if (error == kNoErr) {
    error = sPSActionReference->PutIdentifier(reference.Get(), objectClass, static_cast<uint32_t>(id));
  }
  ScopedDescriptor descriptor, result;
  if (error == kNoErr) error = sPSActionDescriptor->Make(descriptor.Out());
  if (error == kNoErr) error = sPSActionDescriptor->PutReference(descriptor.Get(), Code("null"), reference.Get());
  if (error == kNoErr) error = sPSActionControl->Play(Code("slct"), descriptor.Get(), kSilentDialogMode, result.Out());
  return error;
}

bool DescriptorHasKey(PIActionDescriptor descriptor, FourCharCode key) {
  uint32_t count = 0;
  int32_t has = 0;
  if (!descriptor || sPSActionDescriptor->GetCount(descriptor, &count) != kNoErr || count == 0) return false;
  return sPSActionDescriptor->HasKey(descriptor, key, &has) == kNoErr && has != 0;
}

std::string FourChar(uint32_t code) {
  char bytes[sizeof code + 1] = {};
  std::memcpy(bytes, &code, sizeof code);
  return bytes;
}

std::string FourCharTypeToStdString(uint32_t code) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) text.push_back(static_cast<char>(code >> shift & 0xFF));
  return text;
}
