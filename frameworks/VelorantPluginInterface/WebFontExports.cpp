// Web fonts: whether they are there, and whether they are wanted. SmartListExports.cpp lists them.
#include "frameworks/VelorantPluginInterface/Calls.h"
#include "frameworks/VelorantPluginInterface/Exports.h"

using namespace plugin_interface;
using PluginInterface::FacadeHandle;
using PluginInterface::TModuleErrorCode;

TModuleErrorCode GetIsGoogleWebFontsEnabled(FacadeHandle h, int32_t* out) {
  return ReadValue<calls::GetIsGoogleWebFontsEnabled>(h, {}, out);
}

TModuleErrorCode SetGoogleWebFontsEnabled(FacadeHandle h, int32_t enabled) {
  return Guarded([&] { return CallAgent<calls::SetGoogleWebFontsEnabled>(h, {enabled != 0}).code; });
}

int32_t CanAccessGoogleFonts(FacadeHandle h) {
  int32_t can = 0;
  return ReadValue<calls::CanAccessGoogleFonts>(h, {}, &can) == kSuccess ? can : 0;
}
