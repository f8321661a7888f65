// How boxes and progress reach the user. The program with the terminal (the host) sets a presenter; libraries that have
// something to show call the functions below and never touch the terminal themselves.
#pragma once

#include "platform/Value.h"

namespace platform {

// A box is a dictionary:
//   "Kind"     string: "message", "text", "resolve", "restricted", "workgroup", "command", "missing", "about",
//              "preferences", "save-folder"
//   "Header", "Message"  strings, may be absent
//   "Buttons"  array of strings, the first is the default (answer 1), then 2 ...
//   "Default"  string, for "text" and "save-folder"
//   and what the kind brings along: "Fonts" (array of font records), "Workgroups" (array), "Command" (dictionary) ...
// The answer is a dictionary: "Button" integer (from 1; 0 when the user closed the box), "Text" string, "Choice" integer,
// "Choices" dictionary (PostScript name to index of the chosen replacement, from 0), "Preferences" dictionary.
struct Presenter {
  void* context = nullptr;
  // The result is owned by the caller; null counts as closed. Runs modally.
  ValueRef (*runBox)(void* context, ValueRef box) = nullptr;
  // "WindowTitle", "Header", "Status" strings, "CurrentProgress", "MaxProgress" integers, "IsIndeterminate" boolean.
  void (*showProgress)(void* context, ValueRef progress) = nullptr;
  void (*updateProgress)(void* context, ValueRef progress) = nullptr;
  void (*hideProgress)(void* context) = nullptr;
};

// Null or a null member: boxes are written to standard error as one line and count as closed with button 1.
PLATFORM_API void SetPresenter(const Presenter* presenter);
PLATFORM_API Dictionary RunBox(const Dictionary& box);
PLATFORM_API void ShowProgress(const Dictionary& progress);
PLATFORM_API void UpdateProgress(const Dictionary& progress);
PLATFORM_API void HideProgress();

}  // namespace platform
