#include "Services/VPFInterface.h"

#include <cstring>

using platform::String;
using platform::Value;

namespace {
constexpr int kOneButton = 0;
constexpr int kTwoButtons = 2;
}  // namespace

VPFInterface::VPFInterface(const String& hostApp, const String& pluginVersion,
                           const std::string& pluginBundleIdentifier, const String& pluginInterfaceVersion) {
  if (hostApp) mHostDetails.SetStringForKey("HostApp", hostApp.View());
  if (pluginVersion) mHostDetails.SetStringForKey("PluginVersion", pluginVersion.View());
  if (pluginInterfaceVersion) {
    mHostDetails.SetStringForKey("VelorantPluginInterfaceVersion", pluginInterfaceVersion.View());
  }
  InitializeFramework(pluginBundleIdentifier);
}

VPFInterface::VPFInterface() : mStatus(kNotFound) {}

VPFInterface::VPFInterface(std::unique_ptr<VPFFunctionTable> table)
    : mStatus(kLoaded), mInitialized(true), mTable(std::move(table)) {}

VPFInterface::~VPFInterface() = default;

VPFInterface* VPFInterfaceRef::Absent() {
  static VPFInterface sAbsent;
  return &sAbsent;
}

void VPFInterface::DestroyFramework() {
  mTable.reset();
  mInitialized = false;
}

bool VPFInterface::isHostAppUsingNextGenPlugin() {
  const platform::BundleRef core = platform::Bundle::WithIdentifier("com.velorant.PluginCore");
  return core && core->IsLoaded();
}

