// Finds the user-interface framework, which is beside the agent, and shows the boxes whose texts depend on the edition.
#include "Bridge/AgentLaunch.h"
#include "Bridge/FontManagerInterface.h"
#include "Services/DiagnosticLog.h"
#include "Services/MarquineGlobals.h"
#include "platform/Folders.h"

namespace {

constexpr const char* kFrameworkName = "VelorantPlugins.framework";
constexpr const char* kInterfaceVersion = "1.0";

FontManagerInterface* Manager() { return FontManagerInterface::sm_pFontManager.get(); }

// Finds the folder of the running agent and starts the agent if necessary.
bool FindAgentFolder(std::string& folder) {
  if (GetPathToRunningProcessExe("Nexcore", folder) == CoreErrorCodes::kSuccess) return true;
  if (FindAndLaunchNexcore(nullptr) != 0) return false;
  // Wait for it: the framework is searched only once, and without it the plug-in does nothing until the host restarts.
  return AwaitPathToRunningProcessExe("Nexcore", folder) == CoreErrorCodes::kSuccess;
}

}  // namespace

platform::BundleRef VPFInterface::FindFramework(const std::string& pluginBundleIdentifier) {
  if (platform::BundleRef bundle = LoadPrivateFramework(pluginBundleIdentifier, kFrameworkName)) return bundle;
  std::string folder;
  if (FindAgentFolder(folder)) {
    const std::string path = folder + "PluginFiles/" + kFrameworkName;
    platform::BundleRef bundle = platform::Bundle::Create(path);
    OutputIndentedAndFormattedString(0, "CFBundleCreate() returned 0x%08x on attempt to load plug-in UI from '%s'",
                                     LowBits(bundle.get()), path.c_str());
    if (bundle) return bundle;
  } else {
    mStatus = kNotFound;
  }
  platform::BundleRef bundle = platform::Bundle::Create(platform::LocalFrameworksFolder() + "/" + kFrameworkName);
  if (bundle) mTable->isShared = true;
  return bundle;
}

void VPFInterface::InitializeFramework(const std::string& pluginBundleIdentifier) {
  const TracedCall traced("VPFInterface::InitializeFramework");
  if (mInitialized) return;
  mStatus = kLoading;
  mTable = std::make_unique<VPFFunctionTable>();
  const platform::BundleRef bundle = FindFramework(pluginBundleIdentifier);
  if (!bundle) {
    mStatus = kNotFound;
    DestroyFramework();
    return;
  }
  mStatus = kLoaded;
  mTable->bundle = bundle;
  mInitialized = StartFramework();
  if (!mInitialized) DestroyFramework();
}

bool VPFInterface::StartFramework() {
#define RESOLVE(name, result, parameters) \
  mTable->pf##name = reinterpret_cast<result(*) parameters>(mTable->bundle->FunctionForName(#name));
  UI_FRAMEWORK_FUNCTIONS(RESOLVE)
#undef RESOLVE
  if (!mTable->pfVPFIsVersionCompatible || !mTable->pfVPFIsVersionCompatible(kInterfaceVersion)) {
    mStatus = kVersionNotCompatible;
    return false;
  }
  mHostDetails.SetStringForKey("FrameworkURL", mTable->bundle->URL());
  if (!mTable->pfVPFInitializeFramework || mTable->pfVPFInitializeFramework(mHostDetails.GetDictionary().Ref()) != 0) {
    mStatus = kInitializationFailed;
    return false;
  }
  return true;
}

// Without a manager the edition is unknown, and these show nothing.

bool VPFInterface::ShowCoreAgentMissingMessageBox() {
  if (!Manager()) return false;
  const bool standalone = Manager()->RunningStandalone();
  return ShowMessageBox(standalone ? "MPCoreAgentMissingHeader" : "HBCoreAgentMissingHeader",
                        standalone ? "MPCoreAgentMissingMessage" : "HBCoreAgentMissingMessage", 2) == 1;
}

void VPFInterface::ShowNoWorkgroupsMessageBox() {
  if (!Manager()) return;
  const bool standalone = Manager()->RunningStandalone();
  ShowMessageBox(standalone ? "NoLibrariesHeader" : "NoWorkgroupsHeader",
                 standalone ? "NoLibrariesMessage" : "NoWorkgroupsMessage", 0);
}

void VPFInterface::ShowCoreAgentOutOfSyncMessageBox() {
  if (!Manager()) return;
  const bool standalone = Manager()->RunningStandalone();
  ShowMessageBox(standalone ? "MPCoreAgentOutOfSyncHeader" : "HBCoreAgentOutOfSyncHeader",
                 standalone ? "MPCoreAgentOutOfSyncMessage" : "HBCoreAgentOutOfSyncMessage", 0);
}

void VPFInterface::ShowVPFNotFoundMessageBox() {
  constexpr const char* kKey =
      "The Velorant plug-in could not locate a running copy of the Nexcore application. "
      "Auto-activation plug-in functionality will be disabled.";
  const platform::BundleRef plugin = GetBundleWithIdentifierReliably(MarquineGlobals::GetPluginBundleIdentifier());
  ShowMessage(plugin ? plugin->LocalizedString(kKey, "NonLocalized") : kKey);
}
