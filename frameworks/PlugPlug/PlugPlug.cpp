// The exported functions.
#include "frameworks/PlugPlug/EventService.h"
#include "frameworks/PlugPlug/Exports.h"

using csxs::event::EventCallback;
using csxs::event::EventErrorCode;

int32_t PlugPlugLoadExtension(const char* extensionID) { return EventService::Shared().LoadExtension(extensionID); }

int32_t PlugPlugUnloadExtension(const char* extensionID) { return EventService::Shared().UnloadExtension(extensionID); }

EventErrorCode PlugPlugAddEventListener(const char* type, EventCallback callback, void* context) {
  return EventService::Shared().AddListener(type, callback, context);
}

EventErrorCode PlugPlugRemoveEventListener(const char* type, EventCallback callback, void* context) {
  return EventService::Shared().RemoveListener(type, callback, context);
}

EventErrorCode PlugPlugDispatchEvent(const csxs::event::Event* event) {
  if (!event) return csxs::event::kEventErrorCode_InvalidParam;
  return EventService::Shared().Dispatch(*event);
}
