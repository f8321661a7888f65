// One connection to the agent: requests, replies, and a reader thread.
//
// Any thread may call. Replies are matched to requests by ID. Once the connection is lost, all waiting and later calls
// return the agent-gone code at once; reconnecting takes a new object.
//
// No call waits forever. A busy agent, for example during a first scan that delays a reply for minutes, still answers
// the probe. A caller that has heard nothing for half of its patience sends the probe. If the agent is silent for the
// whole patience, it has stopped, and the connection counts as lost.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "agent/include/CallEncoding.h"
#include "agent/include/ResultCodes.h"
#include "platform/LocalSocket.h"

namespace plugin_interface {

using agent_protocol::Json;

// The agent's reply to a call, or one of the library's own codes with an empty result.
struct RawReply {
  agent_protocol::ResultCode code = 0;
  Json result = Json::object();
};

// The decoded reply. A failed call may have a result, too; without a result every member has its default.
template <class Call>
struct Reply {
  agent_protocol::ResultCode code = 0;
  typename Call::Result result;
};

// Throws agent_protocol::BadMessage if the result does not match the call.
template <class Call>
Reply<Call> ReadReply(const RawReply& raw) {
  Reply<Call> reply{raw.code, {}};
  const bool hasResult = raw.code == agent_protocol::kSuccess || !raw.result.empty();
  if (hasResult) reply.result = agent_protocol::FromJson<typename Call::Result>(raw.result, "result");
  return reply;
}

class AgentConnection {
 public:
  using Patience = std::chrono::milliseconds;
  static constexpr Patience kPatience = std::chrono::seconds(20);

  // Called on the reader thread, in the order in which the agent sent the notifications.
  using NotificationHandler = std::function<void(const Json&)>;

  // onLost runs at the end of the reader thread unless this side closed the connection. It may block but must not
  // throw. Throws std::system_error if no thread can be created.
  AgentConnection(platform::Descriptor socket, NotificationHandler onNotification, void (*onLost)(),
                  Patience patience = kPatience);
  ~AgentConnection();  // closes; waits for the reader thread, unless that is the caller
  AgentConnection(const AgentConnection&) = delete;
  AgentConnection& operator=(const AgentConnection&) = delete;

  // Sends a call and waits for its reply. On the reader thread (a notification handler may call) it reads messages
  // while it waits. Throws agent_protocol::BadMessage if the result does not match the call.
  template <class C>
  Reply<C> Call(const typename C::Arguments& arguments) {
    return ReadReply<C>(CallByName(agent_protocol::CallName<C>::kText, agent_protocol::ToJson(arguments)));
  }
  RawReply CallByName(const char* name, Json arguments);
  bool IsLost() const;
  bool HasFallenSilent() const;  // lost because the agent was silent
  void Close();                  // the connection is lost afterwards

 private:
  struct State;
  RawReply AwaitReply(uint64_t id, Patience patience);
  static void ReadUntilLost(const std::shared_ptr<State>& state);
  std::shared_ptr<State> state_;
};

}  // namespace plugin_interface
