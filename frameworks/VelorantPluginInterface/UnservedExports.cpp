// Functions of the table that the agent does not serve. They return kNotImplemented.
#include "frameworks/VelorantPluginInterface/Exports.h"

using PluginInterface::FacadeHandle;
using PluginInterface::kNotImplemented;
using PluginInterface::TModuleErrorCode;
using PluginInterface::ValueRef;

// This edition has no library of web fonts.
int32_t CanAccessGoogleFonts(FacadeHandle) { return 0; }
TModuleErrorCode GetGoogleFonts(FacadeHandle, ValueRef) { return kNotImplemented; }
TModuleErrorCode SetGoogleWebFontsEnabled(FacadeHandle, int32_t) { return kNotImplemented; }
