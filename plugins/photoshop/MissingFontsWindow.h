// The host's "Missing Fonts" window: seen at the moment it would appear, and dismissed where the fonts are now there. Main
// thread only.
#pragma once

#include <string>
#include <vector>

#include "platform/Window.h"

// Puts the override in place of the platform's order-window method; called once, never undone.
void SwizzleNSWindowOrderOverride();

// Marks of the window, in seven languages.
const std::vector<std::string>& suppressibleTitles();
bool hasSuppressibleTitle(const platform::Window& window);
bool isSuppressibleWindow(const platform::Window& window);
// Sends Escape to a window of the layout that the host builds; true if it was sent.
bool clickPSMissingFontsWindowCancelButton(platform::Window& window);
// Runs for every window that the host orders, and always orders it as asked.
void orderOverrideWindow(platform::Window& window, platform::WindowOrdering place, int relativeTo);

// Whether an alert of this text is answered without being shown: the result is then 1000. Otherwise it is shown, with
// `runModal`, and its result given back.
int runModalOverride(const std::string& messageText, int (*runModal)(const std::string& messageText));

// The platform's method back in place; with what is pending of ReplaceMissingFonts.h.
void ResetMissingFontsWindowForTesting();
