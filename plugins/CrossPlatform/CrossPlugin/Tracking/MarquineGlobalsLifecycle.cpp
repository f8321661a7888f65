// The operations of MarquineGlobals that reach the agent's table and the tracker.
#include <unistd.h>

#include "Bridge/AgentLaunch.h"
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

// The programs of this desktop have no front process to change, so there is nothing to do for a host without one.
void BackgroundForegroundApp() {
  int dock = 0;
  if (GetProcessID("com.apple.dock", dock) != CoreErrorCodes::kSuccess || dock == 0) return;
  if (SetFrontApplication(dock) == CoreErrorCodes::kSuccess) SetFrontApplication(getpid());
}

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
