// The user-interface framework's exported functions: message boxes, resolve and progress windows, preferences, texts.
// One list from which the framework, the plug-in's table and the fakes of the tests are made. Main thread only.
//
// Keys and texts are NUL-terminated UTF-8. A ValueRef result or out value belongs to the caller; arguments are borrowed.
//
// VPFInitializeFramework and VPFSetHostDetails take a dictionary of details about the host; a key that is absent changes
// nothing:
//   "HostApp", "PluginVersion", "VelorantPluginInterfaceVersion"  strings
//   "FontManager"          string, the bundle name of the font manager's edition
//   "PreferenceOverrides"  dictionary: the preferences of these keys read as these values, whatever is stored. They are
//                          never stored and last until the framework is initialized again.
#pragma once

#include <cstdint>

#include "platform/Value.h"

// What the user chose in the command box.
enum VPFCommand : int32_t {
  kVPFCommandCancelled = -1,
  kVPFCommandAbout = 2,
  kVPFCommandPreferences = 3,
  kVPFCommandCollectForOutput = 4,
  kVPFCommandMakeDocumentSet = 5,
  kVPFCommandCheckDocumentFonts = 6,
};

// X(name, result, (parameters)) in the order of the table.
// clang-format off
#define UI_FRAMEWORK_FUNCTIONS(X)                                                                                     \
  X(VPFIsVersionCompatible, int32_t, (const char* version))                      /* nonzero: this version will do */  \
  X(VPFInitializeFramework, int32_t, (platform::ValueRef hostDetails))           /* 0: success */                     \
  X(VPFLocalizedString, platform::ValueRef, (const char* key))                   /* the key itself if unknown */      \
  X(VPFGetPreferenceForKey, int8_t, (const char* key))                           /* 0 if unset */                     \
  X(VPFSetPreferenceForKey, void, (const char* key, int8_t value))                                                    \
  X(VPFGetLongPreferenceForKey, int32_t, (const char* key))                      /* 0 if unset */                     \
  X(VPFSetLongPreferenceForKey, void, (const char* key, int32_t value))                                               \
  X(VPFGetStringPreferenceForKey, platform::ValueRef, (const char* key))         /* null if unset */                  \
  X(VPFSetStringPreferenceForKey, void, (const char* key, const char* value))                                         \
  X(VPFDoPreferencesExist, int32_t, ())                                                                               \
  X(VPFShowAboutBox, void, ())                                                                                        \
  X(VPFShowMessageBox, int32_t, (const char* header, const char* message, int32_t buttonSet)) /* the button, from 1 */\
  X(VPFAskForOneString, int32_t, (const char* prompt, const char* label, const char* initial,                         \
                                  platform::ValueRef* outText))                  /* nonzero: confirmed */             \
  X(VPFShowPreferences, void, ())                                                                                     \
  X(VPFShowResolveFonts, void, (platform::ValueRef problemFonts))                /* writes the user's choices in */   \
  X(VPFShowRestrictedFonts, void, (platform::ValueRef fonts))                                                         \
  X(VPFShowSelectWorkgroup, int32_t, (platform::ValueRef workgroups))                                                 \
  X(VPFShowCommandBox, int32_t, (platform::ValueRef box, int32_t* workgroupID))  /* a VPFCommand */                   \
  X(VPFShowMissingFonts, void, (platform::ValueRef box))                                                              \
  X(VPFForceSelectWorkgroupWindowToFront, void, ())                                                                   \
  X(VPFShowProgress, void, (platform::ValueRef progress))                                                             \
  X(VPFUpdateProgress, void, (platform::ValueRef progress))                                                           \
  X(VPFHideProgress, void, ())                                                                                        \
  X(VPFSetIsOnline, void, (int8_t isOnline))                                                                          \
  X(VPFSetHostDetails, void, (platform::ValueRef details))
// clang-format on
