// The host's end of the events between plug-in and panel: for the part of the host that shows the panel.
//
//   PanelChannel channel;
//   channel.onMessage = [&](std::string_view text) { page.Send(text); };
//   const std::string problem = channel.Open(platform::Bundle::Main()->PrivateFrameworksFolder());
//   ...
//   channel.SendToPlugin(R"({"messageID":66})");
//
// Main thread only. Open it before the plug-in starts, so that the event that asks for the panel is heard.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "frameworks/PlugPlug/include/EventFunctions.h"
#include "frameworks/PlugPlug/include/PanelEvents.h"

class PanelChannel {
 public:
  PanelChannel() = default;
  ~PanelChannel() { Close(); }
  PanelChannel(const PanelChannel&) = delete;
  PanelChannel& operator=(const PanelChannel&) = delete;

  // Gets each message of the plug-in, with its parentheses. The text is valid during the call. A function that sends to the
  // plug-in at once runs within the plug-in's dispatch; post it to the run loop instead.
  std::function<void(std::string_view text)> onMessage;
  // The plug-in asks to open the panel.
  std::function<void()> onStart;

  // Loads the service from the host's folder of frameworks and listens. Returns an empty text, or one line with the
  // reason. The same process-wide service serves the plug-in, which looks in the same folder.
  std::string Open(const std::string& frameworks) {
    std::string problem;
    const std::string path = EventFunctions::FrameworkIn(frameworks);
    mBundle = platform::Bundle::Create(path, &problem);
    if (!mBundle || !mBundle->Load(&problem)) return problem;
    if (!mFunctions.ResolveFrom(*mBundle)) return path + ": lacks a function of the event service";
    mIsOpen = true;
    mFunctions.pfPlugPlugAddEventListener(panel_events::kPluginToPanel, HearMessage, this);
    mFunctions.pfPlugPlugAddEventListener(panel_events::kStartPanel, HearStart, this);
    return "";
  }
  bool IsOpen() const { return mIsOpen; }

  void Close() {
    if (!mIsOpen) return;
    mFunctions.pfPlugPlugRemoveEventListener(panel_events::kPluginToPanel, HearMessage, this);
    mFunctions.pfPlugPlugRemoveEventListener(panel_events::kStartPanel, HearStart, this);
    mIsOpen = false;
  }

  // Sends one message of the panel: a JSON object, no parentheses. The plug-in carries it out before this returns; its
  // replies come to onMessage meanwhile. Returns false if the channel is closed. An exception of the plug-in, as for a
  // text that is no UTF-8, passes through; the run loop reports it if this is called from one of its callbacks.
  bool SendToPlugin(const std::string& text) {
    if (!mIsOpen) return false;
    const csxs::event::Event event{panel_events::kPanelToPlugin, panel_events::kApplicationScope,
                                   panel_events::kPanelApplication, nullptr, text.c_str()};
    return mFunctions.pfPlugPlugDispatchEvent(&event) == csxs::event::kEventErrorCode_Success;
  }

 private:
  static void HearMessage(const csxs::event::Event* event, void* context) {
    const auto& channel = *static_cast<PanelChannel*>(context);
    if (channel.onMessage && event->data) channel.onMessage(event->data);
  }
  static void HearStart(const csxs::event::Event*, void* context) {
    const auto& channel = *static_cast<PanelChannel*>(context);
    if (channel.onStart) channel.onStart();
  }

  platform::BundleRef mBundle;
  EventFunctions mFunctions;
  bool mIsOpen = false;
};
