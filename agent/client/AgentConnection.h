// One connection to the agent: typed calls (AgentCalls.h), notifications, and a reader thread.
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

namespace agent_client {

using agent_protocol::Json;

// The agent's reply to a call, or one of the client's own codes: kAgentShutdownCode if the connection is lost,
// kMessageTooLarge, or kInvalidMessage if the reply does not match the call. A failed call may have a result, too; without
// a result every member has its default.
template <class Call>
struct Reply {
  agent_protocol::ResultCode code = 0;
  typename Call::Result result;
};

// Connects to the agent whose socket is in runtimeFolder. Returns an empty descriptor if none listens, or if it accepts no
// connection within 2 seconds.
platform::Descriptor ReachAgent(const std::string& runtimeFolder);

// Sends a greeting through a socket from ReachAgent and waits for the reply. Returns false if the agent ends or does not
// answer in time. The socket of an agent that is being killed still accepts connections, so reaching it proves nothing.
bool AnswersGreeting(const platform::Descriptor& socket, std::chrono::milliseconds patience);

class AgentConnection {
 public:
  using Patience = std::chrono::milliseconds;
  static constexpr Patience kPatience = std::chrono::seconds(20);

  // Called on the reader thread, in the order in which the agent sent the notifications, and before the replies that the
  // agent sent after them are returned. Must not throw.
  using NotificationHandler = std::function<void(const Json&)>;

  // `socket` is from ReachAgent. onLost runs at the end of the reader thread unless this side closed the connection. It
  // may block but must not throw. Throws std::system_error if no thread can be created.
  AgentConnection(platform::Descriptor socket, NotificationHandler onNotification, void (*onLost)(),
                  Patience patience = kPatience);
  ~AgentConnection();  // closes; waits for the reader thread, unless that is the caller
  AgentConnection(const AgentConnection&) = delete;
  AgentConnection& operator=(const AgentConnection&) = delete;

  // Sends a call and waits for its reply. On the reader thread (a notification handler may call) it reads messages
  // while it waits.
  template <class C>
  Reply<C> Call(const typename C::Arguments& arguments) {
    const RawReply raw = CallByName(agent_protocol::CallName<C>::kText, agent_protocol::ToJson(arguments));
    Reply<C> reply{raw.code, {}};
    if (raw.code != agent_protocol::kSuccess && raw.result.empty()) return reply;
    try {
      reply.result = agent_protocol::FromJson<typename C::Result>(raw.result, "result");
    } catch (const agent_protocol::BadMessage&) {
      return {agent_protocol::kInvalidMessage, {}};
    }
    return reply;
  }
  // True once the reader thread or a call has noticed the loss. All that the agent sent before was delivered.
  bool IsLost() const;
  // True as soon as the agent has closed its end, even if nothing here has noticed it yet.
  bool HasEnded() const;
  bool HasFallenSilent() const;  // lost because the agent was silent
  void Close();                  // the connection is lost afterwards
  // For a lost connection: waits until all that the agent had sent is delivered, for a second at most. Returns at once on
  // the reader thread.
  void AwaitDelivery() const;

 private:
  struct State;
  struct RawReply {
    agent_protocol::ResultCode code = 0;
    Json result = Json::object();
  };
  RawReply CallByName(const char* name, Json arguments);
  RawReply AwaitReply(uint64_t id, Patience patience);
  static void ReadUntilLost(const std::shared_ptr<State>& state);
  std::shared_ptr<State> state_;
};

}  // namespace agent_client
