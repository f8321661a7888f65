#include "agent/Dispatcher.h"

#include <stdexcept>

#include "agent/include/AgentProtocol.h"
#include "agent/include/MessageDepth.h"

namespace agent {

namespace {

struct BadArgument : std::runtime_error {
  using std::runtime_error::runtime_error;
};

uint32_t NumberOf(const Json& value, const char* key) {
  if (!value.is_number_integer()) throw BadArgument(std::string(key) + " is not an integer");
  // Pseudo numbers such as -2 for all workgroups cross the boundary as their 32 bits.
  const bool isUnsigned = value.is_number_unsigned();
  if (isUnsigned ? value.get<uint64_t>() > UINT32_MAX : value.get<int64_t>() < INT32_MIN) {
    throw BadArgument(std::string(key) + " does not fit 32 bits");
  }
  return isUnsigned ? static_cast<uint32_t>(value.get<uint64_t>()) : static_cast<uint32_t>(value.get<int64_t>());
}

}  // namespace

const Json& Arguments::Get(const char* key) const {
  const auto found = json_.find(key);
  if (found == json_.end()) throw BadArgument(std::string(key) + " is missing");
  return *found;
}

std::vector<uint32_t> Arguments::Numbers(const char* key) const {
  const Json& list = Get(key);
  if (!list.is_array()) throw BadArgument(std::string(key) + " is not an array");
  if (list.size() > agent_protocol::kMostNumbers) throw BadArgument(std::string(key) + " is too long");
  std::vector<uint32_t> numbers;
  for (const Json& entry : list) numbers.push_back(NumberOf(entry, key));
  return numbers;
}

uint32_t Arguments::Number(const char* key) const { return NumberOf(Get(key), key); }

std::string Arguments::Text(const char* key) const {
  const Json& text = Get(key);
  if (!text.is_string()) throw BadArgument(std::string(key) + " is not a string");
  return text.get<std::string>();
}

bool Arguments::Flag(const char* key) const {
  const Json& flag = Get(key);
  if (!flag.is_boolean()) throw BadArgument(std::string(key) + " is not a boolean");
  return flag.get<bool>();
}

void Dispatcher::Add(const char* call, Needs needs, Handler handler) { entries_[call] = {needs, std::move(handler)}; }

void Dispatcher::RefuseAll(uint32_t code) {
  entries_.clear();
  unknownCode_ = code;
  Release();
}

void Dispatcher::OnMessage(ClientID client, std::string_view message) {
  Json json = agent_protocol::IsTooDeep(message) ? Json() : Json::parse(message, nullptr, false);
  const bool isRequest = json.is_object() && json.contains("id") && json["id"].is_number_unsigned() &&
                         json.contains("call") && json["call"].is_string() &&
                         (!json.contains("arguments") || json["arguments"].is_object());
  if (!isRequest) {
    events_.breach(client);
    return;
  }
  Request request{client, json["id"], json["call"].get<std::string>(), Json::object()};
  if (json.contains("arguments")) request.arguments = std::move(json["arguments"]);
  const auto entry = entries_.find(request.call);
  const bool mustWait = !isReleased_ && entry != entries_.end() && entry->second.needs == Needs::kFonts;
  if (!mustWait) return Serve(request);
  if (!Hold(client, message)) Send(request, {kNotInitialized});
}

bool Dispatcher::Hold(ClientID client, std::string_view message) {
  const size_t cost = message.size() + sizeof(Held);
  if (heldOf_[client] >= agent_protocol::kMostHeldRequests) return false;
  if (heldBytes_ + cost > agent_protocol::kMostHeldBytesOfAll) return false;
  held_.push_back({client, std::string(message)});
  heldBytes_ += cost;
  ++heldOf_[client];
  return true;
}

Reply Dispatcher::Answer(const Request& request) {
  const auto entry = entries_.find(request.call);
  if (entry == entries_.end()) return {unknownCode_};
  try {
    return entry->second.handler(request.client, Arguments(request.arguments));
  } catch (const BadArgument& error) {
    events_.report(request.call + ": " + error.what());
    return {kInvalidParam};
  } catch (const StoreError& error) {
    events_.report(request.call + ": " + error.what());
    return {kDatabaseError};
  }
}

void Dispatcher::Serve(const Request& request) { Send(request, Answer(request)); }

void Dispatcher::Send(const Request& request, const Reply& reply) {
  events_.send(request.client, ToText({{"id", request.id}, {"code", reply.code}, {"result", reply.result}}));
}

void Dispatcher::OnGone(ClientID client) {
  if (heldOf_.erase(client) == 0) return;
  std::erase_if(held_, [&](const Held& held) { return held.client == client; });
  heldBytes_ = 0;
  for (const Held& held : held_) heldBytes_ += held.message.size() + sizeof(Held);
}

void Dispatcher::Release() {
  isReleased_ = true;
  while (!held_.empty()) {
    const Held held = std::move(held_.front());
    held_.pop_front();
    OnMessage(held.client, held.message);
  }
  heldOf_.clear();
}

}  // namespace agent
