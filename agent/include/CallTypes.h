// What the arguments and results of calls are made of.
//
// CallEncoding.h converts them to and from JSON. AGENT_FIELDS lists the members that are encoded, under their own
// names. A member may be bool, uint32_t, std::string, Record, a struct with AGENT_FIELDS, or a std::vector of these.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace agent_protocol {

#define AGENT_FIELDS(...)                                       \
  static constexpr std::string_view kFieldNames = #__VA_ARGS__; \
  auto Fields() { return std::tie(__VA_ARGS__); }               \
  auto Fields() const { return std::tie(__VA_ARGS__); }

using Numbers = std::vector<uint32_t>;
using Record = std::map<std::string, std::string>;  // a font or a workgroup; numbers and flags are decimal text

namespace calls {

struct Nothing {
  AGENT_FIELDS()
};

struct IDs {
  Numbers fontIDs;
  AGENT_FIELDS(fontIDs)
};

struct Flags {
  Numbers flags;  // 1 or 0 for each requested font, in that order
  AGENT_FIELDS(flags)
};

struct Value {
  uint32_t value = 0;
  AGENT_FIELDS(value)
};

}  // namespace calls

}  // namespace agent_protocol
