// Startup and shutdown of CommonFunctionality.
#include "Bridge/AgentLaunch.h"
#include "Bridge/FontManagerInterface.h"
#include "Bridge/VPILoader.h"
#include "GScopedLock.h"
#include "Readers/CommonFunctionality.h"
#include "Readers/XMPFontMetadata.h"
#include "Services/DiagnosticLog.h"
#include "Services/MarquineGlobals.h"
#include "frameworks/VelorantPlugins/include/PreferenceKeys.h"

using platform::String;

namespace {

constexpr TModuleErrorCode kNoInterface = 2;
constexpr TModuleErrorCode kNotLoggedIn = 3;
constexpr TModuleErrorCode kNoWorkgroups = 4;

GMutex sMutex;  // locked for the whole of Startup and Shutdown
int numberOfTimesStartupMethodHasBeenCalled = 0;
int numberOfTimesShutdownMethodHasBeenCalled = 0;

void DisableServices() {
  MarquineGlobals::SetPluginServicesEnabled(false);
  MarquineGlobals::SetConnectedToCore(false);
}

void StartLog(const VPFInterfaceRef& ui) {
  InitLogging((MarquineGlobals::GetPluginHostApp().Text() + ".log").c_str());
  if (ui->GetEnabledLoggingPref()) StartLogging();
}

bool IsFailed(const VPFInterfaceRef& ui) {
  const VPFInterface::EUIStatus status = ui->GetUIStatus();
  return status == VPFInterface::kNotFound || status == VPFInterface::kVersionNotCompatible ||
         status == VPFInterface::kNoURL || !ui->IsValid();
}

// Check the login and the workgroup only if the plug-in could work at all.
bool CanCheck(const VPFInterfaceRef& ui) {
  return MarquineGlobals::ArePluginServicesEnabled() && FontManagerInterface::sm_pFontManager && ui && ui->IsValid() &&
         ui->GetEnabledAutoActivationPref();
}

TModuleErrorCode CheckLogin(const VPFInterfaceRef& ui, bool allowDialogs, TModuleErrorCode result) {
  if (!CanCheck(ui)) return result;
  if (FontManagerInterface::sm_pFontManager->IsLoggedIn()) {
    OutputIndentedAndFormattedString(0, "login check at startup:  Logged in");
    return result;
  }
  OutputIndentedAndFormattedString(0, "login check at startup:  NOT logged in...");
  OutputIndentedAndFormattedString(0, "Disabling plugin functionality");
  MarquineGlobals::SetLoggedIn(false);
  if (allowDialogs) ui->ShowNotLoggedInMessageBox(false);
  return kNotLoggedIn;
}

TModuleErrorCode CheckWorkgroups(const VPFInterfaceRef& ui, bool allowDialogs, TModuleErrorCode result) {
  if (!CanCheck(ui)) return result;
  FontManagerInterface& manager = *FontManagerInterface::sm_pFontManager;
  if (!manager.IsLoggedIn() || manager.RunningStandalone()) return result;
  OutputIndentedAndFormattedString(0, "checking for workgroups at startup");
  const bool has = manager.CheckForWorkgroups();
  MarquineGlobals::SetUserHasWorkgroups(has);
  if (has) return result;
  OutputIndentedAndFormattedString(0, "Disabling plugin functionality");
  if (allowDialogs) ui->ShowNoWorkgroupsMessageBox();
  return kNoWorkgroups;
}

}  // namespace

void CommonFunctionality::ResetForTesting() {
  numberOfTimesStartupMethodHasBeenCalled = 0;
  numberOfTimesShutdownMethodHasBeenCalled = 0;
}

