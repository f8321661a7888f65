// RAII holders of host objects, and the host's ways to read a property. Results are host errors, 0 for success.
#pragma once

#include <string>
#include <utility>

#include "photoshop/AutoSuite.h"

// Owns one host object and frees it at the end of the scope.
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

// Called by destructors, so they never throw. If the host does not offer the suite, the object is leaked to the host.
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

// The destination of a value. Set the member that matches the value's type.
struct HostValue {
  int32_t* integer = nullptr;  // integer, boolean, enumerated
  double* real = nullptr;
  std::string* text = nullptr;
  ScopedHandle* alias = nullptr;
  ScopedList* list = nullptr;
  ScopedDescriptor* object = nullptr;
};

// Reads the value of a key by its type. A missing key is not an error and writes nothing. Returns "Parm" if the
// matching member of `out` is not set.
host_sdk::SPErr PIUGetSingleItemFromDescriptor(host_sdk::PIActionDescriptor descriptor, host_sdk::FourCharCode key,
                                               const HostValue& out);
// Reads a property of the current object of a class. Key 0 stores the whole object in out.object.
host_sdk::SPErr PIUGetInfo(host_sdk::FourCharCode objectClass, host_sdk::FourCharCode key, const HostValue& out);
// The same for the object with this index, which starts at 1.
host_sdk::SPErr PIUGetInfoByIndex(uint32_t index, host_sdk::FourCharCode objectClass, host_sdk::FourCharCode key,
                                  const HostValue& out);
host_sdk::SPErr PIUSelectByID(host_sdk::FourCharCode objectClass, int id);

// True if the descriptor has the key; false for a null or empty descriptor.
bool DescriptorHasKey(host_sdk::PIActionDescriptor descriptor, host_sdk::FourCharCode key);
// The code's bytes in memory order, up to the first zero.
std::string FourChar(uint32_t code);
// The code's four bytes, high byte first.
std::string FourCharTypeToStdString(uint32_t code);
