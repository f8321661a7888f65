// The host's "Missing Fonts" window.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/Window.h"

namespace host {

// Those of the names that stand for a font that is not active now. The name of the font that text data keeps for invisible
// text stands for none.
std::vector<std::string> MissingFonts(const std::vector<std::string>& names);

// Makes the window and orders it to the front, through the order-window method in force. Null if it was dismissed while it
// was ordered; otherwise it shows, without holding up the host, until the returned object goes. What leaves the method in
// force as an exception is reported, and the window is shown.
std::shared_ptr<platform::Window> ShowMissingFontsWindow(const std::vector<std::string>& missing);

}  // namespace host
