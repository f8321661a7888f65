// Connecting, relaunching, and questions about state and workgroups.
#include "Bridge/CoreAgentInterface.h"

#include "Bridge/AgentLaunch.h"
#include "Bridge/CoreAgentSupport.h"
#include "Services/DiagnosticLog.h"
#include "Services/MarquineGlobals.h"
#include "XCore/ECFExtensions/XCFUtils.h"

using namespace GlyphsureSupport;
using platform::String;
using platform::Value;

namespace {

constexpr uint32_t kBuildConstant = 21;
constexpr size_t kVaultPathSize = 1024;
constexpr size_t kLibraryNameSize = 128;

// Codes of InitThreadInstance. The second of each pair comes from an older agent.
constexpr TModuleErrorCode kAgentNotFound = 0x02002005, kAgentNotFoundOld = 0x02007005;
constexpr TModuleErrorCode kWrongMode = 0x03002005, kWrongModeOld = 0x03007005;
constexpr TModuleErrorCode kVaultInUse = 0x02002008, kVaultInUseOld = 0x02007008;

int systemWorkgroupID = -1;
int googleWebFontsLibID = -1;

enum WorkgroupType : long { kAllServerFonts = 0, kServerPersonal = 2, kLocalPersonal = 3, kSystem = 4, kGoogle = 8 };

std::string VaultPath() {
  char buffer[kVaultPathSize] = {};
  AgentTable().pfGetFontVaultPath(GetFacade(), sizeof buffer, buffer);
  return std::string(buffer, strnlen(buffer, sizeof buffer));
}

bool AreDialogsSuppressed(const VPFInterfaceRef& ui) { return !ui || ui->GetSuppressPluginCoreDialogs(); }

}  // namespace

void CoreAgentInterface::ResetForTesting() {
  systemWorkgroupID = -1;
  googleWebFontsLibID = -1;
  ResetAgentCheckTimeForTesting();
}

CoreAgentInterface::CoreAgentInterface() {
  InitializeCoreAgent(MarquineGlobals::GetPluginHostApp());
  InitializeDefaultWorkgroup();
}

CoreAgentInterface::~CoreAgentInterface() { DeleteCoreAgent(); }

void CoreAgentInterface::DeleteCoreAgent() { AgentTable().pfDestroyThreadInstance(GetFacade()); }

void CoreAgentInterface::EnqueueNotification(std::unique_ptr<CoreAgentPluginNotification> notification) {
  mQueue.EnqueueNotification(std::move(notification));
}

void CoreAgentInterface::InitializeCoreAgent(const String& hostApp) {
  const auto hostType = static_cast<uint32_t>(MarquineGlobals::GetHostTypeFromHostAppID(hostApp));
  if (AgentTable().pfInitAppInstance(GetFacade(), hostType, kBuildConstant) != 0) {
    const bool inSync = AreSchemaVersionsInSync();
    const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
    if (!inSync && ui) {
      MarquineGlobals::SetDisplayedSchemaError(true);
      MarquineGlobals::SetPluginServicesEnabled(false);
      MarquineGlobals::SetConnectedToCore(false);
      ui->ShowVaultNeedsUpgradeMessage();
    }
    return;
  }
  int32_t isRunning = 0;
  const TModuleErrorCode code = AgentTable().pfGetIsCoreAgentProcessRunning(GetFacade(), &isRunning);
  if (code != 0 || !MarquineGlobals::GetSharedVPFInterface() || !isRunning) {
    ReportNotRunning(code, isRunning);
    return;
  }
  ReportInitialization(AgentTable().pfInitThreadInstance(GetFacade()));
  AgentTable().pfRegisterForNotifications(GetFacade(), &CoreAgentNotificationCallback);
  AgentTable().pfEnableDesignActivation(GetFacade());
}

void CoreAgentInterface::ReportNotRunning(TModuleErrorCode code, int isRunning) {
  OutputIndentedAndFormattedString(0, "Core Agent process not running; rc=%d, isRunning=%d, sizeof(isRunning)=%d",
                                   static_cast<int>(code), isRunning, static_cast<int>(sizeof isRunning));
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (!AreDialogsSuppressed(ui)) ui->ShowFontManagerNotFoundMessageBox();
  MarquineGlobals::SetPluginServicesEnabled(false);
  MarquineGlobals::SetConnectedToCore(false);
}

