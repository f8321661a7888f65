// The events between the plug-in and a font panel that the host shows.
//
//   panel to plug-in   `data` is one message of docs/PANEL.md as a JSON object
//   plug-in to panel   `data` is one message as a JSON object in parentheses, "({...})"
//   start              the plug-in asks the host, once per user, to open the panel; `data` is empty
#pragma once

#include <cstdint>

namespace panel_events {

inline constexpr const char* kPanelToPlugin = "com.velorant.PanelToPlugin";
inline constexpr const char* kPluginToPanel = "com.velorant.PluginToPanel";
inline constexpr const char* kStartPanel = "com.velorant.startpanel";

inline constexpr int32_t kApplicationScope = 1;
// The sender in the plug-in's messages.
inline constexpr const char* kPanelApplication = "HTML";

}  // namespace panel_events
