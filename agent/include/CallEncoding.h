// Converts the arguments and results of calls (AgentCalls.h) to JSON and back.
//
// Reading is strict: a missing member, another type, or a number that does not fit 32 bits throws BadMessage, which
// names the member. Unknown members are ignored, so that either side may be newer.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "agent/include/AgentCalls.h"

namespace agent_protocol {

using Json = nlohmann::json;

struct BadMessage : std::runtime_error {
  using std::runtime_error::runtime_error;
};

inline constexpr size_t kAnyLength = SIZE_MAX;

// Text for the socket. Bytes that are not valid UTF-8, which paths may contain, become U+FFFD.
inline std::string ToText(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace); }

namespace encoding {

template <class T>
concept HasFields = requires(T& value) {
  value.Fields();
};

// Calls visit(name, member) for each member. The names come from the declaration: "fontIDs, kind".
template <HasFields T, class Visit>
void ForEachField(T& value, const Visit& visit) {
  std::string_view names = std::remove_cvref_t<T>::kFieldNames;
  const auto nextName = [&names] {
    const size_t end = names.find(',');
    const std::string_view name = names.substr(0, end);
    names.remove_prefix(end == std::string_view::npos ? names.size() : end + 2);
    return name;
  };
  std::apply([&](auto&... members) { (visit(nextName(), members), ...); }, value.Fields());
}

// The position of a value, for error texts, and the longest list that is accepted.
struct Place {
  std::string_view name;
  size_t longestList = kAnyLength;
};

inline void Check(bool isGood, const Place& place, const char* problem) {
  if (!isGood) throw BadMessage(std::string(place.name) + " " + problem);
}

inline void Read(const Json& json, bool& out, const Place& place) {
  Check(json.is_boolean(), place, "is not a boolean");
  out = json.get<bool>();
}

// Pseudo IDs such as -2 for all workgroups are sent as their 32 bits.
inline void Read(const Json& json, uint32_t& out, const Place& place) {
  Check(json.is_number_integer(), place, "is not an integer");
  const bool isUnsigned = json.is_number_unsigned();
  Check(isUnsigned ? json.get<uint64_t>() <= UINT32_MAX : json.get<int64_t>() >= INT32_MIN, place,
        "does not fit 32 bits");
  out = isUnsigned ? static_cast<uint32_t>(json.get<uint64_t>()) : static_cast<uint32_t>(json.get<int64_t>());
}

inline void Read(const Json& json, std::string& out, const Place& place) {
  Check(json.is_string(), place, "is not a string");
  out = json.get_ref<const std::string&>();
}

inline void Read(const Json& json, Record& out, const Place& place) {
  Check(json.is_object(), place, "is not an object");
  for (const auto& [key, value] : json.items()) {
    Check(value.is_string(), place, "holds a member that is not a string");
    out[key] = value.get_ref<const std::string&>();
  }
}

template <HasFields T>
void Read(const Json& json, T& out, const Place& place);

template <class T>
void Read(const Json& json, std::vector<T>& out, const Place& place) {
  Check(json.is_array(), place, "is not an array");
  Check(json.size() <= place.longestList, place, "is too long");
  out.resize(json.size());
  for (size_t i = 0; i < json.size(); ++i) Read(json[i], out[i], place);
}

template <HasFields T>
void Read(const Json& json, T& out, const Place& place) {
  Check(json.is_object(), place, "is not an object");
  ForEachField(out, [&](std::string_view name, auto& member) {
    const auto found = json.find(name);
    Check(found != json.end(), {name}, "is missing");
    Read(*found, member, {name, place.longestList});
  });
}

template <class T>
Json Write(const T& value) {
  return value;
}

template <HasFields T>
Json Write(const T& value);

template <HasFields T>
Json Write(const std::vector<T>& list) {
  Json json = Json::array();
  for (const T& entry : list) json.push_back(Write(entry));
  return json;
}

template <HasFields T>
Json Write(const T& value) {
  Json json = Json::object();
  ForEachField(value, [&](std::string_view name, const auto& member) { json[std::string(name)] = Write(member); });
  return json;
}

}  // namespace encoding

template <encoding::HasFields T>
Json ToJson(const T& value) {
  return encoding::Write(value);
}

// Refuses lists that are longer than longestList, anywhere in the value.
template <encoding::HasFields T>
T FromJson(const Json& json, std::string_view name, size_t longestList = kAnyLength) {
  T value;
  encoding::Read(json, value, {name, longestList});
  return value;
}

// Encodes one request. The reply has the same ID.
template <class Call>
std::string RequestText(uint64_t id, const typename Call::Arguments& arguments) {
  return ToText({{"id", id}, {"call", CallName<Call>::kText}, {"arguments", ToJson(arguments)}});
}

}  // namespace agent_protocol
