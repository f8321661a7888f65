// Between the wire's notation and property-list values.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "platform/Value.h"

namespace plugin_interface {

// The agent's answer is not of the agreed form.
struct BadAnswer : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Strings, integers, reals, booleans, arrays and objects; null for null and for text that is no UTF-8.
platform::Value ValueOfJson(const nlohmann::json& json);

// An integer of 32 bits, with or without a sign, as its bits; a list of such. Anything else throws BadAnswer.
uint32_t NumberOfJson(const nlohmann::json& json);
std::vector<uint32_t> NumbersOfJson(const nlohmann::json& json);

// A number that a dictionary holds as decimal text, as font records do; nothing if absent or beyond 32 bits.
std::optional<uint32_t> NumberInText(const platform::Dictionary& dictionary, std::string_view key);

}  // namespace plugin_interface
