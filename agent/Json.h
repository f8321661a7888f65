// The wire's and the configuration's notation.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace agent {

using Json = nlohmann::json;

// Text for the wire. Paths may hold bytes that are no UTF-8; those are shown as U+FFFD.
inline std::string ToText(const Json& value) { return value.dump(-1, ' ', false, Json::error_handler_t::replace); }

}  // namespace agent
