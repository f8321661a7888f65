// The keys of panel messages and the words that stand in them. Panels depend on these texts.
#pragma once

#include <string>

namespace panel_keys {

inline const std::string kMessageIDKey = "messageID";
inline const std::string kReturnCodeKey = "returnCode";
inline const std::string kFontIDKey = "fontID";
inline const std::string kFontIDsKey = "fontIDs";
inline const std::string kHighPriorityFontIDsKey = "highPriorityFontIDs";
inline const std::string kPostscriptNameKey = "postscriptName";
inline const std::string kDisplayNameKey = "displayName";
inline const std::string kFontImageKey = "image";
inline const std::string kFontsKey = "fonts";
inline const std::string kPNGFilenameKey = "pngFilename";
inline const std::string k2xPNGFilenameKey = "2xPNGFilename";
inline const std::string kFilenameKey = "filename";
inline const std::string kConflictIDKey = "conflictID";
inline const std::string kIsConflictErrorKey = "isConflictError";
inline const std::string kVersionKey = "version";
inline const std::string kSmartListIDKey = "smartListID";
inline const std::string kSmartListNameKey = "smartListName";
inline const std::string kSmartListKey = "smartList";
inline const std::string kSmartListsKey = "smartLists";
inline const std::string kListDefinitionKey = "listDefinition";
inline const std::string kWorkgroupIDsKey = "workgroupIDs";
inline const std::string kSetIDsKey = "setIDs";
inline const std::string kSmartSetIDsKey = "smartSetIDs";
inline const std::string kIsEnabledKey = "isEnabled";
inline const std::string kIsReplicatingKey = "isReplicating";
inline const std::string kReplicationModeKey = "replicationMode";
inline const std::string kIsLoggedInKey = "isLoggedIn";
inline const std::string kIsOnlineKey = "isOnline";
inline const std::string kIsStandaloneKey = "isStandalone";
inline const std::string kServerKey = "server";
inline const std::string kPortKey = "port";
inline const std::string kUsernameKey = "username";
inline const std::string kIsWindowsKey = "isWindows";
inline const std::string kCanAccessGoogleFontsKey = "canAccessGoogleFonts";
inline const std::string kHeightKey = "height";
inline const std::string kWidthKey = "width";
inline const std::string kWindowHeightKey = "windowHeight";
inline const std::string kWindowWidthKey = "windowWidth";
inline const std::string kSelectionKey = "selection";
inline const std::string kSavesSmartListKey = "savesSmartList";
inline const std::string kTextKey = "text";
inline const std::string kStepIndexKey = "stepIndex";
inline const std::string kNumStepsKey = "numSteps";

// In no message today. They are reserved: old panels know them.
inline const std::string kAddressKey = "address";
inline const std::string kPasswordKey = "password";
inline const std::string kServersKey = "servers";
inline const std::string kNumFontsKey = "numFonts";
inline const std::string kDeprecatedCanAccessLumetypeFontsKey = "canAccessLumetypeFonts";
inline const std::string kDeprecatedIsLumetypeOnlyKey = "isLumetypeOnly";
inline const std::string kDeprecatedFontLocationLumetypeKey = "lumetype";
inline const std::string kIsCtrlPressedKey = "isCtrlPressed";
inline const std::string kIsShiftPressedKey = "isShiftPressed";
inline const std::string kIsAltPressedKey = "isAltPressed";
inline const std::string kKeyCodeKey = "keyCode";

// The location of a font in a list of fonts.
inline const std::string kFontLocationDesktopKey = "desktop";
inline const std::string kFontLocationSystemKey = "system";
inline const std::string kFontLocationGoogleKey = "google";
inline const std::string kFontLocationTypekitKey = "typekit";

}  // namespace panel_keys
