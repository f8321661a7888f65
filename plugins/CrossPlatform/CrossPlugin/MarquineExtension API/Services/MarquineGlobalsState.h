// The stored part of the globals, for the two source files that write it.
#pragma once

#include <memory>
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
  VPFInterface* sVPFInterface = nullptr;  // never deleted
  // Created and deleted by the tracking code, which knows the whole type.
  std::shared_ptr<FontActivationTracker> sFontActivationTracker;
  bool noInterfaceForTesting = false;
};

State& GetState();

}  // namespace MarquineGlobals
