// Finds the event service in a host's folder at run time and resolves its functions, for the plug-in and the host.
#pragma once

#include <string>

#include "frameworks/PlugPlug/include/PlugPlugEvents.h"
#include "platform/Bundle.h"
#include "platform/Files.h"

// The functions by name. Null until they are resolved.
struct EventFunctions {
#define EVENT_FUNCTION(name, result, parameters) result(*pf##name) parameters = nullptr;
  PLUG_PLUG_FUNCTIONS(EVENT_FUNCTION)
#undef EVENT_FUNCTION

  // Loads the bundle. Returns false at the first function that is missing; those before it stay set.
  bool ResolveFrom(platform::Bundle& bundle) {
#define RESOLVE(name, result, parameters)                                           \
  pf##name = reinterpret_cast<result(*) parameters>(bundle.FunctionForName(#name)); \
  if (!pf##name) return false;
    PLUG_PLUG_FUNCTIONS(RESOLVE)
#undef RESOLVE
    return true;
  }

  // Returns the path of the service in a folder of frameworks. A host may have the service under a newer name, which
  // comes first; the path of the other one need not exist.
  static std::string FrameworkIn(const std::string& folder) {
    const std::string newer = folder + "/PlugPlugOwl.framework";
    return platform::FileExists(newer) ? newer : folder + "/PlugPlug.framework";
  }
};
