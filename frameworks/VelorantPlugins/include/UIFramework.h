// The functions that the user-interface framework exports: message boxes, resolve and progress windows, preferences,
// texts. The framework, the plug-in's table and the fakes of the tests are all generated from this one list.
//
// Conventions of all functions, unless a description below says otherwise:
//
// Threads    Main thread only. A function that shows a box blocks until the box is closed. The run loop may run
//            meanwhile, so timers fire and may call other functions of this list.
// Arguments  Borrowed for the call. Strings are NUL-terminated UTF-8. A null string, dictionary or array counts as
//            absent.
// Results    A ValueRef result or out value belongs to the caller, who releases it.
// Texts      A header, message, prompt or label is the key of a localized text; a key without a text is shown as it is.
// Fonts      A font record is a dictionary of strings: "PostScriptName", "Foundry", "Version", "FontKind",
//            "WorkgroupName", "OutlineFileName" and "IsActive" are shown to the user. A workgroup has "WorkgroupName",
//            "WorkgroupID" and "IsLocalPersonal". Numbers may be integers or decimal text.
//
// --- Life ---
// VPFIsVersionCompatible        Nonzero if the framework supports a caller written for this version; only "1.0".
// VPFInitializeFramework        Call first. Takes the details of the host (see below), chooses the language of the
//                               texts and forgets preferences that were read before. A second call starts anew. Returns
//                               0, or 1 if hostDetails is not a dictionary.
// VPFSetHostDetails             Replaces some details. A key that is absent keeps its value.
//
// The details are a dictionary:
//   "HostApp", "PluginVersion", "VelorantPluginInterfaceVersion"   strings
//   "FontManager"           string, the bundle name of the font manager's edition
//   "PreferenceOverrides"   dictionary. Preferences with these keys read as these values, whatever is stored. Overrides
//                           are never stored and last until the next VPFInitializeFramework.
//
// VPFLocalizedString            Returns the text of the key in the user's language, or the key itself if there is none.
// VPFSetIsOnline                Sets what the command box shows as the online state.
//
// --- Preferences: stored at once; shared with other programs that use the same file ---
// VPFGetPreferenceForKey        0 if unset. A boolean is 1 or 0; a value that does not fit a byte is 1.
// VPFGetLongPreferenceForKey    0 if unset. Text counts as the decimal number that it begins with.
// VPFGetStringPreferenceForKey  Null if unset or not a string.
// VPFSetPreferenceForKey        Stores 0 and 1 as booleans, other values as integers.
// VPFSetLongPreferenceForKey    Stores an integer.
// VPFSetStringPreferenceForKey  Stores a string; null removes the key. A preference that cannot be stored is reported
//                               to the user.
// VPFDoPreferencesExist         Nonzero if the defaults of a first start were written before.
//
// --- Boxes ---
// VPFShowAboutBox               Shows the versions.
// VPFShowMessageBox             Returns the button, from 1. buttonSet 2 means two buttons, every other value one.
//                               Closing the box without a button counts as the last one.
// VPFAskForOneString            Nonzero if the user confirmed; then *outText is the text, or `initial` if the user
//                               typed none. Otherwise *outText is null. outText must not be null (the result is then
//                               0).
// VPFShowPreferences            Shows the preferences and stores the user's changes.
// VPFShowResolveFonts           problemFonts is an array of font records, each with "PossibleReplacements", an array of
//                               font records. Writes the chosen one into the problem font as "MatchedFont". A cancel
//                               changes nothing. An empty array shows nothing.
// VPFShowRestrictedFonts        Shows an array of font records. An empty array shows nothing.
// VPFShowMissingFonts           The same for the array "Fonts" of a dictionary.
// VPFShowSelectWorkgroup        Returns the ID of the chosen workgroup, or 0 for none. workgroups is an array.
// VPFShowCommandBox             Returns a VPFCommand. `box` has "Workgroups" (array), "CurrentWorkgroupID" (integer),
//                               "ButtonsEnabled" (flag: there is a document) and "IsOnline" (flag, optional).
//                               *workgroupID receives the chosen workgroup unless the user cancels; it may be null.
// VPFForceSelectWorkgroupWindowToFront
//                               Raises the box of one of the two functions above, if one is open.
//
// --- Progress: there is one window ---
// VPFShowProgress               Opens the window, or updates it if it is open. `progress` is a dictionary made by
//                               ProgressProperties.
// VPFUpdateProgress             Updates the window; does nothing if it is closed.
// VPFHideProgress               Closes the window; does nothing if it is closed.
#pragma once

#include <cstdint>

#include "platform/Value.h"

// The user's choice in the command box.
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
#define UI_FRAMEWORK_FUNCTIONS(X)                                                             \
  X(VPFIsVersionCompatible, int32_t, (const char* version))                                   \
  X(VPFInitializeFramework, int32_t, (platform::ValueRef hostDetails))                        \
  X(VPFLocalizedString, platform::ValueRef, (const char* key))                                \
  X(VPFGetPreferenceForKey, int8_t, (const char* key))                                        \
  X(VPFSetPreferenceForKey, void, (const char* key, int8_t value))                            \
  X(VPFGetLongPreferenceForKey, int32_t, (const char* key))                                   \
  X(VPFSetLongPreferenceForKey, void, (const char* key, int32_t value))                       \
  X(VPFGetStringPreferenceForKey, platform::ValueRef, (const char* key))                      \
  X(VPFSetStringPreferenceForKey, void, (const char* key, const char* value))                 \
  X(VPFDoPreferencesExist, int32_t, ())                                                       \
  X(VPFShowAboutBox, void, ())                                                                \
  X(VPFShowMessageBox, int32_t, (const char* header, const char* message, int32_t buttonSet)) \
  X(VPFAskForOneString, int32_t, (const char* prompt, const char* label, const char* initial, \
                                  platform::ValueRef* outText))                               \
  X(VPFShowPreferences, void, ())                                                             \
  X(VPFShowResolveFonts, void, (platform::ValueRef problemFonts))                             \
  X(VPFShowRestrictedFonts, void, (platform::ValueRef fonts))                                 \
  X(VPFShowSelectWorkgroup, int32_t, (platform::ValueRef workgroups))                         \
  X(VPFShowCommandBox, int32_t, (platform::ValueRef box, int32_t* workgroupID))               \
  X(VPFShowMissingFonts, void, (platform::ValueRef box))                                      \
  X(VPFForceSelectWorkgroupWindowToFront, void, ())                                           \
  X(VPFShowProgress, void, (platform::ValueRef progress))                                     \
  X(VPFUpdateProgress, void, (platform::ValueRef progress))                                   \
  X(VPFHideProgress, void, ())                                                                \
  X(VPFSetIsOnline, void, (int8_t isOnline))                                                  \
  X(VPFSetHostDetails, void, (platform::ValueRef details))
// clang-format on
