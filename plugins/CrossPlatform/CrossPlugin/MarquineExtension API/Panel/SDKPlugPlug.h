// The host's event service, loaded at run time from the host's bundle.
#pragma once

#include "frameworks/PlugPlug/include/EventFunctions.h"
#include "platform/Bundle.h"

class SDKPlugPlug {
 public:
  static constexpr int kLoadFailure = 31;

  int Load();    // 0 or kLoadFailure; the functions before the first missing one stay set
  int Unload();  // the function pointers stay set
  // False if AddEventListener and DispatchEvent can only fail, until another Load.
  bool IsUsable() const { return mFunctions.pfPlugPlugAddEventListener != nullptr; }
  int LoadExtension(const char* extensionID);
  int UnloadExtension(const char* extensionID);
  csxs::event::EventErrorCode AddEventListener(const char* type, csxs::event::EventCallback callback, void* context);
  csxs::event::EventErrorCode RemoveEventListener(const char* type, csxs::event::EventCallback callback, void* context);
  csxs::event::EventErrorCode DispatchEvent(const csxs::event::Event* event);

 private:
  platform::BundleRef mBundle;
  EventFunctions mFunctions;
};
