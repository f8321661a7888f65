// What the plug-in tells the panel of its own accord.
#include "GJSONUtils.h"
#include "Panel/MarquinePanel.h"
#include "Panel/PanelChecks.h"
#include "Panel/PanelKeys.h"
#include "Services/MarquineGlobals.h"

using namespace panel_keys;
using platform::Dictionary;

TModuleErrorCode MarquinePanel::QueueIfConnected(operatorIDs message) {
  if (MarquineGlobals::sConnectedToCore) mPendingNotifications.insert(message);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode MarquinePanel::PushNotificationWithFontSet(unsigned int fontID, operatorIDs message,
                                                            std::set<unsigned int>& fonts) {
  if (!MarquineGlobals::sConnectedToCore) return CoreErrorCodes::kSuccess;
  fonts.insert(fontID);
  (message == kFontActivated ? mDeactivatedFonts : mActivatedFonts).erase(fontID);
  mPendingNotifications.insert(message);
  return CoreErrorCodes::kSuccess;
}

#define FONT_PUSH(push, message, fonts)                         \
  TModuleErrorCode MarquinePanel::push(unsigned int fontID) {   \
    return PushNotificationWithFontSet(fontID, message, fonts); \
  }
FONT_PUSH(PushFontActivatedNotification, kFontActivated, mActivatedFonts)
FONT_PUSH(PushFontDeactivatedNotification, kFontDeactivated, mDeactivatedFonts)
FONT_PUSH(PushFontMissingNotification, kFontMissing, mMissingFonts)
FONT_PUSH(PushFontNonCompliantNotification, kFontNonCompliant, mNonCompliantFonts)
#undef FONT_PUSH

#define QUEUED_PUSH(push, message) \
  TModuleErrorCode MarquinePanel::push() { return QueueIfConnected(message); }
QUEUED_PUSH(PushBulkReplicationStoppedNotification, kBulkReplicationStopped)
QUEUED_PUSH(PushIncrementalReplicationStoppedNotification, kIncrementalReplicationStopped)
QUEUED_PUSH(PushGoogleReplicationStoppedNotification, kGoogleReplicationStopped)
QUEUED_PUSH(PushFontServerReplicationStoppedNotification, kFontServerReplicationStopped)
QUEUED_PUSH(PushDataChangedNotification, kDataChanged)
QUEUED_PUSH(PushSmartListsChangedNotification, kSmartListsChanged)
QUEUED_PUSH(PushOfflineDownloadFinishedNotification, kOfflineDownloadFinished)
#undef QUEUED_PUSH

#define PROGRESS_PUSH(push, message) \
  TModuleErrorCode MarquinePanel::push(const Dictionary& details) { return SendReplicationProgress(message, details); }
PROGRESS_PUSH(PushBulkReplicationProgressNotification, kBulkReplicationProgress)
PROGRESS_PUSH(PushIncrementalReplicationProgressNotification, kIncrementalReplicationProgress)
PROGRESS_PUSH(PushGoogleReplicationProgressNotification, kGoogleReplicationProgress)
PROGRESS_PUSH(PushFontServerReplicationProgressNotification, kFontServerReplicationProgress)
#undef PROGRESS_PUSH

TModuleErrorCode MarquinePanel::PushLoggedInStateChangedNotification(EServerType) {
  return QueueIfConnected(kLoggedInStateChanged);
}

TModuleErrorCode MarquinePanel::PushGoogleWebFontsEnabledNotificaton(bool enabled) {
  return QueueIfConnected(enabled ? kGoogleWebFontsEnabled : kGoogleWebFontsDisabled);
}

// Also queued without an agent, like Typekit: it is sent when there is one. A standalone agent counts as online.
TModuleErrorCode MarquinePanel::PushOnlineStateChangedNotification(bool isOnline) {
  const bool isStandalone = AskAgentFor(AgentFunctions().pfGetIsStandaloneMode) != 0;
  mPendingNotifications.insert(!isStandalone && !isOnline ? kWentOffline : kWentOnline);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode MarquinePanel::PushTypekitEnabledNotification(bool enabled) {
  mPendingNotifications.insert(enabled ? kTypekitEnabled : kTypekitDisabled);
  return CoreErrorCodes::kSuccess;
}

std::set<unsigned int>* MarquinePanel::FontSetOf(unsigned int message) {
  switch (message) {
    case kFontActivated: return &mActivatedFonts;
    case kFontDeactivated: return &mDeactivatedFonts;
    case kFontMissing: return &mMissingFonts;
    case kFontNonCompliant: return &mNonCompliantFonts;
    default: return nullptr;
  }
}

TModuleErrorCode MarquinePanel::SendQueued(unsigned int message) {
  Parser jsonObject;
  const Node root = jsonObject.root();
  Node jsonValue;
  PANEL_CHECK(GJSONUtils::SetValueForKey(message, kMessageIDKey, root, jsonValue));
  if (std::set<unsigned int>* fonts = FontSetOf(message)) {
    Node jsonArray;
    PANEL_CHECK(GJSONUtils::AddArrayForKey(kFontIDsKey, root, jsonArray));
    PANEL_CHECK(PopulateJSONArrayFromSet(*fonts, jsonArray));
    fonts->clear();
  }
  return SendReply(root);
}

TModuleErrorCode MarquinePanel::PopNotifications() {
  if (!MarquineGlobals::sConnectedToCore || mPendingNotifications.empty()) return CoreErrorCodes::kSuccess;
  bool isRefreshDue = false;
  for (const unsigned int message : mPendingNotifications) {
    PASS_ON_ERROR(SendQueued(message));
    isRefreshDue = isRefreshDue || (FontSetOf(message) && message != kFontActivated);
  }
  mPendingNotifications.clear();
  if (isRefreshDue) MarquineGlobals::RefreshActiveFontList(nullptr, nullptr);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode MarquinePanel::SetEnabled(bool enabled) {
  Parser jsonObject;
  const Node root = jsonObject.root();
  Node jsonValue;
  PANEL_CHECK(GJSONUtils::SetValueForKey(kEnabled, kMessageIDKey, root, jsonValue));
  PANEL_CHECK(GJSONUtils::SetValueForKey(enabled, kIsEnabledKey, root, jsonValue));
  return SendReply(root);
}
