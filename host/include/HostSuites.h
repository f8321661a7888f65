// What the host offers to a plug-in: messages to one entry function, and suites, which are tables of functions that the
// plug-in acquires by name and version. The order and the types of the members are a binary interface.
//
// Threads    The host's main thread only. A plug-in's callbacks run there, too.
// Results    An SPErr is 0 for success. kBadParameters: a null pointer, an object that was freed or is of another kind,
//            or a value of another type. kNoSuchObject: no such key, index, document or event. On an error the out
//            parameters are unchanged. The host catches what a plug-in throws into it and reports it.
// Ownership  The plug-in owns every object that a function writes to an out parameter, and frees it with the Free,
//            Dispose or Release of its suite. Objects that it passes in stay its own: the host copies what it keeps. At
//            the end of the plug-in the host frees what is left.
// Text       NUL-terminated UTF-8. `size` is the room in the buffer and must not be 0; longer text is cut after a whole
//            character. UTF-16 text is in machine order, with its length in units and without a NUL. Text that is not
//            valid gives kBadParameters.
// Booleans   An int32_t that is 0 or 1.
#pragma once

#include <cstddef>
#include <cstdint>

namespace host_sdk {

using SPErr = int32_t;
using FourCharCode = uint32_t;

// The code of four characters, the first in the highest byte: Code("Opn ").
constexpr FourCharCode Code(const char (&text)[5]) {
  return static_cast<FourCharCode>(static_cast<unsigned char>(text[0])) << 24 |
         static_cast<FourCharCode>(static_cast<unsigned char>(text[1])) << 16 |
         static_cast<FourCharCode>(static_cast<unsigned char>(text[2])) << 8 |
         static_cast<FourCharCode>(static_cast<unsigned char>(text[3]));
}

inline constexpr SPErr kNoErr = 0;
inline constexpr SPErr kSuiteNotFound = static_cast<SPErr>(Code("S!Fd"));  // no suite of this name and version
inline constexpr SPErr kBadParameters = static_cast<SPErr>(Code("Parm"));
inline constexpr SPErr kNoSuchObject = static_cast<SPErr>(Code("getE"));  // also: no such key, no such event
inline constexpr SPErr kOutOfMemory = -108;

// Opaque objects of the host. The pointers are handles: the plug-in must not read through them, and null is no object.
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

// The suite through which the others are acquired. It comes with each message.
struct SPBasicSuite {
  // Sets *suite to the table of the suite, which is valid until the suite is released as often as it was acquired.
  SPErr (*AcquireSuite)(const char* name, int32_t version, const void** suite);
  // kBadParameters if the suite is not acquired.
  SPErr (*ReleaseSuite)(const char* name, int32_t version);
  int32_t (*IsEqual)(const char* a, const char* b);  // nonzero: the same text
};

// The parameters of a command. The plug-in may change the descriptor; the host owns it.
struct PIActionParameters {
  PIActionDescriptor descriptor;
};

// What the plug-in's entry function receives with every message. Valid during the call.
struct SPMessageData {
  SPPluginRef self;  // the plug-in, for functions that ask who is calling
  void* globals;     // the plug-in's own; the host keeps what the plug-in stores here for the next message
  const SPBasicSuite* basic;
  PIActionParameters* actionParameters;  // "Do It" only
};

// The one function that a plug-in exports, called "AutoPluginMain". `caller` and `selector` say which message it is;
// `message` is an SPMessageData. The result is an SPErr; the host shows an error to the user. A plug-in answers
// messages that it does not know with 0. "Startup" comes first and "Shutdown" last.
using PluginMain = int32_t (*)(const char* caller, const char* selector, void* message);
inline constexpr const char* kCallerInterface = "SP Interface";  // selectors "Startup", "Shutdown", "About"
inline constexpr const char* kCallerHost = "PS Photoshop";       // selector "Do It"

inline constexpr const char* kSPBlocksSuite = "SP Blocks Suite";
inline constexpr int32_t kSPBlocksSuiteVersion = 2;
struct SPBlocksSuite {
  // Allocates `size` bytes (at most 2 GiB), not zeroed, aligned for every type. debugName is ignored. kOutOfMemory.
  SPErr (*AllocateBlock)(size_t size, const char* debugName, void** block);
  SPErr (*FreeBlock)(void* block);  // kBadParameters for null
};

// A plug-in's function for an event. The host owns the descriptor and frees it after the call; `options` is 0; userData
// is the pointer given to AddNotify. The host ignores the result. The callback may use every suite, add and remove
// callbacks and play events.
using NotifierCallback = SPErr (*)(FourCharCode event, PIActionDescriptor descriptor, int32_t options, void* userData);

inline constexpr int32_t kSilentDialogMode = 2;  // show no dialog

// Events and properties of the host and its documents.
inline constexpr const char* kPSActionControlSuite = "df135115-c769-11d0-8079-00c04fd7ec47";
inline constexpr int32_t kPSActionControlSuiteVersion = 4;
struct PSActionControlSuite {
  // Carries out an event: open (keyTarget, an alias), close (keySaving, yes or no; needed if the front document has
  // changes) or select (keyTarget, a reference to a document). The descriptor may be null. The host never shows a
  // dialog here, whatever dialogMode is. A failure is reported to the user as well. `result` may be null; no event has
  // a result, so it receives null. Notifiers of what happened run after the plug-in has returned to the host.
  SPErr (*Play)(FourCharCode event, PIActionDescriptor descriptor, int32_t dialogMode, PIActionDescriptor* result);
  // Creates a descriptor with the property, or all properties, of the object that the reference names.
  SPErr (*Get)(PIActionDescriptor* result, PIActionReference reference);
  // The code for a name. A name that the host does not know gets a new code, the same for the life of the process.
  SPErr (*StringIDToTypeID)(const char* stringID, FourCharCode* code);
  // The name of a code; kNoSuchObject for an unknown one.
  SPErr (*TypeIDToStringID)(FourCharCode code, char* buffer, uint32_t size);
  // Calls `callback` for each event of this kind. A callback that is added twice is called twice.
  SPErr (*AddNotify)(SPPluginRef plugin, FourCharCode event, NotifierCallback callback, void* userData);
  // Removes the oldest such entry, which is then not called any more. kNoSuchObject if there is none.
  SPErr (*RemoveNotify)(SPPluginRef plugin, FourCharCode event, NotifierCallback callback);
};

// The types of values in descriptors and lists, as GetType returns them.
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

// Descriptors: dictionaries with codes as keys, in the order in which the keys were first put. Values are copied in and
// out, so changing or freeing one object never changes another. Putting a key again replaces its value.
inline constexpr const char* kPSActionDescriptorSuite = "dc135115-c769-11d0-8079-00c04fd7ec47";
inline constexpr int32_t kPSActionDescriptorSuiteVersion = 2;
struct PSActionDescriptorSuite {
  SPErr (*Make)(PIActionDescriptor* descriptor);
  SPErr (*Free)(PIActionDescriptor descriptor);
  SPErr (*HasKey)(PIActionDescriptor descriptor, FourCharCode key, int32_t* has);
  SPErr (*GetCount)(PIActionDescriptor descriptor, uint32_t* count);
  SPErr (*Clear)(PIActionDescriptor descriptor);
  SPErr (*GetKey)(PIActionDescriptor descriptor, uint32_t index, FourCharCode* key);  // from 0
  SPErr (*GetType)(PIActionDescriptor descriptor, FourCharCode key, FourCharCode* type);
  SPErr (*PutInteger)(PIActionDescriptor descriptor, FourCharCode key, int32_t value);
  SPErr (*PutBoolean)(PIActionDescriptor descriptor, FourCharCode key, int32_t value);
  SPErr (*PutString)(PIActionDescriptor descriptor, FourCharCode key, const char* utf8);
  SPErr (*PutEnumerated)(PIActionDescriptor descriptor, FourCharCode key, FourCharCode type, FourCharCode value);
  SPErr (*PutAlias)(PIActionDescriptor descriptor, FourCharCode key, Handle alias);
  SPErr (*PutObject)(PIActionDescriptor descriptor, FourCharCode key, FourCharCode objectClass,
                     PIActionDescriptor value);
  SPErr (*PutList)(PIActionDescriptor descriptor, FourCharCode key, PIActionList value);
  SPErr (*PutReference)(PIActionDescriptor descriptor, FourCharCode key, PIActionReference value);
  SPErr (*GetInteger)(PIActionDescriptor descriptor, FourCharCode key, int32_t* value);
  SPErr (*GetFloat)(PIActionDescriptor descriptor, FourCharCode key, double* value);
  SPErr (*GetBoolean)(PIActionDescriptor descriptor, FourCharCode key, int32_t* value);
  SPErr (*GetEnumerated)(PIActionDescriptor descriptor, FourCharCode key, FourCharCode* type, FourCharCode* value);
  // These create a new object, alias, list or string.
  SPErr (*GetObject)(PIActionDescriptor descriptor, FourCharCode key, FourCharCode* objectClass,
                     PIActionDescriptor* value);
  SPErr (*GetAlias)(PIActionDescriptor descriptor, FourCharCode key, Handle* alias);
  SPErr (*GetList)(PIActionDescriptor descriptor, FourCharCode key, PIActionList* value);
  SPErr (*GetStringLength)(PIActionDescriptor descriptor, FourCharCode key, uint32_t* length);  // bytes, no NUL
  SPErr (*GetString)(PIActionDescriptor descriptor, FourCharCode key, char* buffer, uint32_t size);
  SPErr (*GetZString)(PIActionDescriptor descriptor, FourCharCode key, ASZString* value);
};

// References: the object that is meant (the application by enumeration, a document by enumeration, index or identifier)
// and, at most, one property of it. Anything else gives kBadParameters when the reference is used.
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

// Lists of values. A plug-in gets lists from descriptors and can only read them. Indexes start at 0; kNoSuchObject
// beyond the end.
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

// Aliases: handles that name a file. The kind says in which form the path is: as bytes (GetPath), for cloud documents
// and paths that are not UTF-8, or as UTF-16 text (GetUnicodePath). The function for the other kind gives
// kBadParameters.
inline constexpr int32_t kAliasKindDirect = 1;
inline constexpr int32_t kAliasKindUnicode = 2;
inline constexpr const char* kPSAliasSuite = "PS Alias Suite";
inline constexpr int32_t kPSAliasSuiteVersion = 2;
struct PSAliasSuite {
  SPErr (*GetKind)(Handle alias, int32_t* kind);
  SPErr (*GetPath)(Handle alias, char* buffer, uint32_t size);  // kAliasKindDirect; size in bytes
  // kAliasKindUnicode; size in units. Writes as many units as fit, and a 0 after them if there is room. *length
  // receives the length of the whole text.
  SPErr (*GetUnicodePath)(Handle alias, uint16_t* buffer, uint32_t size, uint32_t* length);
  SPErr (*MakeFromPath)(const char* path, Handle* alias);                              // makes a kAliasKindDirect
  SPErr (*MakeFromUnicodePath)(const uint16_t* text, uint32_t length, Handle* alias);  // makes a kAliasKindUnicode
};

inline constexpr const char* kPSHandleSuite = "Photoshop Handle Suite for Plug-ins";
inline constexpr int32_t kPSHandleSuiteVersion = 2;
struct PSHandleSuite {
  SPErr (*Dispose)(Handle handle);
  int32_t (*GetSize)(Handle handle);  // of the path, in bytes; 0 for an object that is not a handle
};

// Strings of the host, here as UTF-16. Sizes and lengths are in units; AsUnicode writes as many as fit, and a 0 after
// them if there is room. The length of what is not a string is 0.
inline constexpr const char* kASZStringSuite = "AS ZString Suite";
inline constexpr int32_t kASZStringSuiteVersion = 1;
struct ASZStringSuite {
  SPErr (*MakeFromUnicode)(const uint16_t* text, uint32_t length, ASZString* string);
  uint32_t (*LengthAsUnicode)(ASZString string);
  SPErr (*AsUnicode)(ASZString string, uint16_t* buffer, uint32_t size);
  SPErr (*Release)(ASZString string);
};

// The same strings as UTF-8. Release them with version 1 of the suite.
inline constexpr int32_t kASZStringSuite2Version = 2;
struct ASZStringSuite2 {
  SPErr (*MakeFromUTF8)(const char* text, ASZString* string);
  uint32_t (*LengthAsUTF8)(ASZString string);  // without the NUL
  SPErr (*AsUTF8)(ASZString string, char* buffer, uint32_t size);
};

}  // namespace host_sdk