void CoreAgentInterface::ReportInitialization(TModuleErrorCode code) {
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  MarquineGlobals::SetPluginServicesEnabled(code == 0);
  MarquineGlobals::SetConnectedToCore(code == 0);
  const int shown = static_cast<int>(code);
  switch (code) {
    case 0:
      OutputIndentedAndFormattedString(0, "GZephyneSdk::Initialize SUCCEEDED.");
      MarquineGlobals::SetLoggedIn(true);
      return;
    case kAgentNotFound:
    case kAgentNotFoundOld:
      OutputIndentedAndFormattedString(0, "Core Agent process not found");
      ui->ShowFontManagerNotFoundMessageBox();
      return;
    case kWrongMode:
    case kWrongModeOld: OutputIndentedAndFormattedString(0, "Core Agent process running in wrong mode"); return;
    case kVaultInUse:
    case kVaultInUseOld:
      OutputIndentedAndFormattedString(0, "GZephyneSdk::Initialize FAILED, error code = %d (GZephyneSdk::kVaultInUse).",
                                       shown);
      ui->ShowVaultInUseMessage(VaultPath());
      break;
    default:
      OutputIndentedAndFormattedString(0, "GZephyneSdk::Initialize FAILED, error code = %d.", shown);
      ui->ShowVaultNotAvailableMessage(VaultPath());
  }
  OutputIndentedAndFormattedString(0,
                                   "Disabling plug-in services in CoreAgentInterface::InitializeCoreAgent() because of "
                                   "SDK initialization error %d.",
                                   shown);
}

TModuleErrorCode CoreAgentInterface::CallWithRelaunch(const Command& command) {
  for (int attempt = -1;; ++attempt) {
    const TModuleErrorCode code = command();
    if (!IsAgentGone(code)) return code;
    OutputIndentedAndFormattedString(0, "Agent not running:  error code = %d", static_cast<int>(code));
    // The first failure is retried silently, the second asks the user, later ones are silent again.
    if (attempt == 0) {
      AskUserToRelaunchAgent();
      OutputIndentedAndFormattedString(0, "Agent not running, relaunching agent and retrying command");
    } else {
      OutputIndentedAndFormattedString(0, "Agent not running, automatically relaunching agent and retrying command");
    }
    if (AttemptRelaunchTryAgain()) continue;
    OutputIndentedAndFormattedString(0,
                                     "Agent not running, done attempting to relaunch.  Disabling plugin functionality");
    MarquineGlobals::SetPluginServicesEnabled(false);
    MarquineGlobals::SetConnectedToCore(false);
    return code;
  }
}

bool CoreAgentInterface::AttemptRelaunchTryAgain() {
  for (;;) {
    const int result = RelaunchZephyneAgent();
    if (result != 1 && result != 2) return true;
    const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
    if (AreDialogsSuppressed(ui) || !ui->ShowCoreAgentMissingMessageBox()) return false;
  }
}

int CoreAgentInterface::RelaunchZephyneAgent() {
  const int result = LaunchZephyneAgentIfNeeded();
  if (result == 0) AgentTable().pfResetPluginFacadeInstance();
  return result;
}

int CoreAgentInterface::LaunchZephyneAgentIfNeeded() {
  const auto result = static_cast<TModuleErrorCode>(FindAndLaunchNexcore(nullptr));
  return result == kAgentNotFound || result == kAgentNotFoundOld ? 2 : 0;
}

void CoreAgentInterface::AskUserToRelaunchAgent() {
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (!AreDialogsSuppressed(ui)) ui->ShowFontManagerNotFoundMessageBox();
}

bool CoreAgentInterface::WarnUserAgentRelaunchFailed() {
  AskUserToRelaunchAgent();
  return true;
}

bool CoreAgentInterface::RunningStandalone() {
  int32_t standalone = 1;
  AgentTable().pfGetIsStandaloneMode(GetFacade(), &standalone);
  return standalone != 0;
}

bool CoreAgentInterface::IsGoogleWebFontsEnabled() {
  int32_t enabled = 0;
  AgentTable().pfGetIsGoogleWebFontsEnabled(GetFacade(), &enabled);
  return enabled != 0;
}

