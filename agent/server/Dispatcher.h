// Takes requests apart, finds who serves them and puts replies together.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "agent/activation/Activations.h"
#include "agent/include/AgentProtocol.h"
#include "agent/include/CallEncoding.h"
#include "agent/include/ResultCodes.h"
#include "agent/store/Json.h"

namespace agent {

using namespace agent_protocol;  // the calls and their codes

// What a handler returns: a result, a code, or both where a call that failed in part has a result all the same.
template <class Call>
struct Answer {
  Answer(ResultCode failure) : code(failure) {}
  Answer(typename Call::Result success) : result(std::move(success)) {}
  Answer(ResultCode both, typename Call::Result partly) : code(both), result(std::move(partly)) {}

  ResultCode code = kSuccess;
  std::optional<typename Call::Result> result;
};

enum class Needs {
  kNothing,
  // Held back until the first scan has finished: "not found" must not mean "not yet". A client that has too much
  // waiting gets kNotInitialized at once.
  kFonts,
};

class Dispatcher {
 public:
  struct Events {
    std::function<void(ClientID, const std::string& message)> send;
    std::function<void(ClientID)> breach;  // what came is no request
    std::function<void(const std::string& line)> report;
  };

  // What may wait for the first scan.
  struct Limits {
    size_t requestsOfClient = agent_protocol::kMostHeldRequests;
    size_t bytesOfAll = agent_protocol::kMostHeldBytesOfAll;
  };

  explicit Dispatcher(Events events) : Dispatcher(std::move(events), Limits()) {}
  Dispatcher(Events events, const Limits& limits) : events_(std::move(events)), limits_(limits) {}

  // handler(ClientID, const Call::Arguments&) returns Answer<Call>. It is not called if the arguments do not fit: then
  // the client gets kInvalidParam. A StoreError that it throws gives the client kDatabaseError, another exception
  // kOutOfMemory or kUnknownError. Each is reported.
  template <class Call, class Handler>
  void Add(Needs needs, Handler handler) {
    Add(agent_protocol::CallName<Call>::kText, needs, [handler](ClientID client, const Json& json) {
      const auto arguments =
          agent_protocol::FromJson<typename Call::Arguments>(json, "arguments", agent_protocol::kMostNumbers);
      const Answer<Call> answer = handler(client, arguments);
      return Reply{answer.code, answer.result ? agent_protocol::ToJson(*answer.result) : Json::object()};
    });
  }
  // The answer to calls that were not added.
  void SetCodeForUnknownCalls(ResultCode code) { unknownCode_ = code; }

  // From here on every call is answered with the code, those that are held back at once.
  void RefuseAll(ResultCode code);

  void OnMessage(ClientID client, std::string_view message);
  void OnGone(ClientID client);
  // From here on nothing is held back; what was is served now, in the order of its coming.
  void Release();

 private:
  struct Reply {
    ResultCode code = kSuccess;
    Json result = Json::object();
  };
  using JsonHandler = std::function<Reply(ClientID, const Json& arguments)>;
  struct Entry {
    Needs needs;
    JsonHandler handler;
  };
  struct Request {
    ClientID client;
    Json id;
    std::string call;
    Json arguments;
  };
  struct Held {
    ClientID client;
    std::string message;  // not taken apart: that would need many times its bytes
  };
  void Add(const char* call, Needs needs, JsonHandler handler) { entries_[call] = {needs, std::move(handler)}; }
  bool Hold(ClientID client, std::string_view message);
  void Serve(const Request& request);
  void Send(const Request& request, Reply reply);
  Reply ReplyTo(const Request& request);

  Events events_;
  Limits limits_;
  std::map<std::string, Entry, std::less<>> entries_;
  std::deque<Held> held_;
  std::map<ClientID, size_t> heldOf_;  // how many of them are of each client
  size_t heldBytes_ = 0;
  bool isReleased_ = false;
  ResultCode unknownCode_ = kNotImplemented;
};

}  // namespace agent
