// Converts between JSON and property-list values.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <vector>

#include "agent/include/AgentCalls.h"
#include "platform/Value.h"

namespace plugin_interface {

// Converts strings, integers, reals, booleans, arrays and objects. Returns null for null and for text that is not valid
// UTF-8.
platform::Value ValueOfJson(const nlohmann::json& json);

platform::Dictionary DictionaryOf(const agent_protocol::Record& record);
platform::Array ArrayOf(const std::vector<agent_protocol::Record>& records);

// Reads a number that is stored as decimal text, as in font records; nothing if it is missing or does not fit 32 bits.
std::optional<uint32_t> NumberInText(const platform::Dictionary& dictionary, std::string_view key);

}  // namespace plugin_interface