bool CoreAgentInterface::IsRunning() {
  int32_t running = 0;
  const TModuleErrorCode code = AgentTable().pfGetIsCoreAgentProcessRunning(GetFacade(), &running);
  if (!running) {
    OutputIndentedAndFormattedString(0, "WARNING:  PluginInterface::GetIsCoreAgentProcessRunning() returned %d",
                                     static_cast<int>(code));
  }
  return running != 0;
}

bool CoreAgentInterface::AreSchemaVersionsInSync() {
  int32_t inSync = 1;
  CallWithRelaunch([&] { return AgentTable().pfGetAreSchemaVersionsInSync(GetFacade(), &inSync); });
  if (!inSync) {
    OutputIndentedAndFormattedString(0, "WARNING:  CoreAgentInterface::AreSchemaVersionsInSync() returning FALSE");
  }
  return inSync != 0;
}

bool CoreAgentInterface::IsLoggedIn() {
  if (RunningStandalone()) return true;
  int32_t loggedIn = 0;
  return AgentTable().pfGetIsLoggedIn(GetFacade(), &loggedIn) == 0 && loggedIn != 0;
}

int CoreAgentInterface::DisconnectFromFontManager() {
  AgentTable().pfUnregisterForNotifications(GetFacade(), &CoreAgentNotificationCallback);
  return 0;
}

void CoreAgentInterface::DoOnlineOffline() {
  if (IsOnline()) {
    GoOffline();
  } else if (GoOnline() != 0) {
    MarquineGlobals::GetSharedVPFInterface()->ShowGoOnlineErrorMessageBox();
  }
}

bool CoreAgentInterface::IsRemoteWorkgroupTypeDisabled(long type) {
  return type == kGoogle && !IsGoogleWebFontsEnabled();
}

String CoreAgentInterface::CreateLocalizedWorkgroupName(long type, const String& name) {
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (!ui) return String();
  const auto localized = [&](const char* key) { return String::FromUTF8(ui->LocalizedString(key)); };
  switch (type) {
    case kAllServerFonts: return localized("AllServerFontsWorkgroup");
    case kServerPersonal: return localized("ServerBasedPersonalWorkgroup");
    case kSystem: return localized("SystemWorkgroup");
    case kGoogle: return localized("MasterGoogleFontsLibrary");
    case kLocalPersonal: break;
    default: return String();
  }
  if (!RunningStandalone()) return localized("LocalPersonalWorkgroup");
  char library[kLibraryNameSize] = {};
  AgentTable().pfGetDefaultLibraryName(GetFacade(), library, sizeof library);
  const std::string_view libraryName(library, strnlen(library, sizeof library));
  return name.View() == libraryName ? localized("Font Library") : String();
}

int CoreAgentInterface::GetAllWorkgroupsForUser(Array* out, bool addAllWorkgroups, bool includeSpecial, bool flag) {
  if (!out) return kErrorBadArgument;
  platform::ValueRef list = nullptr;
  const TModuleErrorCode code = AgentTable().pfGetAllWorkgroupsForUser(GetFacade(), &list, includeSpecial, flag);
  *out = Array(Value::Adopt(list));
  if (code != 0) return static_cast<int>(code);
  for (size_t i = 0; i < out->Count(); ++i) {
    const Dictionary workgroup(out->At(i));
    if (!workgroup) continue;
    const long type = WorkgroupTypeOf(workgroup);
    const String name = CreateLocalizedWorkgroupName(type, workgroup.GetString(kGS_WorkgroupNameKey));
    if (!name) continue;
    Dictionary renamed = workgroup.Copy();
    renamed.Set(kGS_WorkgroupNameKey, name);
    // Store an integer where the agent sent text: readers of text then see type 0 for a renamed workgroup, and depend
    // on it.
    XCFUtils::PutLongIntoDict(renamed, kGS_WorkgroupTypeKey, type);
    out->Set(i, renamed);
  }
  if (!addAllWorkgroups || out->Count() == 0 || !CanActivateFromAllWorkgroups()) return 0;
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  const std::string all = ui->LocalizedString(RunningStandalone() ? "All Libraries" : "All Workgroups");
  OutputIndentedAndFormattedString(0, "Adding '%s' to user's workgroup list.", all.c_str());
  Dictionary entry = Dictionary::Create();
  entry.Set(kGS_WorkgroupNameKey, all);
  entry.Set(kGS_WorkgroupIDKey, std::to_string(kAllWorkgroupsID));
  out->Append(entry);
  return 0;
}

