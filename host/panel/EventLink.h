// The host's side of the extension service (frameworks/PlugPlug): how the panel's page hears the plug-in and speaks to it.
// Main thread only.
#pragma once

#include <functional>
#include <string>

#include "frameworks/PlugPlug/include/PlugPlugEvents.h"
#include "platform/Bundle.h"

namespace panel {

inline constexpr const char* kPanelToPlugin = "com.velorant.PanelToPlugin";
inline constexpr const char* kPluginToPanel = "com.velorant.PluginToPanel";

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
  // kPanelToPlugin is lost: pages may cause no other. So is one that nobody listens to yet.
  void Dispatch(const std::string& type, const std::string& data);

 private:
  using Listen = csxs::event::EventErrorCode (*)(const char*, csxs::event::EventCallback, void*);
  using DispatchEvent = csxs::event::EventErrorCode (*)(const csxs::event::Event*);
  template <class Function>
  Function Find(const char* name) const;
  static void Receive(const csxs::event::Event* event, void* context);

  platform::BundleRef bundle_;
  std::function<void(const std::string& type, const std::string& data)> onEvent_;
  Listen removeListener_ = nullptr;
  DispatchEvent dispatch_ = nullptr;
};

}  // namespace panel
