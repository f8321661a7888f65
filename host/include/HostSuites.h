// What the host offers to a plug-in: one message entry, and suites of functions acquired by name and version.
// Plain tables on both sides. All calls on the host's main thread. Results are host errors, 0 for success.
#pragma once

#include <cstddef>
#include <cstdint>

namespace host_sdk {

using SPErr = int32_t;
using FourCharCode = uint32_t;

constexpr FourCharCode Code(const char (&text)[5]) {
  return static_cast<FourCharCode>(static_cast<unsigned char>(text[0])) << 24 |
         static_cast<FourCharCode>(static_cast<unsigned char>(text[1])) << 16 |
         static_cast<FourCharCode>(static_cast<unsigned char>(text[2])) << 8 |
         static_cast<FourCharCode>(static_cast<unsigned char>(text[3]));
}

inline constexpr SPErr kNoErr = 0;
inline constexpr SPErr kSuiteNotFound = static_cast<SPErr>(Code("S!Fd"));
inline constexpr SPErr kBadParameters = static_cast<SPErr>(Code("Parm"));
inline constexpr SPErr kNoSuchObject = static_cast<SPErr>(Code("getE"));  // also: no such key, no such event
inline constexpr SPErr kOutOfMemory = -108;

// Opaque objects of the host.
struct ActionDescriptor;
struct ActionReference;
struct ActionList;
struct HandleBlock;
struct ZStringObject;
struct PluginObject;
using PIActionDescriptor = ActionDescriptor*;
using PIActionReference = ActionReference*;
using PIActionList = ActionList*;
using Handle = HandleBlock*;  // an alias to a file is a handle
using ASZString = ZStringObject*;
using SPPluginRef = PluginObject*;

struct SPBasicSuite {
  SPErr (*AcquireSuite)(const char* name, int32_t version, const void** suite);
  SPErr (*ReleaseSuite)(const char* name, int32_t version);
  int32_t (*IsEqual)(const char* a, const char* b);  // nonzero: the same text
};

struct PIActionParameters {
  PIActionDescriptor descriptor;
};

// The message block behind every selector. `globals` is the plug-in's own word, kept by the host between calls.
struct SPMessageData {
  SPPluginRef self;
  void* globals;
  const SPBasicSuite* basic;
  PIActionParameters* actionParameters;  // "Do It" only
};

// int32_t AutoPluginMain(const char* caller, const char* selector, void* message)
using PluginMain = int32_t (*)(const char* caller, const char* selector, void* message);
inline constexpr const char* kCallerInterface = "SP Interface";  // selectors "Startup", "Shutdown", "About"
inline constexpr const char* kCallerHost = "PS Photoshop";       // selector "Do It"

inline constexpr const char* kSPBlocksSuite = "SP Blocks Suite";
inline constexpr int32_t kSPBlocksSuiteVersion = 2;
struct SPBlocksSuite {
  SPErr (*AllocateBlock)(size_t size, const char* debugName, void** block);  // not zeroed
  SPErr (*FreeBlock)(void* block);
};

using NotifierCallback = SPErr (*)(FourCharCode event, PIActionDescriptor descriptor, int32_t options, void* userData);

inline constexpr int32_t kSilentDialogMode = 2;

inline constexpr const char* kPSActionControlSuite = "df135115-c769-11d0-8079-00c04fd7ec47";
inline constexpr int32_t kPSActionControlSuiteVersion = 4;
struct PSActionControlSuite {
  SPErr (*Play)(FourCharCode event, PIActionDescriptor descriptor, int32_t dialogMode, PIActionDescriptor* result);
  // The property (or the whole object) that the reference names, in a new descriptor owned by the caller.
  SPErr (*Get)(PIActionDescriptor* result, PIActionReference reference);
  SPErr (*StringIDToTypeID)(const char* stringID, FourCharCode* code);
  SPErr (*TypeIDToStringID)(FourCharCode code, char* buffer, uint32_t size);
  SPErr (*AddNotify)(SPPluginRef plugin, FourCharCode event, NotifierCallback callback, void* userData);
  SPErr (*RemoveNotify)(SPPluginRef plugin, FourCharCode event, NotifierCallback callback);
};

// Types of descriptor values.
inline constexpr FourCharCode kTypeInteger = Code("long");
inline constexpr FourCharCode kTypeFloat = Code("doub");
inline constexpr FourCharCode kTypeBoolean = Code("bool");
inline constexpr FourCharCode kTypeText = Code("TEXT");
inline constexpr FourCharCode kTypeEnumerated = Code("enum");
inline constexpr FourCharCode kTypeAlias = Code("alis");
inline constexpr FourCharCode kTypePath = Code("Pth ");
inline constexpr FourCharCode kTypeObject = Code("Objc");
inline constexpr FourCharCode kTypeGlobalObject = Code("GlbO");
inline constexpr FourCharCode kTypeList = Code("VlLs");
inline constexpr FourCharCode kTypeReference = Code("obj ");

inline constexpr const char* kPSActionDescriptorSuite = "dc135115-c769-11d0-8079-00c04fd7ec47";
inline constexpr int32_t kPSActionDescriptorSuiteVersion = 2;
struct PSActionDescriptorSuite {
  SPErr (*Make)(PIActionDescriptor* descriptor);
  SPErr (*Free)(PIActionDescriptor descriptor);
  SPErr (*HasKey)(PIActionDescriptor descriptor, FourCharCode key, int32_t* has);
  SPErr (*GetCount)(PIActionDescriptor descriptor, uint32_t* count);
  SPErr (*Clear)(PIActionDescriptor descriptor);
  SPErr (*GetKey)(PIActionDescriptor descriptor, uint32_t index, FourCharCode* key);
  SPErr (*GetType)(PIActionDescriptor descriptor, FourCharCode key, FourCharCode* type);
  SPErr (*PutInteger)(PIActionDescriptor descriptor, FourCharCode key, int32_t value);
  SPErr (*PutBoolean)(PIActionDescriptor descriptor, FourCharCode key, int32_t value);
  SPErr (*PutString)(PIActionDescriptor descriptor, FourCharCode key, const char* utf8);
  SPErr (*PutEnumerated)(PIActionDescriptor descriptor, FourCharCode key, FourCharCode type, FourCharCode value);
  SPErr (*PutAlias)(PIActionDescriptor descriptor, FourCharCode key, Handle alias);  // copies the alias
  SPErr (*PutObject)(PIActionDescriptor descriptor, FourCharCode key, FourCharCode objectClass,
                     PIActionDescriptor value);
  SPErr (*PutList)(PIActionDescriptor descriptor, FourCharCode key, PIActionList value);
  SPErr (*PutReference)(PIActionDescriptor descriptor, FourCharCode key, PIActionReference value);
  SPErr (*GetInteger)(PIActionDescriptor descriptor, FourCharCode key, int32_t* value);
  SPErr (*GetFloat)(PIActionDescriptor descriptor, FourCharCode key, double* value);
  SPErr (*GetBoolean)(PIActionDescriptor descriptor, FourCharCode key, int32_t* value);
  SPErr (*GetEnumerated)(PIActionDescriptor descriptor, FourCharCode key, FourCharCode* type, FourCharCode* value);
  // Objects, lists and aliases come as new ones, owned by the caller.
  SPErr (*GetObject)(PIActionDescriptor descriptor, FourCharCode key, FourCharCode* objectClass,
                     PIActionDescriptor* value);
  SPErr (*GetAlias)(PIActionDescriptor descriptor, FourCharCode key, Handle* alias);
  SPErr (*GetList)(PIActionDescriptor descriptor, FourCharCode key, PIActionList* value);
  SPErr (*GetStringLength)(PIActionDescriptor descriptor, FourCharCode key, uint32_t* length);  // without the NUL
  SPErr (*GetString)(PIActionDescriptor descriptor, FourCharCode key, char* buffer, uint32_t size);
  SPErr (*GetZString)(PIActionDescriptor descriptor, FourCharCode key, ASZString* value);
};

inline constexpr const char* kPSActionReferenceSuite = "dd135115-c769-11d0-8079-00c04fd7ec47";
inline constexpr int32_t kPSActionReferenceSuiteVersion = 2;
struct PSActionReferenceSuite {
  SPErr (*Make)(PIActionReference* reference);
  SPErr (*Free)(PIActionReference reference);
  SPErr (*PutProperty)(PIActionReference reference, FourCharCode objectClass, FourCharCode key);
  SPErr (*PutEnumerated)(PIActionReference reference, FourCharCode objectClass, FourCharCode type, FourCharCode value);
  SPErr (*PutIndex)(PIActionReference reference, FourCharCode objectClass, uint32_t index);  // from 1
  SPErr (*PutIdentifier)(PIActionReference reference, FourCharCode objectClass, uint32_t identifier);
};

inline constexpr const char* kPSActionListSuite = "de135115-c769-11d0-8079-00c04fd7ec47";
inline constexpr int32_t kPSActionListSuiteVersion = 1;
struct PSActionListSuite {
  SPErr (*Free)(PIActionList list);
  SPErr (*GetCount)(PIActionList list, uint32_t* count);
  SPErr (*GetType)(PIActionList list, uint32_t index, FourCharCode* type);
  SPErr (*GetStringLength)(PIActionList list, uint32_t index, uint32_t* length);
  SPErr (*GetString)(PIActionList list, uint32_t index, char* buffer, uint32_t size);
  SPErr (*GetList)(PIActionList list, uint32_t index, PIActionList* value);
  SPErr (*GetObject)(PIActionList list, uint32_t index, FourCharCode* objectClass, PIActionDescriptor* value);
};

// How an alias holds its path: as bytes that the suite gives directly, or as UTF-16 text behind the handle.
inline constexpr int32_t kAliasKindDirect = 1;
inline constexpr int32_t kAliasKindUnicode = 2;
inline constexpr const char* kPSAliasSuite = "PS Alias Suite";
inline constexpr int32_t kPSAliasSuiteVersion = 2;
struct PSAliasSuite {
  SPErr (*GetKind)(Handle alias, int32_t* kind);
  SPErr (*GetPath)(Handle alias, char* buffer, uint32_t size);  // kind 1; NUL-terminated, cut to the size
  // Kind 2: the text as UTF-16 units in machine order; size in units, *length receives the whole length.
  SPErr (*GetUnicodePath)(Handle alias, uint16_t* buffer, uint32_t size, uint32_t* length);
  SPErr (*MakeFromPath)(const char* path, Handle* alias);  // direct, for cloud paths
  SPErr (*MakeFromUnicodePath)(const uint16_t* text, uint32_t length, Handle* alias);
};

inline constexpr const char* kPSHandleSuite = "Photoshop Handle Suite for Plug-ins";
inline constexpr int32_t kPSHandleSuiteVersion = 2;
struct PSHandleSuite {
  SPErr (*Dispose)(Handle handle);
  int32_t (*GetSize)(Handle handle);  // bytes
};

// Strings, made of UTF-16 and copied out as it.
inline constexpr const char* kASZStringSuite = "AS ZString Suite";
inline constexpr int32_t kASZStringSuiteVersion = 1;
struct ASZStringSuite {
  SPErr (*MakeFromUnicode)(const uint16_t* text, uint32_t length, ASZString* string);
  uint32_t (*LengthAsUnicode)(ASZString string);
  SPErr (*AsUnicode)(ASZString string, uint16_t* buffer, uint32_t size);
  SPErr (*Release)(ASZString string);
};

// The same strings in UTF-8; the other version releases them.
inline constexpr int32_t kASZStringSuite2Version = 2;
struct ASZStringSuite2 {
  SPErr (*MakeFromUTF8)(const char* text, ASZString* string);
  uint32_t (*LengthAsUTF8)(ASZString string);  // without the NUL
  SPErr (*AsUTF8)(ASZString string, char* buffer, uint32_t size);
};

}  // namespace host_sdk