// Calls the function of the table, or gives the default if it is missing.
#define CALL_OR(name, otherwise, ...) ((mTable && mTable->pf##name) ? mTable->pf##name(__VA_ARGS__) : (otherwise))
#define CALL(name, ...)                                            \
  do {                                                             \
    if (mTable && mTable->pf##name) mTable->pf##name(__VA_ARGS__); \
  } while (false)

void VPFInterface::SetFontManagerBundleName(const std::string& name) {
  VPFDictionary details;
  details.SetStringForKey("FontManager", name);
  CALL(VPFSetHostDetails, details.GetDictionary().Ref());
}

std::string VPFInterface::LocalizedString(const char* key) const {
  if (!mTable || !mTable->pfVPFLocalizedString) return key;
  const String text(Value::Adopt(mTable->pfVPFLocalizedString(key)));
  return text ? text.Text() : key;
}

bool VPFInterface::GetPreferenceForKey(const char* key) const { return CALL_OR(VPFGetPreferenceForKey, 0, key) != 0; }
void VPFInterface::SetPreferenceForKey(const char* key, bool value) {
  CALL(VPFSetPreferenceForKey, key, static_cast<int8_t>(value));
}
int VPFInterface::GetLongPreferenceForKey(const char* key) const { return CALL_OR(VPFGetLongPreferenceForKey, 0, key); }
void VPFInterface::SetLongPreferenceForKey(const char* key, int value) { CALL(VPFSetLongPreferenceForKey, key, value); }

String VPFInterface::GetStringPreferenceForKey(const char* key) const {
  return String(Value::Adopt(CALL_OR(VPFGetStringPreferenceForKey, nullptr, key)));
}
void VPFInterface::SetStringPreferenceForKey(const char* key, const char* value) {
  CALL(VPFSetStringPreferenceForKey, key, value);
}
bool VPFInterface::DoPreferencesExist() const { return CALL_OR(VPFDoPreferencesExist, 0) != 0; }

void VPFInterface::ShowAboutBox() { CALL(VPFShowAboutBox); }
void VPFInterface::ShowPreferences() { CALL(VPFShowPreferences); }

int VPFInterface::ShowMessageBox(const char* headerKey, const char* messageKey, int buttonSet) const {
  return CALL_OR(VPFShowMessageBox, 1, headerKey, messageKey, buttonSet);
}

int VPFInterface::AskForOneString(const std::string& prompt, const std::string& label, const std::string& initial,
                                  std::string& out) {
  platform::ValueRef text = nullptr;
  const int answer = CALL_OR(VPFAskForOneString, -1, prompt.c_str(), label.c_str(), initial.c_str(), &text);
  const String owned(Value::Adopt(text));
  if (owned) out = owned.Text();
  return answer;
}

void VPFInterface::ShowResolveFonts(const platform::Array& problemFonts) {
  CALL(VPFShowResolveFonts, problemFonts.Ref());
}
void VPFInterface::ShowRestrictedFonts(const platform::Array& fonts) { CALL(VPFShowRestrictedFonts, fonts.Ref()); }
int VPFInterface::ShowSelectWorkgroup(const platform::Array& workgroups) {
  return CALL_OR(VPFShowSelectWorkgroup, 0, workgroups.Ref());
}
int VPFInterface::ShowCommandBox(const platform::Dictionary& box, int& workgroupID) {
  int32_t choice = workgroupID;
  const int code = CALL_OR(VPFShowCommandBox, 0, box.Ref(), &choice);
  workgroupID = choice;
  return code;
}
void VPFInterface::ShowMissingFonts(const platform::Dictionary& box) { CALL(VPFShowMissingFonts, box.Ref()); }
void VPFInterface::ForceSelectWorkgroupWindowToFront() { CALL(VPFForceSelectWorkgroupWindowToFront); }
void VPFInterface::ShowProgress(const ProgressProperties& progress) {
  CALL(VPFShowProgress, progress.GetDictionary().Ref());
}
void VPFInterface::UpdateProgress(const ProgressProperties& progress) {
  CALL(VPFUpdateProgress, progress.GetDictionary().Ref());
}
void VPFInterface::HideProgress() { CALL(VPFHideProgress); }
void VPFInterface::SetIsOnline(bool isOnline) { CALL(VPFSetIsOnline, static_cast<int8_t>(isOnline)); }

#undef CALL
#undef CALL_OR

void VPFInterface::ShowFontManagerNotFoundMessageBox() {
  ShowMessageBox("FontManagerNotFoundHeader", "FontManagerNotFoundMessage", kOneButton);
}
void VPFInterface::ShowMarquineOldVersionMessageBox() {
  ShowMessageBox("MarquineOldVersionHeader", "MarquineOldVersionMessage", kOneButton);
}
void VPFInterface::ShowConnectionLostMessageBox() {
  ShowMessageBox("ConnectionLostHeader", "ConnectionLostMessage", kOneButton);
}
bool VPFInterface::ShowNotLoggedInMessageBox(bool offerLogin) {
  if (offerLogin) return ShowMessageBox("NotLoggedInHeader", "NotLoggedInOfferLoginMessage", kTwoButtons) == 1;
  return ShowMessageBox("NotLoggedInHeader", "NotLoggedInPluginDisabledMessage", kOneButton) == 1;
}
bool VPFInterface::ShowLoggedOffMessageBox(bool offerLogin) {
  if (offerLogin) return ShowMessageBox("LoggedOffHeader", "LoggedOffOfferLoginMessage", kTwoButtons) == 1;
  return ShowMessageBox("LoggedOffHeader", "LoggedOffPluginDisabledMessage", kOneButton) == 1;
}
void VPFInterface::ShowGoOnlineErrorMessageBox() {
  ShowMessageBox("GoOnlineErrorHeader", "GoOnlineErrorMessage", kOneButton);
}
void VPFInterface::ShowMustBeOnlineMessageBox() {
  ShowMessageBox("GoOnlineErrorHeader", "MustBeOnlineMessage", kOneButton);
}
bool VPFInterface::ShowSomeFontsOfflineMessageBox() {
  return ShowMessageBox("SomeFontsOfflineHeader", "SomeFontsOfflineMessage", kTwoButtons) == 1;
}
void VPFInterface::ShowCannotExportMessageBox() {
  ShowMessageBox("CannotExportHeader", "CannotExportMessage", kOneButton);
}
bool VPFInterface::ShowFontsMissingForExportMessageBox(bool offline) {
  const char* message = offline ? "MissingFontsOfflineExportMessage" : "MissingFontsExportMessage";
  return ShowMessageBox("MissingFontsExportHeader", message, kTwoButtons) == 1;
}
void VPFInterface::ShowSetNameTooLongMessageBox() {
  ShowMessageBox("SetNameTooLongHeader", "SetNameTooLongMessage", kOneButton);
}
void VPFInterface::ShowVaultClosedMessage() { ShowMessageBox(nullptr, "FontVaultClosedMsg", kOneButton); }
void VPFInterface::ShowVaultNeedsUpgradeMessage() {
  ShowMessageBox("VaultNeedsUpgradeTitle", "VaultNeedsUpgradeMessage", kOneButton);
}
void VPFInterface::ShowSomeLayersMissingFontsMessage() {
  ShowMessageBox(nullptr, "SomeLayersMissingFontsMessage", kOneButton);
}

void VPFInterface::ShowVaultInUseMessage(const std::string& path) {
  ShowFormattedVaultMessage("CouldNotOpenVaultInUseLaunchPrefs", path);
}
void VPFInterface::ShowVaultNotAvailableMessage(const std::string& path) {
  ShowFormattedVaultMessage("CouldNotOpenVaultLaunchPrefs", path);
}

void VPFInterface::ShowFormattedVaultMessage(const char* key, const std::string& path) {
  std::string text = LocalizedString(key);
  const size_t place = text.find("%@");
  if (place != std::string::npos) text.replace(place, std::strlen("%@"), path);
  ShowMessageBox(nullptr, text.c_str(), kOneButton);
}
