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

// Exchanges the platform's run-modal method of alerts for the override below. This host shows its missing fonts in a
// window, so nothing calls it here.
void SwizzleNSAlertRunModal();
// Returns 1000 without showing an alert about missing fonts, and 0 for an alert within an alert. Shows any other through
// the platform's method and returns its answer. Only in force after the exchange.
int runModalOverride(platform::Alert& alert);

// The platform's methods back in place; with what is pending of ReplaceMissingFonts.h.
void ResetMissingFontsWindowForTesting();
