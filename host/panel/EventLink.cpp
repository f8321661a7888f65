#include "host/panel/EventLink.h"

#include <stdexcept>

namespace panel {

EventLink::EventLink(const std::string& bundleFolder,
                     std::function<void(const std::string& type, const std::string& data)> onEvent)
    : onEvent_(std::move(onEvent)) {
  std::string problem;
  bundle_ = platform::Bundle::Create(bundleFolder, &problem);
  if (!bundle_ || !bundle_->Load(&problem)) throw std::runtime_error(problem);
  if (!functions_.ResolveFrom(*bundle_)) throw std::runtime_error(bundle_->Folder() + ": lacks a function");
  functions_.pfPlugPlugAddEventListener(panel_events::kPluginToPanel, Receive, this);
}

EventLink::~EventLink() { functions_.pfPlugPlugRemoveEventListener(panel_events::kPluginToPanel, Receive, this); }

void EventLink::Receive(const csxs::event::Event* event, void* context) {
  if (event->data) static_cast<EventLink*>(context)->onEvent_(event->type, event->data);
}

void EventLink::Dispatch(const std::string& type, const std::string& data) {
  if (type != panel_events::kPanelToPlugin) return;
  const csxs::event::Event event{type.c_str(), panel_events::kApplicationScope, panel_events::kPanelApplication,
                                 nullptr, data.c_str()};
  functions_.pfPlugPlugDispatchEvent(&event);
}

}  // namespace panel
