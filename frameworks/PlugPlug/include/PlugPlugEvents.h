// The host's event service: how extensions and plug-ins of one host send each other events. Five exported functions and
// the event that they carry.
//
// Main thread only. Nothing blocks and nothing is queued: a dispatch calls the listeners before it returns. All results
// are an EventErrorCode; the service throws nothing itself, but an exception of a listener passes through to the
// dispatcher.
#pragma once

#include <cstdint>

namespace csxs::event {

// An event. The strings are NUL-terminated UTF-8, belong to the sender and are valid during the call; a listener that
// keeps one copies it.
struct Event {
  const char* type;         // its name; must not be empty. Listeners are chosen by it.
  int32_t scope;            // 1 is the application; the service does not look at it
  const char* appID;        // the sender; may be null
  const char* extensionID;  // the extension concerned, which must be loaded; null or empty for none
  const char* data;         // the content, in a form that sender and listeners agree on; may be null
};

enum EventErrorCode : int32_t {
  kEventErrorCode_Success = 0,
  kEventErrorCode_OperationFailed = 1,  // no such listener or extension, or dispatches nested too deep
  kEventErrorCode_InvalidParam = 2,     // a type, callback, event or extension ID is null or empty
};

// `context` is the pointer that was given when the listener was added. A listener may add and remove listeners and
// dispatch.
using EventCallback = void (*)(const Event* event, void* context);

}  // namespace csxs::event

// PlugPlugLoadExtension         Makes an extension known by its ID. Loading it again is a success.
// PlugPlugUnloadExtension       Forgets it. OperationFailed if it is not loaded.
// PlugPlugAddEventListener      Calls `callback` with `context` for each event of this type. Adding the same pair for
//                               the same type again changes nothing. The service does not own the context.
// PlugPlugRemoveEventListener   Removes that listener, which is then not called any more, also not for an event that is
//                               being dispatched. OperationFailed if there is no such listener.
// PlugPlugDispatchEvent         Calls the listeners of the event's type that exist now, in the order of adding. Success
//                               also if there is none; the event is then lost. OperationFailed, and nothing is called,
//                               if the event names an extension that is not loaded or if 64 dispatches are nested
//                               already.
#define PLUG_PLUG_FUNCTIONS(X)                                              \
  X(PlugPlugLoadExtension, int32_t, (const char* extensionID))              \
  X(PlugPlugUnloadExtension, int32_t, (const char* extensionID))            \
  X(PlugPlugAddEventListener, csxs::event::EventErrorCode,                  \
    (const char* type, csxs::event::EventCallback callback, void* context)) \
  X(PlugPlugRemoveEventListener, csxs::event::EventErrorCode,               \
    (const char* type, csxs::event::EventCallback callback, void* context)) \
  X(PlugPlugDispatchEvent, csxs::event::EventErrorCode, (const csxs::event::Event* event))
