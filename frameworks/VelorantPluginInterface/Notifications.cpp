#include "frameworks/VelorantPluginInterface/Notifications.h"

#include <algorithm>
#include <mutex>
#include <vector>

#include "frameworks/VelorantPluginInterface/Values.h"

namespace plugin_interface {

namespace {

struct Registrations {
  std::recursive_mutex mutex;  // held while callbacks run; one of them may remove itself
  std::vector<PluginInterface::NotificationCallback> callbacks;
};

// Never destroyed: a reader thread may still run when the process ends.
Registrations& Registered() {
  static auto* registrations = new Registrations;
  return *registrations;
}

}  // namespace

void AddCallback(PluginInterface::NotificationCallback callback) {
  Registrations& registered = Registered();
  const std::lock_guard lock(registered.mutex);
  auto& callbacks = registered.callbacks;
  if (std::find(callbacks.begin(), callbacks.end(), callback) == callbacks.end()) callbacks.push_back(callback);
}

void RemoveCallback(PluginInterface::NotificationCallback callback) {
  Registrations& registered = Registered();
  const std::lock_guard lock(registered.mutex);
  std::erase(registered.callbacks, callback);
}

void Deliver(const nlohmann::json& message) {
  const auto kind = message.find("notify");
  if (kind == message.end() || !kind->is_number_unsigned()) return;
  const auto fontID = message.find("fontID");
  const auto payload = message.find("payload");
  uint32_t number = 0;
  platform::Value value;
  void* data = nullptr;
  if (fontID != message.end() && fontID->is_number_unsigned()) {
    number = fontID->get<uint32_t>();
    data = &number;
  } else if (payload != message.end()) {
    value = ValueOfJson(*payload);
    data = value.Ref();
  }
  Registrations& registered = Registered();
  const std::lock_guard lock(registered.mutex);
  const auto callbacks = registered.callbacks;
  for (const auto callback : callbacks)
    callback(static_cast<PluginInterface::ECallbackKind>(kind->get<uint32_t>()), data);
}

}  // namespace plugin_interface
