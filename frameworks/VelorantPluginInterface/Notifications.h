// The callbacks that clients of the library have registered, and the delivery of the agent's notifications to them.
// Registrations belong to the process, so they survive a relaunch of the agent.
#pragma once

#include <nlohmann/json.hpp>

#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"

namespace plugin_interface {

// Does nothing if the callback is registered already.
void AddCallback(PluginInterface::NotificationCallback callback);
// When it returns, the callback is not running and is not called any more, unless the callback itself is the caller.
void RemoveCallback(PluginInterface::NotificationCallback callback);

// Calls every registered callback with one message of the agent, on the calling thread. Drops a message that is not a
// notification or whose payload does not match its kind.
void Deliver(const nlohmann::json& message);

}  // namespace plugin_interface
