#include "Panel/SDKPlugPlug.h"

int SDKPlugPlug::Load() {
  mBundle = platform::Bundle::Create(EventFunctions::FrameworkIn(platform::Bundle::Main()->PrivateFrameworksFolder()));
  return mBundle && mFunctions.ResolveFrom(*mBundle) ? 0 : kLoadFailure;
}

int SDKPlugPlug::Unload() {
  mBundle.reset();
  return 0;
}

int SDKPlugPlug::LoadExtension(const char* extensionID) {
  return mFunctions.pfPlugPlugLoadExtension ? mFunctions.pfPlugPlugLoadExtension(extensionID) : 0;
}

int SDKPlugPlug::UnloadExtension(const char* extensionID) {
  return mFunctions.pfPlugPlugUnloadExtension ? mFunctions.pfPlugPlugUnloadExtension(extensionID) : 0;
}

csxs::event::EventErrorCode SDKPlugPlug::AddEventListener(const char* type, csxs::event::EventCallback callback,
                                                          void* context) {
  if (!mFunctions.pfPlugPlugAddEventListener) return csxs::event::kEventErrorCode_OperationFailed;
  return mFunctions.pfPlugPlugAddEventListener(type, callback, context);
}

csxs::event::EventErrorCode SDKPlugPlug::RemoveEventListener(const char* type, csxs::event::EventCallback callback,
                                                             void* context) {
  if (!mFunctions.pfPlugPlugRemoveEventListener) return csxs::event::kEventErrorCode_OperationFailed;
  return mFunctions.pfPlugPlugRemoveEventListener(type, callback, context);
}

csxs::event::EventErrorCode SDKPlugPlug::DispatchEvent(const csxs::event::Event* event) {
  // Tests the other pointer: a service that was found has both.
  if (!mFunctions.pfPlugPlugRemoveEventListener) return csxs::event::kEventErrorCode_OperationFailed;
  return mFunctions.pfPlugPlugDispatchEvent(event);
}
