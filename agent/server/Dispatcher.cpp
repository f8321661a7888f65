#include "agent/server/Dispatcher.h"

#include <exception>
#include <new>

#include "agent/include/MessageDepth.h"

namespace agent {

void Dispatcher::RefuseAll(ResultCode code) {
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
  if (heldOf_[client] >= limits_.requestsOfClient) return false;
  if (heldBytes_ + cost > limits_.bytesOfAll) return false;
  held_.push_back({client, std::string(message)});
  heldBytes_ += cost;
  ++heldOf_[client];
  return true;
}

Dispatcher::Reply Dispatcher::ReplyTo(const Request& request) {
  const auto entry = entries_.find(request.call);
  if (entry == entries_.end()) return {unknownCode_};
  ResultCode code = kUnknownError;
  std::string problem;
  try {
    return entry->second.handler(request.client, request.arguments);
  } catch (const BadMessage& error) {
    code = kInvalidParam;
    problem = error.what();
  } catch (const StoreError& error) {
    code = kDatabaseError;
    problem = error.what();
  } catch (const std::bad_alloc&) {
    code = kOutOfMemory;
    problem = "there is not enough memory";
  } catch (const std::exception& error) {
    problem = error.what();  // a client that gets no reply would wait for one
  }
  events_.report(request.call + ": " + problem);
  return {code};
}

void Dispatcher::Serve(const Request& request) { Send(request, ReplyTo(request)); }

// Lists of values would copy the result, which can be large.
void Dispatcher::Send(const Request& request, Reply reply) {
  Json message = {{"id", request.id}, {"code", reply.code}};
  message["result"] = std::move(reply.result);
  events_.send(request.client, ToText(message));
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