int CoreAgentInterface::GetSpecialWorkgroupID(long type) {
  Array workgroups;
  if (GetAllWorkgroupsForUser(&workgroups, false, true, false) != 0) return -1;
  for (size_t i = 0; i < workgroups.Count(); ++i) {
    const Dictionary workgroup(workgroups.At(i));
    if (WorkgroupTypeOf(workgroup) != type) continue;
    return static_cast<int>(XCFUtils::GetLongFromDictString(workgroup, kGS_WorkgroupIDKey));
  }
  return -1;
}

int CoreAgentInterface::GetSystemWorkgroupID() {
  if (systemWorkgroupID == -1) systemWorkgroupID = GetSpecialWorkgroupID(kSystem);
  return systemWorkgroupID;
}

int CoreAgentInterface::GetGoogleWebFontsLibraryID() {
  if (googleWebFontsLibID == -1) googleWebFontsLibID = GetSpecialWorkgroupID(kGoogle);
  return googleWebFontsLibID;
}

void CoreAgentInterface::PopulateWorkgroupArray(int workgroupID, FontIDs& out) {
  if (IsAllWorkgroups(workgroupID)) {
    out.push_back(0);
    return;
  }
  out.push_back(static_cast<uint32_t>(workgroupID));
  if (IsGoogleWebFontsEnabled()) out.push_back(static_cast<uint32_t>(GetGoogleWebFontsLibraryID()));
}

bool CoreAgentInterface::IsSelectedWorkgroupLocal() {
  Array workgroups;
  if (GetAllWorkgroupsForUser(&workgroups, false, true, false) != 0) return false;
  const int current = GetCurrentWorkgroupID();
  for (size_t i = 0; i < workgroups.Count(); ++i) {
    const Dictionary workgroup(workgroups.At(i));
    if (XCFUtils::GetLongFromDictString(workgroup, kGS_WorkgroupIDKey) == current) {
      return WorkgroupTypeOf(workgroup) == kLocalPersonal;
    }
  }
  return false;
}

int CoreAgentInterface::RemoveRemoteFonts(Array fonts) {
  if (fonts.Count() == 0) return -1;
  for (size_t i = fonts.Count(); i-- > 0;) {
    const long type = XCFUtils::GetLongFromDictString(Dictionary(fonts.At(i)), kGS_WorkgroupTypeKey);
    if (!IsRemoteWorkgroupTypeDisabled(type)) continue;
    OutputIndentedAndFormattedString(0, "Removed font %d because workgroupType is %d", static_cast<int>(i),
                                     static_cast<int>(type));
    fonts.RemoveAt(i);
  }
  return 0;
}

bool CoreAgentInterface::GetPermission(uint16_t flag, const std::string& right, int workgroupID) {
  const uint32_t id = IsAllWorkgroups(workgroupID) ? 0 : static_cast<uint32_t>(workgroupID);
  int32_t holds = 0;
  AgentTable().pfGetPermission(GetFacade(), flag, right.c_str(), id, &holds);
  return holds != 0;
}

bool CoreAgentInterface::CanActivateFromAllWorkgroups() {
  return GetPermission(1, CallStringGetter(AgentTable().pfGetCanActivateAcrossWorkgroupsColumnID), 0);
}

bool CoreAgentInterface::CanExportFromWorkgroup(const Array& fonts) {
  if (!IsAllWorkgroupsSelected()) {
    return GetPermission(1, CallStringGetter(AgentTable().pfGetExportFontsColumnID), GetCurrentWorkgroupID());
  }
  if (!fonts) return true;
  const FontIDs ids = GetFontIDsFromFontInfoArray(fonts, false);
  int32_t can = 0;
  const auto count = static_cast<uint32_t>(ids.size());
  return AgentTable().pfCanExportFonts(GetFacade(), count, ids.data(), &can) == 0 && can != 0;
}
