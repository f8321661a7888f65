// Intercepts the host's "Missing Fonts" window when it is about to appear, and dismisses it if the fonts are available
// by now. Main thread only.
#pragma once

#include <string>
#include <vector>

#include "platform/Window.h"

// Replaces the platform's order-window method by the override. Called once, never undone.
void SwizzleNSWindowOrderOverride();

// Texts that identify the window, in seven languages.
const std::vector<std::string>& suppressibleTitles();
bool hasSuppressibleTitle(const platform::Window& window);
bool isSuppressibleWindow(const platform::Window& window);
// Sends Escape to the window if it has the layout of the missing-fonts window. Returns true if it was sent.
bool clickPSMissingFontsWindowCancelButton(platform::Window& window);
// Runs for every window that the host orders. Always orders the window as asked.
void orderOverrideWindow(platform::Window& window, platform::WindowOrdering place, int relativeTo);

// Replaces the platform's run-modal method of alerts by the override below. This host shows missing fonts in a window,
// so nothing calls this function here.
void SwizzleNSAlertRunModal();
// Returns 1000 for an alert about missing fonts, without showing it, and 0 for an alert within an alert. Shows any
// other alert with the platform's method and returns its answer. Effective only after SwizzleNSAlertRunModal.
int runModalOverride(platform::Alert& alert);

// Restores the platform's methods and resets what is pending in ReplaceMissingFonts.h.
void ResetMissingFontsWindowForTesting();
