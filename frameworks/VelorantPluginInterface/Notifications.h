// The callbacks that clients of the library have registered, and the delivery of the agent's notifications to them.
// Registrations belong to the process and outlive connections: after a relaunch of the agent nobody registers again.
#pragma once

#include <nlohmann/json.hpp>

#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"

namespace plugin_interface {

// A callback that is registered already stays so.
void AddCallback(PluginInterface::NotificationCallback callback);
// After it has returned the callback does not run and is not called any more, unless it is the callback that asks.
void RemoveCallback(PluginInterface::NotificationCallback callback);

// Calls every registered callback with one message of the agent's, on the calling thread. A message that is no
// notification, or carries something else than its kind does, is dropped.
void Deliver(const nlohmann::json& message);

}  // namespace plugin_interface
