// The state of the session, the panel's own settings, and the progress of replications.

#include "Bridge/FontManagerInterface.h"
#include "Bridge/NotificationKeys.h"
#include "GJSONUtils.h"
#include "GSystem.h"
#include "Panel/MarquinePanel.h"
#include "Panel/PanelChecks.h"
#include "Panel/PanelKeys.h"
#include "Services/MarquineGlobals.h"
#include "XCore/ECFExtensions/XCFUtils.h"

using namespace panel_keys;
using platform::Array;
using platform::Dictionary;
using platform::String;

namespace {

// The agent's numbers, which the plug-in passes on. If the agent has none, panels are told this one.
enum EReplicationMode : int { kReplicationModeDefault = 1 };

constexpr long kTypekitWorkgroup = 9;  // a type of workgroup

// Preferences of the plug-in. The names are older than this version.
constexpr const char* kWidthPreference = "CS5PanelWidth";
constexpr const char* kHeightPreference = "CS5PanelHeight";
constexpr const char* kSelectionPreference = "DropDownSelection";
constexpr const char* kSavesSmartListPreference = "DropDownSelectionSavesSmartLists";
constexpr const char* kWebFontsSeenPreference = "GWFHaveEverBeenEnabled";
constexpr const char* kAddressPreference = "LastAddress";
constexpr const char* kPortPreference = "LastPort";

bool CanActivateFromAllWorkgroups() {
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  return ui && ui->IsValid() && FontManagerInterface::sm_pFontManager &&
         FontManagerInterface::sm_pFontManager->CanActivateFromAllWorkgroups();
}

// The agent sends the type as text; a workgroup that the plug-in renamed has a number.
long TypeOf(const Dictionary& workgroup) {
  long type = XCFUtils::GetLongFromDictString(workgroup, GlyphsureSupport::kGS_WorkgroupTypeKey);
  XCFUtils::GetLongFromDict(workgroup, GlyphsureSupport::kGS_WorkgroupTypeKey, type);
  return type;
}

}  // namespace

