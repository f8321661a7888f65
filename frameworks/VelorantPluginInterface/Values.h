// Between the wire's notation and property-list values.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <vector>

#include "agent/include/AgentCalls.h"
#include "platform/Value.h"

namespace plugin_interface {

// Strings, integers, reals, booleans, arrays and objects; null for null and for text that is no UTF-8.
platform::Value ValueOfJson(const nlohmann::json& json);

platform::Dictionary DictionaryOf(const agent_protocol::Record& record);
platform::Array ArrayOf(const std::vector<agent_protocol::Record>& records);

// A number that a dictionary holds as decimal text, as font records do; nothing if absent or beyond 32 bits.
std::optional<uint32_t> NumberInText(const platform::Dictionary& dictionary, std::string_view key);

}  // namespace plugin_interface
