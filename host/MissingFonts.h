// The host's "Missing Fonts" window.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/Window.h"

namespace host {

// Returns the names of fonts that are not active. Ignores the name that text data uses for invisible text.
std::vector<std::string> MissingFonts(const std::vector<std::string>& names);

// Creates the window and orders it to the front with the current order-window method. Returns null if it was dismissed
// meanwhile. Otherwise it is visible, and does not block the host, until the returned object is destroyed. If the
// method throws, the exception is reported and the window is shown.
std::shared_ptr<platform::Window> ShowMissingFontsWindow(const std::vector<std::string>& missing);

}  // namespace host
