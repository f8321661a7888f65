// Functions of the table that the agent does not serve: each says so.
#include "frameworks/VelorantPluginInterface/Exports.h"

using PluginInterface::FacadeHandle;
using PluginInterface::kNotImplementedCode;
using PluginInterface::TModuleErrorCode;
using PluginInterface::ValueRef;

TModuleErrorCode EnableDesignActivation(FacadeHandle) { return kNotImplementedCode; }
TModuleErrorCode TrackFontPanelClick(FacadeHandle, uint32_t, const char*) { return kNotImplementedCode; }

// There is no library of web fonts in this edition, hence no access to one.
int32_t CanAccessGoogleFonts(FacadeHandle) { return 0; }
TModuleErrorCode GetGoogleFonts(FacadeHandle, ValueRef) { return kNotImplementedCode; }
TModuleErrorCode SetGoogleWebFontsEnabled(FacadeHandle, int32_t) { return kNotImplementedCode; }

TModuleErrorCode GetRenderedPNGsDirectory(FacadeHandle, char* buffer, uint32_t size) {
  if (buffer && size > 0) buffer[0] = '\0';
  return kNotImplementedCode;
}
TModuleErrorCode RenderFontNamePreviewPNGs(FacadeHandle, uint32_t, const uint32_t*, uint32_t, const uint32_t*, uint32_t,
                                           uint32_t, uint32_t, uint32_t, uint32_t) {
  return kNotImplementedCode;
}

TModuleErrorCode RenameSmartList(FacadeHandle, uint32_t, const char*) { return kNotImplementedCode; }
TModuleErrorCode DeleteSmartList(FacadeHandle, uint32_t) { return kNotImplementedCode; }
TModuleErrorCode GetSmartList(FacadeHandle, uint32_t, ValueRef*) { return kNotImplementedCode; }
TModuleErrorCode GetPanelSmartListTree(FacadeHandle, uint32_t, ValueRef*) { return kNotImplementedCode; }
TModuleErrorCode QueryForSmartListFonts(FacadeHandle, uint32_t, const uint32_t*, uint32_t, const uint32_t*, uint32_t,
                                        const uint32_t*, ValueRef) {
  return kNotImplementedCode;
}
TModuleErrorCode GetAllSmartLists(FacadeHandle, ValueRef) { return kNotImplementedCode; }
TModuleErrorCode CreateSmartList(FacadeHandle, const char*, uint32_t, const uint32_t*, uint32_t, const uint32_t*,
                                 uint32_t, const uint32_t*, uint32_t*) {
  return kNotImplementedCode;
}
TModuleErrorCode SetSmartListQuery(FacadeHandle, uint32_t, uint32_t, const uint32_t*, uint32_t, const uint32_t*,
                                   uint32_t, const uint32_t*) {
  return kNotImplementedCode;
}
TModuleErrorCode GetSmartListFonts(FacadeHandle, uint32_t, ValueRef) { return kNotImplementedCode; }
