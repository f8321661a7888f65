// The host's side of the extension service (frameworks/PlugPlug): how the panel's page hears the plug-in and speaks to
// it. Main thread only.
#pragma once

#include <functional>
#include <string>

#include "frameworks/PlugPlug/include/EventFunctions.h"
#include "frameworks/PlugPlug/include/PanelEvents.h"
#include "platform/Bundle.h"

namespace panel {

class EventLink {
 public:
  // Loads the service's bundle, which the plug-in loads too, and calls `onEvent` for each event to the panel until the
  // object is destroyed. Throws std::runtime_error, which names the bundle, if it can't be loaded.
  EventLink(const std::string& bundleFolder,
            std::function<void(const std::string& type, const std::string& data)> onEvent);
  ~EventLink();
  EventLink(const EventLink&) = delete;
  EventLink& operator=(const EventLink&) = delete;

  // Gives an event of the page to the plug-in, which handles it before this returns. An event of another type than
  // kPanelToPlugin is lost: pages may cause no other. So is one that nobody listens to yet. An exception of the plug-in
  // passes through, as the message for a single smart list always causes one: call this from the run loop, which
  // reports it.
  void Dispatch(const std::string& type, const std::string& data);

 private:
  static void Receive(const csxs::event::Event* event, void* context);

  platform::BundleRef bundle_;
  std::function<void(const std::string& type, const std::string& data)> onEvent_;
  EventFunctions functions_;
};

}  // namespace panel
