// Host objects that free themselves, and the host's ways of reading a property. Results are host errors, 0 for success.
#pragma once

#include <string>
#include <utility>

#include "photoshop/AutoSuite.h"

// A scope's hold on one object of the host.
template <class T, void (*Free)(T) noexcept>
class HostObject {
 public:
  HostObject() = default;
  explicit HostObject(T object) : mObject(object) {}
  HostObject(HostObject&& other) noexcept : mObject(std::exchange(other.mObject, nullptr)) {}
  HostObject& operator=(HostObject&& other) noexcept {
    std::swap(mObject, other.mObject);
    return *this;
  }
  ~HostObject() {
    if (mObject) Free(mObject);
  }
  T Get() const { return mObject; }
  T* Out() { return &mObject; }
  explicit operator bool() const { return mObject != nullptr; }

 private:
  T mObject = nullptr;
};

// They run in destructors, so they never throw: an object whose suite the host does not give stays with the host.
void FreeDescriptor(host_sdk::PIActionDescriptor descriptor) noexcept;
void FreeReference(host_sdk::PIActionReference reference) noexcept;
void FreeList(host_sdk::PIActionList list) noexcept;
void FreeHandle(host_sdk::Handle handle) noexcept;
void FreeZString(host_sdk::ASZString string) noexcept;

using ScopedDescriptor = HostObject<host_sdk::PIActionDescriptor, FreeDescriptor>;
using ScopedReference = HostObject<host_sdk::PIActionReference, FreeReference>;
using ScopedList = HostObject<host_sdk::PIActionList, FreeList>;
using ScopedHandle = HostObject<host_sdk::Handle, FreeHandle>;
using ScopedZString = HostObject<host_sdk::ASZString, FreeZString>;

// Where a value goes; the member that the value's type needs must be set.
struct HostValue {
  int32_t* integer = nullptr;  // integer, boolean, enumerated
  double* real = nullptr;
  std::string* text = nullptr;
  ScopedHandle* alias = nullptr;
  ScopedList* list = nullptr;
  ScopedDescriptor* object = nullptr;
};

// Reads the value of a key by its type. An absent key is no error and writes nothing; "Parm" without the place it needs.
host_sdk::SPErr PIUGetSingleItemFromDescriptor(host_sdk::PIActionDescriptor descriptor, host_sdk::FourCharCode key,
                                               const HostValue& out);
// A property of the current object of a class; key 0 hands the whole object to out.object.
host_sdk::SPErr PIUGetInfo(host_sdk::FourCharCode objectClass, host_sdk::FourCharCode key, const HostValue& out);
// The same of the n-th object, from 1.
host_sdk::SPErr PIUGetInfoByIndex(uint32_t index, host_sdk::FourCharCode objectClass, host_sdk::FourCharCode key,
                                  const HostValue& out);
host_sdk::SPErr PIUSelectByID(host_sdk::FourCharCode objectClass, int id);

// Whether the descriptor holds the key; false for null or an empty one.
bool DescriptorHasKey(host_sdk::PIActionDescriptor descriptor, host_sdk::FourCharCode key);
// The code's bytes as they lie in memory, up to the first zero.
std::string FourChar(uint32_t code);
// The code's four bytes, high byte first.
std::string FourCharTypeToStdString(uint32_t code);
