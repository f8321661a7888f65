// Functions of the table that the agent does not serve. They return kNotImplemented.
#include "frameworks/VelorantPluginInterface/Exports.h"

using PluginInterface::FacadeHandle;
using PluginInterface::kNotImplemented;
using PluginInterface::TModuleErrorCode;
using PluginInterface::ValueRef;

TModuleErrorCode EnableDesignActivation(FacadeHandle) { return kNotImplemented; }
TModuleErrorCode TrackFontPanelClick(FacadeHandle, uint32_t, const char*) { return kNotImplemented; }

// This edition has no library of web fonts.
int32_t CanAccessGoogleFonts(FacadeHandle) { return 0; }
TModuleErrorCode GetGoogleFonts(FacadeHandle, ValueRef) { return kNotImplemented; }
TModuleErrorCode SetGoogleWebFontsEnabled(FacadeHandle, int32_t) { return kNotImplemented; }

TModuleErrorCode RenameSmartList(FacadeHandle, uint32_t, const char*) { return kNotImplemented; }
TModuleErrorCode DeleteSmartList(FacadeHandle, uint32_t) { return kNotImplemented; }
TModuleErrorCode GetSmartList(FacadeHandle, uint32_t, ValueRef*) { return kNotImplemented; }
TModuleErrorCode GetPanelSmartListTree(FacadeHandle, uint32_t, ValueRef*) { return kNotImplemented; }
TModuleErrorCode QueryForSmartListFonts(FacadeHandle, uint32_t, const uint32_t*, uint32_t, const uint32_t*, uint32_t,
                                        const uint32_t*, ValueRef) {
  return kNotImplemented;
}
TModuleErrorCode GetAllSmartLists(FacadeHandle, ValueRef) { return kNotImplemented; }
TModuleErrorCode CreateSmartList(FacadeHandle, const char*, uint32_t, const uint32_t*, uint32_t, const uint32_t*,
                                 uint32_t, const uint32_t*, uint32_t*) {
  return kNotImplemented;
}
TModuleErrorCode SetSmartListQuery(FacadeHandle, uint32_t, uint32_t, const uint32_t*, uint32_t, const uint32_t*,
                                   uint32_t, const uint32_t*) {
  return kNotImplemented;
}
TModuleErrorCode GetSmartListFonts(FacadeHandle, uint32_t, ValueRef) { return kNotImplemented; }
