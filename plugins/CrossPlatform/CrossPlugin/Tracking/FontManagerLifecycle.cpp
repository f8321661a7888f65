// Creates and deletes the one manager: statics of FontManagerInterface.
#include "Bridge/CoreAgentInterface.h"
#include "Bridge/FontManagerInterface.h"
#include "Bridge/VPILoader.h"
#include "GScopedLock.h"
#include "Services/DiagnosticLog.h"
#include "Services/MarquineGlobals.h"
#include "Tracking/FontActivationTracker.h"

namespace {
const std::string kMarquinePrimePlugin = "MarquinePrimePlugin";  // the desktop edition
const std::string kHarbinetPlugin = "HarbinetPlugin";            // the server edition
constexpr TModuleErrorCode kNotLoggedIn = 3;
}  // namespace

TModuleErrorCode FontManagerInterface::CompatibleFontManagerIsRunning(const std::string** outBundleName,
                                                                      bool& outRunning) {
  const GScopedLock lock(sm_Mutex);
  outRunning = false;
  if (sm_pFontManager) {
    outRunning = sm_pFontManager->IsRunning();
    return outRunning ? CoreErrorCodes::kSuccess : CoreErrorCodes::kUnknownError;
  }
  std::string path, version;
  int missing = 0;
  TModuleErrorCode code = CoreErrorCodes::kUnknownError;
  if (!VPILoader::GetSharedInstance()->IsLoaded(&path, &version, &missing)) return code;
  if (missing > 0) {
    code = CoreErrorCodes::kVersionMismatch;
    OutputIndentedAndFormattedString(0, "ERROR:  %d function(s) missing from \"%s\"", missing, path.c_str());
  }
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  sm_pFontManager = std::make_unique<CoreAgentInterface>();
  const std::string& bundleName = sm_pFontManager->RunningStandalone() ? kMarquinePrimePlugin : kHarbinetPlugin;
  ui->SetFontManagerBundleName(bundleName);
  if (outBundleName) *outBundleName = &bundleName;
  outRunning = sm_pFontManager->IsRunning();
  if (!outRunning) return code;
  if (!sm_pFontManager->IsLoggedIn()) return kNotLoggedIn;
  OutputIndentedAndFormattedString(0, "VPI at location '%s' is version '%s' and plugin version is '%s'", path.c_str(),
                                   version.c_str(), MarquineGlobals::GetPluginVersion().CString());
  return CoreErrorCodes::kSuccess;
}

void FontManagerInterface::OnHostAppShuttingDown(bool showProgress) {
  const GScopedLock lock(sm_Mutex);
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  FontActivationTracker* tracker = MarquineGlobals::GetSharedFontActivationTracker();
  if (ui && ui->IsValid() && tracker) {
    const bool deactivate = MarquineGlobals::ArePluginServicesEnabled() && ui->GetCloseFontsOnHostAppQuit() &&
                            ui->GetEnabledAutoActivationPref() && sm_pFontManager && sm_pFontManager->IsLoggedIn();
    tracker->CloseAllFonts(deactivate, showProgress);
  }
  if (!sm_pFontManager) {
    OutputIndentedAndFormattedString(
        0, "*** UH-OH, sm_pFontManager is NULL in FontManagerInterface::OnHostAppShuttingDown");
    return;
  }
  sm_pFontManager->DisconnectFromFontManager();
  sm_pFontManager.reset();
}
