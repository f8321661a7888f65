#include "host/panel/EventLink.h"

#include <stdexcept>

namespace panel {

namespace {
constexpr int32_t kApplicationScope = 1;
}

EventLink::EventLink(const std::string& bundleFolder,
                     std::function<void(const std::string& type, const std::string& data)> onEvent)
    : onEvent_(std::move(onEvent)) {
  std::string problem;
  bundle_ = platform::Bundle::Create(bundleFolder, &problem);
  if (!bundle_ || !bundle_->Load(&problem)) throw std::runtime_error(problem);
  removeListener_ = Find<Listen>("PlugPlugRemoveEventListener");
  dispatch_ = Find<DispatchEvent>("PlugPlugDispatchEvent");
  Find<Listen>("PlugPlugAddEventListener")(kPluginToPanel, Receive, this);
}

EventLink::~EventLink() { removeListener_(kPluginToPanel, Receive, this); }

template <class Function>
Function EventLink::Find(const char* name) const {
  void* const function = bundle_->FunctionForName(name);
  if (!function) throw std::runtime_error(bundle_->Folder() + ": has no function " + name);
  return reinterpret_cast<Function>(function);
}

void EventLink::Receive(const csxs::event::Event* event, void* context) {
  if (event->data) static_cast<EventLink*>(context)->onEvent_(event->type, event->data);
}

void EventLink::Dispatch(const std::string& type, const std::string& data) {
  if (type != kPanelToPlugin) return;
  const csxs::event::Event event{type.c_str(), kApplicationScope, "HTML", nullptr, data.c_str()};
  dispatch_(&event);
}

}  // namespace panel
