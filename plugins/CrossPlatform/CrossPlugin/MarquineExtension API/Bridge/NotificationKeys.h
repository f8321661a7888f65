// Keys of notifications, and of the agent's dictionaries that come with them.
#pragma once

#include <string_view>

inline constexpr std::string_view kPluginNotification_AgentShutdown = "kPluginNotification_AgentShutdown";
inline constexpr std::string_view kPluginNotification_OnlineStateChanged = "kPluginNotification_OnlineStateChanged";
inline constexpr std::string_view kPluginNotification_LoggedInStateChanged = "kPluginNotification_LoggedInStateChanged";
inline constexpr std::string_view kPluginNotification_WorkgroupsChanged = "kPluginNotification_WorkgroupsChanged";
inline constexpr std::string_view kPluginNotification_UserPermissionsChanged =
    "kPluginNotification_UserPermissionsChanged";
inline constexpr std::string_view kPluginNotification_FontActivated = "kPluginNotification_FontActivated";
inline constexpr std::string_view kPluginNotification_FontDeactivated = "kPluginNotification_FontDeactivated";
inline constexpr std::string_view kPluginNotification_FontMissing = "kPluginNotification_FontMissing";
inline constexpr std::string_view kPluginNotification_FontActivation_Font_ID =
    "kPluginNotification_FontActivation_Font_ID";
inline constexpr std::string_view kPluginNotification_GoogleWebFontsEnabled =
    "kPluginNotification_GoogleWebFontsEnabled";
inline constexpr std::string_view kPluginNotification_Enabled = "kPluginNotification_Enabled";
inline constexpr std::string_view kPluginNotification_GoogleReplicationProgress =
    "kPluginNotification_GoogleReplicationProgress";
inline constexpr std::string_view kPluginNotification_GoogleReplicationStopped =
    "kPluginNotification_GoogleReplicationStopped";
inline constexpr std::string_view kPluginNotification_PreviewPNGsRendered = "kPluginNotification_PreviewPNGsRendered";
inline constexpr std::string_view kPluginNotification_FontPNGs = "kPluginNotification_FontPNGs";
inline constexpr std::string_view kPluginNotification_SmartListsChanged = "kPluginNotification_SmartListsChanged";
inline constexpr std::string_view kPluginNotification_BulkReplicationProgress =
    "kPluginNotification_BulkReplicationProgress";
inline constexpr std::string_view kPluginNotification_BulkReplicationStopped =
    "kPluginNotification_BulkReplicationStopped";
inline constexpr std::string_view kPluginNotification_IncrementalReplicationProgress =
    "kPluginNotification_IncrementalReplicationProgress";
inline constexpr std::string_view kPluginNotification_IncrementalReplicationStopped =
    "kPluginNotification_IncrementalReplicationStopped";
inline constexpr std::string_view kPluginNotification_PanelDataChanged = "kPluginNotification_PanelDataChanged";
inline constexpr std::string_view kPluginNotification_DesignActivationNonCompliant =
    "kPluginNotification_DesignActivationNonCompliant";
inline constexpr std::string_view kPluginNotification_OfflineDownloadFinished =
    "kPluginNotification_OfflineDownloadFinished";
inline constexpr std::string_view kPluginNotification_FontServerReplicationProgress =
    "kPluginNotification_FontServerReplicationProgress";
inline constexpr std::string_view kPluginNotification_FontServerReplicationStopped =
    "kPluginNotification_FontServerReplicationStopped";

namespace PluginInterface {
inline constexpr std::string_view kIsLoggedInKey = "isLoggedIn";
inline constexpr std::string_view kServerTypeKey = "serverType";
}  // namespace PluginInterface
