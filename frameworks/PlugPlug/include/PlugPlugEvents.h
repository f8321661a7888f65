// The host's extension event service: five exported functions and the event that they carry.
// Main thread only: listeners are called in DispatchEvent's caller, in the order of adding. A listener may add, remove and
// dispatch. A null or empty name, callback or event is kEventErrorCode_InvalidParam; an unknown listener or extension is
// kEventErrorCode_OperationFailed. An event to which nobody listens is sent all the same, and lost.
#pragma once

#include <cstdint>

namespace csxs::event {

// Borrowed strings, valid for the length of the call; extensionID may be null.
struct Event {
  const char* type;
  int32_t scope;  // 1 is the application
  const char* appID;
  const char* extensionID;
  const char* data;
};

enum EventErrorCode : int32_t {
  kEventErrorCode_Success = 0,
  kEventErrorCode_OperationFailed = 1,
  kEventErrorCode_InvalidParam = 2,
};

using EventCallback = void (*)(const Event* event, void* context);

}  // namespace csxs::event

#define PLUG_PLUG_FUNCTIONS(X)                                              \
  X(PlugPlugLoadExtension, int32_t, (const char* extensionID))              \
  X(PlugPlugUnloadExtension, int32_t, (const char* extensionID))            \
  X(PlugPlugAddEventListener, csxs::event::EventErrorCode,                  \
    (const char* type, csxs::event::EventCallback callback, void* context)) \
  X(PlugPlugRemoveEventListener, csxs::event::EventErrorCode,               \
    (const char* type, csxs::event::EventCallback callback, void* context)) \
  X(PlugPlugDispatchEvent, csxs::event::EventErrorCode, (const csxs::event::Event* event))
