// The operations of MarquineGlobals that reach the agent's table and the tracker.
#include "Bridge/VPILoader.h"
#include "Services/MarquineGlobals.h"
#include "Services/MarquineGlobalsState.h"
#include "Tracking/FontActivationTracker.h"

namespace MarquineGlobals {

FontActivationTracker* GetSharedFontActivationTracker() {
  State& state = GetState();
  if (!state.sFontActivationTracker) {
    state.sFontActivationTracker = new FontActivationTracker(GetSharedVPFInterface().Get());
  }
  return state.sFontActivationTracker;
}

// Empty on purpose. Elsewhere it makes the host redraw its front window's state by taking the front from it for a moment.
// The windows of this platform have no such state, and no program here can give or take the front.
void BackgroundForegroundApp() {}

void CleanUpOnShutdown() {
  State& state = GetState();
  SetPluginServicesEnabled(false);
  delete state.sFontActivationTracker;
  state.sFontActivationTracker = nullptr;
  const VPILoader* table = VPILoader::GetSharedInstance();
  if (table->pfGetPluginFacadeInstance && table->pfCleanUpOnShutdown) table->pfCleanUpOnShutdown(GetFacade());
  state.sVPFInterface = nullptr;
  state.sHostApp = platform::String();
  state.sPluginVersion = platform::String();
  state.sPluginBundleIdentifier = platform::String();
  state.sVelorantPluginInterfaceVersion = platform::String();
}

void ResetForTesting() {
  delete GetState().sFontActivationTracker;
  GetState() = State();
  sPluginServicesEnabled = sConnectedToCore = sLoggedIn = sUserHasWorkgroups = false;
  sBulkReplicationRunning = sIncrementalReplicationRunning = false;
  sSuppressingHostAppDialogs = sDisplayedSchemaError = false;
}

}  // namespace MarquineGlobals
