// The stored part of the globals, for the two source files that write it.
#pragma once

#include <string>

#include "Services/VPFInterface.h"
#include "platform/Value.h"

class FontActivationTracker;

namespace MarquineGlobals {

struct State {
  platform::String sHostApp;
  platform::String sPluginVersion;
  platform::String sPluginBundleIdentifier;
  platform::String sVelorantPluginInterfaceVersion;
  platform::String sHostAppVersionPrefix;
  platform::String sHostAppMinimumVersion;
  std::string pPluginBinaryPath;
  VPFInterface* sVPFInterface = nullptr;                    // never deleted
  FontActivationTracker* sFontActivationTracker = nullptr;  // owned; created and deleted by the tracking code
  bool noInterfaceForTesting = false;
};

State& GetState();

}  // namespace MarquineGlobals
