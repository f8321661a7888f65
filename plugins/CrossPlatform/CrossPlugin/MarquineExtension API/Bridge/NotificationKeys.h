// The keys in notifications and in the agent's dictionaries that come with them.
#pragma once

#include <string_view>

#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"

// One key for each event of the agent, for example "kPluginNotification_FontActivated".
#define NOTIFICATION_KEY(number, name, payload) \
  inline constexpr std::string_view kPluginNotification_##name = "kPluginNotification_" #name;
AGENT_EVENTS(NOTIFICATION_KEY)
#undef NOTIFICATION_KEY

inline constexpr std::string_view kPluginNotification_FontActivation_Font_ID =
    "kPluginNotification_FontActivation_Font_ID";
inline constexpr std::string_view kPluginNotification_Enabled = "kPluginNotification_Enabled";
inline constexpr std::string_view kPluginNotification_FontPNGs = "kPluginNotification_FontPNGs";

// For long tasks of the agent; never read.
inline constexpr std::string_view kPluginNotification_TaskStarted = "kPluginNotification_TaskStarted";
inline constexpr std::string_view kPluginNotification_TaskProgress = "kPluginNotification_TaskProgress";
inline constexpr std::string_view kPluginNotification_TaskFinished = "kPluginNotification_TaskFinished";
inline constexpr std::string_view kPluginNotification_TaskError = "kPluginNotification_TaskError";
inline constexpr std::string_view kPluginNotification_TaskError_ErrorFontID =
    "kPluginNotification_TaskError_ErrorFontID";
inline constexpr std::string_view kPluginNotification_TaskProgress_ProgressCount =
    "kPluginNotification_TaskProgress_ProgressCount";
inline constexpr std::string_view kPluginNotification_TaskProgress_ProgressMax =
    "kPluginNotification_TaskProgress_ProgressMax";
inline constexpr std::string_view kPluginNotification_TaskProgress_FontID = "kPluginNotification_TaskProgress_FontID";
inline constexpr std::string_view kPluginNotification_NumFonts = "kPluginNotification_NumFonts";

namespace PluginInterface {
inline constexpr std::string_view kIsLoggedInKey = "isLoggedIn";  // boolean
inline constexpr std::string_view kServerTypeKey = "serverType";  // integer, an EServerType
inline constexpr std::string_view kFontIDKey = "fontID";
inline constexpr std::string_view kDisplayNameKey = "displayName";
inline constexpr std::string_view kPostscriptNameKey = "postscriptName";
inline constexpr std::string_view kActivatedKey = "activated";
inline constexpr std::string_view kFontLocationKey = "fontLocation";
inline constexpr std::string_view kFontIsLocalKey = "fontIsLocal";
inline constexpr std::string_view kWorkgroupIDsKey = "workgroupIDs";
inline constexpr std::string_view kSetIDsKey = "setIDs";
inline constexpr std::string_view kSmartSetIDsKey = "smartSetIDs";
inline constexpr std::string_view kSmartListIDKey = "smartListID";
inline constexpr std::string_view kSmartListNameKey = "smartListName";
inline constexpr std::string_view kTextKey = "text";
inline constexpr std::string_view kStepIndexKey = "stepIndex";
inline constexpr std::string_view kNumStepsKey = "numSteps";
inline constexpr std::string_view kPngBytesKey = "pngBytes";
inline constexpr std::string_view kPngFilenameKey = "pngFilename";
inline constexpr std::string_view k2xPNGFilenameKey = "2xPNGFilename";
}  // namespace PluginInterface
