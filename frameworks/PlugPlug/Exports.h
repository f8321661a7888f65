// Declares every exported function from the one list, so that the compiler checks the type of each definition.
#pragma once

#include "frameworks/PlugPlug/include/PlugPlugEvents.h"

#define DECLARE_EXPORT(name, result, parameters) \
  extern "C" __attribute__((visibility("default"))) result name parameters;
PLUG_PLUG_FUNCTIONS(DECLARE_EXPORT)
#undef DECLARE_EXPORT