TModuleErrorCode MarquinePanel::IsWindows() {
  const PanelTrace trace(__func__);
  Parser jsonObject;
  const Node root = jsonObject.root();
  Node jsonValue;
  PANEL_CHECK(GJSONUtils::SetValueForKey(kIsWindows, kMessageIDKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(GSystem::IsWindows(), kIsWindowsKey, root, jsonValue));
  return SendReply(root);
}

TModuleErrorCode MarquinePanel::CanAccessGoogleFonts() {
  const PanelTrace trace(__func__);
  if (!FontManagerInterface::sm_pFontManager) return CoreErrorCodes::kSuccess;
  const int canAccessGoogleFonts = AgentFunctions().pfCanAccessGoogleFonts(GetFacade());
  Parser jsonObject;
  const Node root = jsonObject.root();
  Node jsonValue;
  PANEL_CHECK(GJSONUtils::SetValueForKey(kCanAccessGoogleFonts, kMessageIDKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(canAccessGoogleFonts, kCanAccessGoogleFontsKey, root, jsonValue));
  return SendReply(root);
}

TModuleErrorCode MarquinePanel::StartPanelInfo() {
  const PanelTrace trace(__func__);
  const int isStandalone = AskAgentFor(AgentFunctions().pfGetIsStandaloneMode);
  Parser jsonObject;
  const Node root = jsonObject.root();
  Node jsonValue;
  PANEL_CHECK(GJSONUtils::SetValueForKey(kConnectionComplete, kMessageIDKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(isStandalone, kIsStandaloneKey, root, jsonValue));
  PASS_ON_ERROR(SendReply(root));
  CheckForTypekit();
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode MarquinePanel::CheckForTypekit() {
  if (!FontManagerInterface::sm_pFontManager) return CoreErrorCodes::kSuccess;
  Array workgroups;
  const int status = FontManagerInterface::sm_pFontManager->GetAllWorkgroupsForUser(&workgroups, false, false, true);
  if (status != 0 || !workgroups) return CoreErrorCodes::kSuccess;
  bool hasTypekit = false;
  for (size_t i = 0; i < workgroups.Count() && !hasTypekit; ++i) {
    hasTypekit = TypeOf(Dictionary(workgroups.At(i))) == kTypekitWorkgroup;
  }
  return PushTypekitEnabledNotification(hasTypekit);
}

TModuleErrorCode MarquinePanel::GoogleEnableWebFonts() {
  const PanelTrace trace(__func__);
  TModuleErrorCode err = CoreErrorCodes::kSuccess;
  if (MarquineGlobals::sConnectedToCore) err = AgentFunctions().pfSetGoogleWebFontsEnabled(GetFacade(), 1);
  Parser jsonObject;
  const Node root = jsonObject.root();
  Node jsonValue;
  PANEL_CHECK(GJSONUtils::SetValueForKey(kEnableGoogleFonts, kMessageIDKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(err, kReturnCodeKey, root, jsonValue));
  return SendReply(root);
}

TModuleErrorCode MarquinePanel::IsGoogleWebFontsEnabled() {
  const PanelTrace trace(__func__);
  int isEnabled = 0;
  if (MarquineGlobals::sConnectedToCore) isEnabled = AskAgentFor(AgentFunctions().pfGetIsGoogleWebFontsEnabled);
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  // When web fonts are enabled for the first time, select all workgroups, so that the user sees these fonts.
  if (isEnabled != 0 && CanActivateFromAllWorkgroups() && !ui->GetPreferenceForKey(kWebFontsSeenPreference)) {
    ui->SetCurrentWorkgroupID(FontManagerInterface::kAllWorkgroupsID);
    ui->SetPreferenceForKey(kWebFontsSeenPreference, true);
  }
  // This reply never reports a replication. Keep it: panels learn of one from its progress messages.
  constexpr int isReplicating = 0, replicationMode = kReplicationModeDefault;
  Parser jsonObject;
  const Node root = jsonObject.root();
  Node jsonValue;
  PANEL_CHECK(GJSONUtils::SetValueForKey(kAreGoogleFontsEnabled, kMessageIDKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(isEnabled, kIsEnabledKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(isReplicating, kIsReplicatingKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(replicationMode, kReplicationModeKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(CoreErrorCodes::kSuccess, kReturnCodeKey, root, jsonValue));
  return SendReply(root);
}

// Stores all three under one key, so that the last one stays. Keep it: the other two keys belong to the login of
// earlier versions. The user interface must exist.
void MarquinePanel::StorePendingLogin() {
  for (String* pending : {&mPendingAddress, &mPendingPort, &mPendingUsername}) {
    if (!*pending) continue;
    MarquineGlobals::GetSharedVPFInterface()->SetStringPreferenceForKey(kAddressPreference, pending->CString());
    *pending = String();
  }
}

TModuleErrorCode MarquinePanel::HBSIsLoggedIn() {
  if (!MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  const VPILoader& agent = AgentFunctions();
  unsigned int isLoggedIn = 1, isOnline = 1, isReplicating = 0;
  int replicationMode = kReplicationModeDefault;
  std::string port;
  if (AskAgentFor(agent.pfGetIsStandaloneMode) == 0) {
    isLoggedIn = static_cast<unsigned int>(AskAgentFor(agent.pfGetIsLoggedIn));
    isReplicating = static_cast<unsigned int>(AskAgentFor(agent.pfGetIsReplicationRunning));
    isOnline = static_cast<unsigned int>(AskAgentFor(agent.pfGetIsOnline));
    if (isReplicating != 0) replicationMode = AskAgentFor(agent.pfGetCurrentReplicationMode);
    const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
    if (isLoggedIn != 0 && CanActivateFromAllWorkgroups()) StorePendingLogin();
    if (ui && ui->IsValid() && FontManagerInterface::sm_pFontManager) {
      port = BoundedText(ui->GetStringPreferenceForKey(kPortPreference));
    }
  }
  Parser jsonObject;
  const Node root = jsonObject.root();
  Node jsonValue;
  // Unlike other replies, this one is sent even if a member cannot be set.
  GJSONUtils::SetValueForKey(kIsLoggedIn, kMessageIDKey, root, jsonValue);
  GJSONUtils::SetValueForKey(isLoggedIn, kIsLoggedInKey, root, jsonValue);
  GJSONUtils::SetValueForKey(isOnline, kIsOnlineKey, root, jsonValue);
  GJSONUtils::SetValueForKey(isReplicating, kIsReplicatingKey, root, jsonValue);
  GJSONUtils::SetValueForKey(replicationMode, kReplicationModeKey, root, jsonValue);
  // Server and user are always empty. Keep it: panels have never been sent what the preferences contain.
  GJSONUtils::SetValueForKey("", kServerKey, root, jsonValue);
  GJSONUtils::SetValueForKey(port, kPortKey, root, jsonValue);
  GJSONUtils::SetValueForKey("", kUsernameKey, root, jsonValue);
  return SendReply(root);
}

TModuleErrorCode MarquinePanel::GetDimensions() {
  if (!MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  int width = 260, height = 350;  // pixels; the user interface has defaults of its own
  if (const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface()) {
    width = ui->GetLongPreferenceForKey(kWidthPreference);
    height = ui->GetLongPreferenceForKey(kHeightPreference);
  }
  Parser jsonObject;
  const Node root = jsonObject.root();
  Node jsonValue;
  PANEL_CHECK(GJSONUtils::SetValueForKey(kGetDimensions, kMessageIDKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(height, kHeightKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(width, kWidthKey, root, jsonValue));
  return SendReply(root);
}

TModuleErrorCode MarquinePanel::SetDimensions(const std::string& message) {
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (!ui || !MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  Parser jsonObject;
  Node jsonValue;
  unsigned int windowWidth = 0, windowHeight = 0;
  PANEL_CHECK(GetJSONValueFromMessage(message, jsonValue, jsonObject));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kWindowWidthKey, windowWidth));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kWindowHeightKey, windowHeight));
  ui->SetLongPreferenceForKey(kWidthPreference, static_cast<int>(windowWidth));
  ui->SetLongPreferenceForKey(kHeightPreference, static_cast<int>(windowHeight));
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode MarquinePanel::SaveDropDownSelection(const std::string& message) {
  if (!MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  Parser jsonObject;
  Node jsonValue;
  unsigned int selection = 0;
  bool savesSmartList = false;
  PANEL_CHECK(GetJSONValueFromMessage(message, jsonValue, jsonObject));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kSelectionKey, selection));
  PANEL_CHECK(GJSONUtils::GetValueForKey(jsonValue, kSavesSmartListKey, savesSmartList));
  // A panel shows the first entry, 0, when nothing is saved. Selecting it keeps what was saved before.
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (selection == 0 || !ui) return CoreErrorCodes::kSuccess;
  ui->SetLongPreferenceForKey(kSelectionPreference, static_cast<int>(selection));
  ui->SetPreferenceForKey(kSavesSmartListPreference, savesSmartList);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode MarquinePanel::GetDropDownSelection() {
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (!ui || !MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  const int selection = ui->GetLongPreferenceForKey(kSelectionPreference);
  const bool savesSmartList = ui->GetPreferenceForKey(kSavesSmartListPreference);
  Parser jsonObject;
  const Node root = jsonObject.root();
  Node jsonValue;
  PANEL_CHECK(GJSONUtils::SetValueForKey(kGetDropDownSelection, kMessageIDKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(selection, kSelectionKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(savesSmartList, kSavesSmartListKey, root, jsonValue));
  return SendReply(root);
}

TModuleErrorCode MarquinePanel::SendReplicationProgress(int message, const Dictionary& details) {
  if (!MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  const std::string text = BoundedText(details.GetString(PluginInterface::kTextKey));
  const auto stepIndex = static_cast<int32_t>(details.GetInteger(PluginInterface::kStepIndexKey));
  const auto numSteps = static_cast<int32_t>(details.GetInteger(PluginInterface::kNumStepsKey));
  Parser jsonObject;
  const Node root = jsonObject.root();
  Node jsonValue;
  PANEL_CHECK(GJSONUtils::SetValueForKey(message, kMessageIDKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(text, kTextKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(stepIndex, kStepIndexKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(numSteps, kNumStepsKey, root, jsonValue));
  return SendReply(root);
}
