// Packs what the agent reports, on whatever thread it comes, and queues it for the main thread.
#include "Bridge/CoreAgentInterface.h"
#include "Bridge/CoreAgentNotifications.h"
#include "Bridge/NotificationKeys.h"
#include "Services/DiagnosticLog.h"

using platform::Boolean;
using platform::Dictionary;
using platform::Number;
using platform::Value;

namespace {

enum class Payload { kNone, kBoolean, kEnabled, kDictionary, kFontID, kFontPNGs };

struct Kind {
  PluginInterface::ECallbackKind kind;
  std::string_view key;
  Payload payload;
};

constexpr Kind kKinds[] = {
    {PluginInterface::kAgentShutdown, kPluginNotification_AgentShutdown, Payload::kNone},
    {PluginInterface::kOnlineStateChanged, kPluginNotification_OnlineStateChanged, Payload::kBoolean},
    {PluginInterface::kLoggedInStateChanged, kPluginNotification_LoggedInStateChanged, Payload::kDictionary},
    {PluginInterface::kWorkgroupsChanged, kPluginNotification_WorkgroupsChanged, Payload::kNone},
    {PluginInterface::kUserPermissionsChanged, kPluginNotification_UserPermissionsChanged, Payload::kNone},
    {PluginInterface::kFontActivated, kPluginNotification_FontActivated, Payload::kFontID},
    {PluginInterface::kFontDeactivated, kPluginNotification_FontDeactivated, Payload::kFontID},
    {PluginInterface::kFontMissing, kPluginNotification_FontMissing, Payload::kFontID},
    {PluginInterface::kGoogleWebFontsEnabled, kPluginNotification_GoogleWebFontsEnabled, Payload::kEnabled},
    {PluginInterface::kGoogleReplicationProgress, kPluginNotification_GoogleReplicationProgress, Payload::kDictionary},
    {PluginInterface::kGoogleReplicationStopped, kPluginNotification_GoogleReplicationStopped, Payload::kNone},
    {PluginInterface::kPreviewPNGsRendered, kPluginNotification_PreviewPNGsRendered, Payload::kFontPNGs},
    {PluginInterface::kSmartListsChanged, kPluginNotification_SmartListsChanged, Payload::kNone},
    {PluginInterface::kBulkReplicationProgress, kPluginNotification_BulkReplicationProgress, Payload::kDictionary},
    {PluginInterface::kBulkReplicationStopped, kPluginNotification_BulkReplicationStopped, Payload::kNone},
    {PluginInterface::kIncrementalReplicationProgress, kPluginNotification_IncrementalReplicationProgress,
     Payload::kDictionary},
    {PluginInterface::kIncrementalReplicationStopped, kPluginNotification_IncrementalReplicationStopped,
     Payload::kNone},
    {PluginInterface::kPanelDataChanged, kPluginNotification_PanelDataChanged, Payload::kNone},
    {PluginInterface::kDesignActivationNonCompliant, kPluginNotification_DesignActivationNonCompliant,
     Payload::kFontID},
    {PluginInterface::kOfflineDownloadFinished, kPluginNotification_OfflineDownloadFinished, Payload::kNone},
    {PluginInterface::kFontServerReplicationProgress, kPluginNotification_FontServerReplicationProgress,
     Payload::kDictionary},
    {PluginInterface::kFontServerReplicationStopped, kPluginNotification_FontServerReplicationStopped, Payload::kNone},
};

void CopyAllPairs(platform::ValueRef from, Dictionary& to) {
  const Dictionary source(Value::Retain(from));
  for (size_t i = 0; i < source.Count(); ++i) to.Set(source.KeyAt(i), source.ValueAt(i));
}

void Pack(const Kind& kind, void* data, Dictionary& out) {
  out.Set(kind.key, Boolean::From(true));
  if (!data) return;
  switch (kind.payload) {
    case Payload::kNone: break;
    case Payload::kBoolean: out.Set(kind.key, Boolean::From(*static_cast<int32_t*>(data) != 0)); break;
    case Payload::kEnabled:
      out.Set(kPluginNotification_Enabled, Boolean::From(*static_cast<int32_t*>(data) != 0));
      break;
    case Payload::kDictionary: CopyAllPairs(static_cast<platform::ValueRef>(data), out); break;
    case Payload::kFontID:
      out.Set(kPluginNotification_FontActivation_Font_ID, Number::FromInteger(*static_cast<int32_t*>(data)));
      break;
    case Payload::kFontPNGs:
      out.Set(kPluginNotification_FontPNGs, Value::Retain(static_cast<platform::ValueRef>(data)));
      break;
  }
}

}  // namespace

TModuleErrorCode CoreAgentNotificationCallback(PluginInterface::ECallbackKind kind, void* data) {
  auto* agent = dynamic_cast<CoreAgentInterface*>(FontManagerInterface::sm_pFontManager.get());
  if (!agent) {
    OutputIndentedAndFormattedString(0, "WARNING:  CoreAgentInterface::GetFontManager() returned NULL.");
    return CoreErrorCodes::kUnknownError;
  }
  for (const Kind& row : kKinds) {
    if (row.kind != kind) continue;
    auto notification = std::make_unique<CoreAgentPluginNotification>(agent);
    Pack(row, data, notification->GetDictionary());
    agent->EnqueueNotification(std::move(notification));
    break;
  }
  return CoreErrorCodes::kUnknownError;
}
