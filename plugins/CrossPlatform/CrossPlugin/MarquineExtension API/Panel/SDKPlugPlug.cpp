#include "Panel/SDKPlugPlug.h"

#include "platform/Files.h"

int SDKPlugPlug::Load() {
  const std::string folder = platform::Bundle::Main()->PrivateFrameworksFolder();
  const std::string owl = folder + "/PlugPlugOwl.framework";
  mBundle = platform::Bundle::Create(platform::FolderExists(owl) ? owl : folder + "/PlugPlug.framework");
  if (!mBundle) return kLoadFailure;
#define RESOLVE(name, result, parameters)                                             \
  pf##name = reinterpret_cast<result(*) parameters>(mBundle->FunctionForName(#name)); \
  if (!pf##name) return kLoadFailure;
  PLUG_PLUG_FUNCTIONS(RESOLVE)
#undef RESOLVE
  return 0;
}

int SDKPlugPlug::Unload() {
  mBundle.reset();
  return 0;
}

int SDKPlugPlug::LoadExtension(const char* extensionID) {
  return pfPlugPlugLoadExtension ? pfPlugPlugLoadExtension(extensionID) : 0;
}

int SDKPlugPlug::UnloadExtension(const char* extensionID) {
  return pfPlugPlugUnloadExtension ? pfPlugPlugUnloadExtension(extensionID) : 0;
}

csxs::event::EventErrorCode SDKPlugPlug::AddEventListener(const char* type, csxs::event::EventCallback callback,
                                                          void* context) {
  if (!pfPlugPlugAddEventListener) return csxs::event::kEventErrorCode_OperationFailed;
  return pfPlugPlugAddEventListener(type, callback, context);
}

csxs::event::EventErrorCode SDKPlugPlug::RemoveEventListener(const char* type, csxs::event::EventCallback callback,
                                                             void* context) {
  if (!pfPlugPlugRemoveEventListener) return csxs::event::kEventErrorCode_OperationFailed;
  return pfPlugPlugRemoveEventListener(type, callback, context);
}

csxs::event::EventErrorCode SDKPlugPlug::DispatchEvent(const csxs::event::Event* event) {
  // Tests the other pointer: a service that was found has both.
  if (!pfPlugPlugRemoveEventListener) return csxs::event::kEventErrorCode_OperationFailed;
  return pfPlugPlugDispatchEvent(event);
}
