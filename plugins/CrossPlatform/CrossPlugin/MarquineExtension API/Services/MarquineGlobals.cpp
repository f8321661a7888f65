#include "Services/MarquineGlobals.h"

#include <algorithm>
#include <cassert>
#include <memory>
#include <vector>

#include "Services/DiagnosticLog.h"
#include "Services/MarquineGlobalsState.h"
#include "platform/Bundle.h"

using platform::String;

namespace MarquineGlobals {

State& GetState() {
  static State sState;
  return sState;
}

namespace {

bool HostAppStartsWith(std::string_view prefix) { return GetState().sHostApp.View().starts_with(prefix); }

constexpr struct {
  const char* bundleIdentifier;
  const char* hostApp;
} kHostApps[] = {
    {"com.velorant.AutoActivationPlugin.AI19", "IllustratorCC2015"},
    {"com.velorant.AutoActivationPlugin.AI20", "IllustratorCC2016"},
    {"com.velorant.AutoActivationPlugin.AI21", "IllustratorCC2017"},
    {"com.velorant.AutoActivationPlugin.AI22", "IllustratorCC2018"},
    {"com.velorant.AutoActivationPlugin.AI23", "IllustratorCC2019"},
    {"com.velorant.AutoActivationPlugin.AI24", "IllustratorCC2020"},
    {"com.velorant.AutoActivationPlugin.AE137", "AfterEffectsCC2015"},
    {"com.velorant.AutoActivationPlugin.AE138", "AfterEffectsCC2016"},
    {"com.velorant.AutoActivationPlugin.AE140", "AfterEffectsCC2017"},
    {"com.velorant.AutoActivationPlugin.AE150", "AfterEffectsCC2018"},
    {"com.velorant.AutoActivationPlugin.AE160", "AfterEffectsCC2019"},
    {"com.velorant.AutoActivationPlugin.AE170", "AfterEffectsCC2020"},
};

}  // namespace

bool ArePluginServicesEnabled() { return sPluginServicesEnabled && sLoggedIn && sUserHasWorkgroups; }

void SetPluginServicesEnabled(bool enabled) {
  if (sPluginServicesEnabled != enabled) {
    OutputIndentedAndFormattedString(0, "%s() changing enabled state to %d", __func__, enabled);
  }
  sPluginServicesEnabled = enabled;
}

void SetConnectedToCore(bool connected) {
  if (sConnectedToCore != connected) {
    OutputIndentedAndFormattedString(0, "%s() changing connected state to %d", __func__, connected);
  }
  sConnectedToCore = connected;
}

void SetLoggedIn(bool loggedIn) { sLoggedIn = loggedIn; }
void SetUserHasWorkgroups(bool hasWorkgroups) { sUserHasWorkgroups = hasWorkgroups; }
void SetBulkReplicationRunning(bool running) { sBulkReplicationRunning = running; }
void SetIncrementalReplicationRunning(bool running) { sIncrementalReplicationRunning = running; }
void SetDisplayedSchemaError(bool displayed) { sDisplayedSchemaError = displayed; }
bool GetDisplayedSchemaError() { return sDisplayedSchemaError; }
void SetSuppressingHostAppDialogs(bool suppressing) { sSuppressingHostAppDialogs = suppressing; }
bool GetSuppressingHostAppDialogs() { return sSuppressingHostAppDialogs; }

void IdentifyPluginHostApp(const String& hostApp) { GetState().sHostApp = hostApp; }
void IdentifyPluginHostAppVersionPrefix(const String& prefix) { GetState().sHostAppVersionPrefix = prefix; }
void IdentifyPluginHostAppMinimumVersion(const String& version) { GetState().sHostAppMinimumVersion = version; }
void IdentifyPluginVersion(const String& version) { GetState().sPluginVersion = version; }
void IdentifyPluginBundleID(const std::string& identifier) {
  GetState().sPluginBundleIdentifier = String::FromUTF8(identifier);
}
void IdentifyPluginInterfaceVersion(const String& version) { GetState().sVelorantPluginInterfaceVersion = version; }
void IdentifyPluginBinaryPath(const std::string& path) { GetState().pPluginBinaryPath = path; }

String GetPluginHostApp() { return GetState().sHostApp; }
std::string GetPluginHostAppMinimumVersion() { return GetState().sHostAppMinimumVersion.Text(); }
String GetPluginVersion() { return GetState().sPluginVersion; }
String GetPluginInterfaceVersion() { return GetState().sVelorantPluginInterfaceVersion; }

std::string GetPluginBundleIdentifier() {
  const String& sPluginBundleIdentifier = GetState().sPluginBundleIdentifier;
  assert(static_cast<bool>(sPluginBundleIdentifier) && "sPluginBundleIdentifier != NULL");
  return sPluginBundleIdentifier.Text();
}

std::string GetPluginBinaryPath() {
  const State& state = GetState();
  if (!state.pPluginBinaryPath.empty()) return state.pPluginBinaryPath;
  const platform::BundleRef bundle = platform::Bundle::WithIdentifier(state.sPluginBundleIdentifier.View());
  return bundle ? bundle->ExecutablePath() : "";
}

std::string GetPluginFileName() {
  const std::string path = GetPluginBinaryPath();
  const size_t end = std::min(path.rfind('.'), path.size());
  const size_t separator = path.substr(0, end).find_last_of(":\\/");
  return separator == std::string::npos ? path : path.substr(separator + 1, end - separator - 1);
}

bool HostAppIsInCopy() { return HostAppStartsWith("InCopy"); }
bool HostAppIsInDesign() { return HostAppStartsWith("InDesign"); }
bool HostAppIsPhotoshop() { return HostAppStartsWith("Photoshop"); }
bool HostAppIsIllustrator() { return HostAppStartsWith("Illustrator"); }
bool HostAppIsAfterEffects() {
  return GetState().sHostApp.View().find("AECC") != std::string_view::npos || HostAppStartsWith("After");
}
bool HostAppIsQuark() { return HostAppStartsWith("Quark"); }

std::string GetHostAppCategory() {
  if (HostAppIsInCopy() || HostAppIsInDesign()) return "id";
  if (HostAppIsPhotoshop()) return "ps";
  if (HostAppIsIllustrator()) return "ai";
  if (HostAppIsAfterEffects()) return "ae";
  assert(false && "the host application is not known");
  return "";
}

// Ignores the argument: the start of the agent depends on the host that was identified.
HostType GetHostTypeFromHostAppID(const String&) {
  if (HostAppIsInDesign()) return HostType::kInDesign;
  if (HostAppIsInCopy()) return HostType::kInCopy;
  if (HostAppIsIllustrator()) return HostType::kIllustrator;
  if (HostAppIsPhotoshop()) return HostType::kPhotoshop;
  return HostAppStartsWith("After") ? HostType::kAfterEffects : HostType::kUnknown;
}

HostType GetHostTypeFromHostAppID(const std::string& hostAppID) {
  return GetHostTypeFromHostAppID(String::FromUTF8(hostAppID));
}

std::string MapBundleIDtoHostApp(const std::string& bundleIdentifier) {
  for (const auto& row : kHostApps) {
    if (bundleIdentifier == row.bundleIdentifier) return row.hostApp;
  }
  OutputIndentedAndFormattedString(0, "Unknown bundleID in %s(%s)", __func__, bundleIdentifier.c_str());
  return "";
}

VPFInterfaceRef GetSharedVPFInterface() {
  State& state = GetState();
  if (state.noInterfaceForTesting) return nullptr;
  if (!state.sVPFInterface) {
    if (!state.sHostApp) OutputIndentedAndFormattedString(0, "ERROR: sHostApp is NULL in %s()", __func__);
    // Never deleted, not even by a shutdown: windows of the framework may still be open.
    static auto& sKept = *new std::vector<std::unique_ptr<VPFInterface>>;
    sKept.push_back(std::make_unique<VPFInterface>(state.sHostApp, state.sPluginVersion,
                                                   state.sPluginBundleIdentifier.Text(),
                                                   state.sVelorantPluginInterfaceVersion));
    state.sVPFInterface = sKept.back().get();
  }
  return state.sVPFInterface;
}

void RefreshActiveFontList(void (*function)(void*), void* context) {
  if (!function) return;
  function(context);
  function(context);
}

void SetSharedVPFInterfaceForTesting(VPFInterface* interface) {
  GetState().noInterfaceForTesting = false;
  GetState().sVPFInterface = interface;
}

void SetNoVPFInterfaceForTesting() { GetState().noInterfaceForTesting = true; }

}  // namespace MarquineGlobals