TModuleErrorCode CommonFunctionality::Startup(bool allowDialogs) {
  TracedCall traced("CommonFunctionality::Startup", "Entering CommonFunctionality::Startup(%d)", allowDialogs);
  const GScopedLock lock(sMutex);
  const bool isFirstCall = numberOfTimesStartupMethodHasBeenCalled++ == 0;
  if (!isFirstCall) {
    traced.End("Early return from %s() because it has been called %d times", __func__,
               numberOfTimesStartupMethodHasBeenCalled);
    return CoreErrorCodes::kUnknownError;
  }
  if (const int xmp = InitializeGlyphsureXMP()) {
    traced.End("Bailing out of %s because InitializeGlyphsureXMP() returned %d", __func__, xmp);
    return static_cast<TModuleErrorCode>(xmp);
  }
  // Assume success; the following steps only ever reset these.
  MarquineGlobals::SetLoggedIn(true);
  MarquineGlobals::SetPluginServicesEnabled(true);
  MarquineGlobals::SetConnectedToCore(true);
  MarquineGlobals::SetUserHasWorkgroups(true);
  bool running = false;
  const std::string* bundleName = nullptr;
  TModuleErrorCode result = FontManagerInterface::CompatibleFontManagerIsRunning(&bundleName, running);
  if (!running) DisableServices();
  const bool isOldVersionBoxDue = !running && allowDialogs;
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (!ui) {
    DisableServices();
    result = kNoInterface;
  } else {
    StartLog(ui);
    if (isOldVersionBoxDue) ui->ShowMarquineOldVersionMessageBox();
    if (IsFailed(ui)) {
      if (allowDialogs) VPFInterface::ShowVPFNotFoundMessageBox();
      DisableServices();
    }
  }
  if (MarquineGlobals::ArePluginServicesEnabled() && FontManagerInterface::sm_pFontManager) {
    FontManagerInterface::sm_pFontManager->SetFontAutoActivationStatus(false);
  }
  result = CheckLogin(ui, allowDialogs, result);
  result = CheckWorkgroups(ui, allowDialogs, result);
  FontManagerInterface::CheckSelectWorkgroup();
  traced.End("%s() returning %d", __func__, static_cast<int>(result));
  return result;
}

TModuleErrorCode CommonFunctionality::Shutdown() {
  const TracedCall traced("CommonFunctionality::Shutdown");
  const GScopedLock lock(sMutex);
  if (numberOfTimesShutdownMethodHasBeenCalled++ > 0) return CoreErrorCodes::kUnknownError;
  FontManagerInterface::OnHostAppShuttingDown(false);
  MarquineGlobals::CleanUpOnShutdown();
  TerminateGlyphsureXMP();
  StopLogging();
  return CoreErrorCodes::kSuccess;
}

void CommonFunctionality::InitializeCommonPreferences() {
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (!ui || ui->DoPreferencesExist()) return;
  for (const PreferenceRow& row : kPreferenceRows) {
    if (!row.firstValue) continue;
    if (row.kind == PreferenceKind::kSwitch) {
      ui->SetPreferenceForKey(row.key, *row.firstValue != 0);
    } else {
      ui->SetLongPreferenceForKey(row.key, *row.firstValue);
    }
  }
}

namespace {

struct Identity {
  String version = String::FromUTF8("x.x.x.x");
  String hostApp;
  std::string binaryPath;
};

Identity IdentityOfBundle(const std::string& identifier) {
  static const platform::BundleRef sBundle = GetBundleWithIdentifierReliably(identifier);
  Identity identity;
  if (!sBundle) return identity;
  identity.version = sBundle->Info().GetString("CFBundleShortVersionString");
  identity.hostApp = sBundle->Info().GetString("HostApp");
  identity.binaryPath = sBundle->ExecutablePath();
  return identity;
}

// For a platform whose binaries have a version resource of their own.
Identity IdentityOfBinary(const std::string& path) {
  Identity identity;
  char version[1024] = {}, hostApp[128] = {};
  if (ReadVersionResource(path.c_str(), sizeof version, version)) identity.version = String::FromUTF8(version);
  if (ReadFieldFromVersionResource(path.c_str(), "\\StringFileInfo\\040904b0\\InternalName", sizeof hostApp, hostApp)) {
    identity.hostApp = String::FromUTF8(hostApp);
  }
  identity.binaryPath = path;
  return identity;
}

}  // namespace

CommonFunctionality::StaticPluginInitializer::StaticPluginInitializer(const std::string& identifier) {
  const bool isBundleIdentifier = identifier.starts_with("com.velorant.");
  const Identity identity = isBundleIdentifier ? IdentityOfBundle(identifier) : IdentityOfBinary(identifier);
  MarquineGlobals::IdentifyPluginBundleID(identifier);
  MarquineGlobals::IdentifyPluginInterfaceVersion(VPILoader::GetSharedInstance()->VersionStringRef());
  MarquineGlobals::IdentifyPluginHostApp(identity.hostApp);
  MarquineGlobals::IdentifyPluginVersion(identity.version);
  MarquineGlobals::IdentifyPluginBinaryPath(identity.binaryPath);
}
