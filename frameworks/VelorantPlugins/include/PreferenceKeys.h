// Every preference of the plug-in, in one table: the framework's preferences box, the plug-in's first start and the
// console are made from it. The framework itself stores any key; an unset one reads as 0 or as no text.
//
// To add a preference: a row here, a getter in Services/VPFInterface.h, and the text KEYLabel in the seven Texts*.cpp
// if it is in the box.
#pragma once

#include <cstdint>
#include <optional>

enum class PreferenceKind {
  kSwitch,  // stored as a boolean, 1 or 0 in the console
  kNumber,  // 32 bits
  kText,
};

struct PreferenceRow {
  const char* key;
  PreferenceKind kind;
  std::optional<int32_t> firstValue;  // written at the first start, when no preferences exist yet
  bool isInBox;                       // the user changes it in the preferences box
  const char* help;                   // for the console; null if the console does not offer it
};

// In the order of the box and of the console's list.
inline constexpr PreferenceRow kPreferenceRows[] = {
    {"EnablePlugin", PreferenceKind::kSwitch, 1, true, "activate the fonts of documents"},
    {"EnableGlyphsure", PreferenceKind::kSwitch, 1, true, "use and write identification data in documents"},
    {"PickBestMatch", PreferenceKind::kSwitch, 1, true, "choose among several files without asking"},
    {"SupportEmbeddedObjects", PreferenceKind::kSwitch, 1, true, "look into embedded objects"},
    {"ActivateEntireFamilies", PreferenceKind::kSwitch, 0, true, "activate the whole family of each font"},
    {"ActivateLocally", PreferenceKind::kSwitch, {}, true, "activate for this user only"},
    {"ActivateGlobally", PreferenceKind::kSwitch, {}, true, "activate for all users"},
    {"CloseFontsOnDocClose", PreferenceKind::kSwitch, 0, true, "give fonts back when their last document closes"},
    {"CloseFontsOnHostAppQuit", PreferenceKind::kSwitch, 1, true, "give fonts back when the host quits"},
    {"SuppressHostAppDialogs", PreferenceKind::kSwitch, 1, true, "dismiss the host's window about missing fonts"},
    {"SuppressPluginCoreDialogs", PreferenceKind::kSwitch, 0, true, "show no boxes of the agent"},
    {"RMF5", PreferenceKind::kNumber, {}, true, "milliseconds until a document is reopened with its fonts"},
    {"EnableLogging", PreferenceKind::kSwitch, {}, true, "keep a diagnostic log"},
    {"SuppressPanelLaunch", PreferenceKind::kSwitch, {}, false, "do not open the font panel by itself"},
    {"CurrentWorkgroup", PreferenceKind::kNumber, {}, false, "the selected workgroup"},
    {"CS5PanelWidth", PreferenceKind::kNumber, 260, false, "width of the font panel"},
    {"CS5PanelHeight", PreferenceKind::kNumber, 350, false, "height of the font panel"},
    // The panel reads it as a number; its first value has always been stored as a switch.
    {"DropDownSelection", PreferenceKind::kSwitch, 0, false, nullptr},
    {"LastAddress", PreferenceKind::kText, {}, false, "server of the last login"},
    {"LastPort", PreferenceKind::kText, {}, false, "port of the last login"},
    {"LastUsername", PreferenceKind::kText, {}, false, "user of the last login"},
};
