// How boxes and progress reach the user. The program with the terminal (the host) installs a presenter. Libraries call
// the functions below and never use the terminal themselves. Main thread only.
#pragma once

#include "platform/Value.h"

namespace platform {

// A box is a dictionary:
//   "Kind"     string, one of the kinds below
//   "Header", "Message"  strings, may be absent
//   "Buttons"  array of strings, the first is the default (answer 1), then 2 ...; absent for a box that can only be
//              closed
// and what its kind brings along:
//   "message"     "Key": the name of the message, the same in every language, if it has one
//   "text"        asks for one line: "Default"
//   "save-folder" asks for the path of a folder: "Default", a name for it
//   "resolve"     "Fonts": font records, each with "PostScriptName", "Description" and, unless nothing was found,
//                 "PossibleReplacements", an array of such records, the best first
//   "restricted", "missing"  "Fonts": such records without replacements
//   "workgroup"   "Workgroups": dictionaries with "Name", "ID" (integer), "IsLocalPersonal" (boolean)
//   "command"     the same, "CurrentWorkgroupID" (integer) as the preset choice, and "ButtonsEnabled", a boolean for
//                 each button
//   "about"       nothing
//   "preferences" "Preferences": dictionaries with "Key", "Label" and "Value" (boolean or integer)
// The answer is a dictionary:
//   "Button"      integer from 1; absent or 0 when the user closed the box
//   "Text"        string, for "text" and "save-folder"
//   "Choice"      integer, the ID of the chosen workgroup
//   "Choices"     dictionary, for "resolve": PostScript name to the index of the chosen replacement, from 0; fonts may
//                 be left out
//   "Preferences" dictionary, for "preferences": key to new value, of the type that was shown; others may be left out
struct Presenter {
  void* context = nullptr;
  // Shows the box and blocks until it is closed. The caller owns the result; null means closed.
  ValueRef (*runBox)(void* context, ValueRef box) = nullptr;
  // "WindowTitle", "Header", "Status" strings, "CurrentProgress", "MaxProgress" integers, "IsIndeterminate" boolean or
  // integer.
  void (*showProgress)(void* context, ValueRef progress) = nullptr;
  void (*updateProgress)(void* context, ValueRef progress) = nullptr;
  void (*hideProgress)(void* context) = nullptr;
  // Draws the user's attention to the current box.
  void (*bringBoxToFront)(void* context) = nullptr;
};

// Without a presenter or member, a box is written to standard error as one line and counts as answered with button 1,
// and the rest is dropped.
PLATFORM_API void SetPresenter(const Presenter* presenter);
PLATFORM_API Dictionary RunBox(const Dictionary& box);
PLATFORM_API void ShowProgress(const Dictionary& progress);
PLATFORM_API void UpdateProgress(const Dictionary& progress);
PLATFORM_API void HideProgress();
PLATFORM_API void BringBoxToFront();

}  // namespace platform
