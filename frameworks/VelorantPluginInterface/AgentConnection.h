// One connection to the agent: requests and their replies, and a thread that reads.
//
// Any thread may call. Replies are matched to requests by their number. Once the connection is lost every waiting and
// every later call gets the agent-gone code at once; a new connection is a new object.
//
// No call waits forever. An agent that is busy still answers a small question (a first scan can hold a reply back for
// minutes), so a caller that has heard nothing for half of its patience asks one. An agent that has said nothing at all for
// the whole of it has stopped: the connection is then lost.
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

// The agent's reply to a call, or a code of the library's own with an empty result.
struct RawReply {
  agent_protocol::ResultCode code = 0;
  Json result = Json::object();
};

// The same, read. A failed call may have a result as well; without one every member has its default.
template <class Call>
struct Reply {
  agent_protocol::ResultCode code = 0;
  typename Call::Result result;
};

// Throws agent_protocol::BadMessage if the result is not that of the call.
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

  // Called on the reader thread, in the order in which the agent sent them.
  using NotificationHandler = std::function<void(const Json&)>;

  // onLost runs at the end of the reader thread, if it was not this side that ended the connection; it may take its time,
  // and must not throw. Throws std::system_error if no thread can be had.
  AgentConnection(platform::Descriptor socket, NotificationHandler onNotification, void (*onLost)(),
                  Patience patience = kPatience);
  ~AgentConnection();  // closes; waits for the reader, unless called by it
  AgentConnection(const AgentConnection&) = delete;
  AgentConnection& operator=(const AgentConnection&) = delete;

  // Sends a call and waits for its reply. On the reader thread itself (a notification's receiver asks something) it reads
  // meanwhile. Throws agent_protocol::BadMessage if the result is not that of the call.
  template <class C>
  Reply<C> Call(const typename C::Arguments& arguments) {
    return ReadReply<C>(CallByName(agent_protocol::CallName<C>::kText, agent_protocol::ToJson(arguments)));
  }
  RawReply CallByName(const char* name, Json arguments);
  bool IsLost() const;
  bool HasFallenSilent() const;  // it was lost because the agent said nothing any more
  void Close();                  // lost from here on

 private:
  struct State;
  RawReply AwaitReply(uint64_t id, Patience patience);
  static void ReadUntilLost(const std::shared_ptr<State>& state);
  std::shared_ptr<State> state_;
};

}  // namespace plugin_interface
