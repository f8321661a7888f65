// The wire's and the configuration's notation.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace agent {

using Json = nlohmann::json;

// What a message says; no object for what is no JSON, and for what is nested deeper than any message is: that would cost
// many times its bytes.
inline Json MessageOfText(std::string_view text) {
  constexpr int kDeepest = 200;
  bool isTooDeep = false;
  const auto look = [&](int depth, Json::parse_event_t, const Json&) {
    isTooDeep |= depth > kDeepest;
    return !isTooDeep;
  };
  Json message = Json::parse(text, look, false);
  return isTooDeep ? Json() : message;
}

// Text for the wire. Paths may hold bytes that are no UTF-8; those are shown as U+FFFD.
inline std::string ToText(const Json& value) { return value.dump(-1, ' ', false, Json::error_handler_t::replace); }

}  // namespace agent
