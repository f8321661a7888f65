// The operations of MarquineGlobals that use the agent's table or the tracker.
#include "Bridge/VPILoader.h"
#include "Services/MarquineGlobals.h"
#include "Services/MarquineGlobalsState.h"
#include "Tracking/FontActivationTracker.h"

namespace MarquineGlobals {

FontActivationTracker* GetSharedFontActivationTracker() {
  State& state = GetState();
  if (!state.sFontActivationTracker) {
    state.sFontActivationTracker = std::make_shared<FontActivationTracker>(GetSharedVPFInterface().Get());
  }
  return state.sFontActivationTracker.get();
}

// Empty on purpose. On other platforms it takes the front from the host for a moment, so that the host redraws its
// front window. Windows here have no such state.
void BackgroundForegroundApp() {}

void CleanUpOnShutdown() {
  State& state = GetState();
  SetPluginServicesEnabled(false);
  state.sFontActivationTracker.reset();
  const VPILoader* table = VPILoader::GetSharedInstance();
  if (table->pfGetPluginFacadeInstance && table->pfCleanUpOnShutdown) table->pfCleanUpOnShutdown(GetFacade());
  state.sVPFInterface = nullptr;
  state.sHostApp = platform::String();
  state.sPluginVersion = platform::String();
  state.sPluginBundleIdentifier = platform::String();
  state.sVelorantPluginInterfaceVersion = platform::String();
}

void ResetForTesting() {
  GetState() = State();
  sPluginServicesEnabled = sConnectedToCore = sLoggedIn = sUserHasWorkgroups = false;
  sBulkReplicationRunning = sIncrementalReplicationRunning = false;
  sSuppressingHostAppDialogs = sDisplayedSchemaError = false;
}

}  // namespace MarquineGlobals
