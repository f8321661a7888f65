// One connection to the agent: typed calls (AgentCalls.h), notifications, and a reader thread.
//
// Any thread may call. Replies are matched to requests by ID. Once the connection is lost, all waiting and later calls
// return the agent-gone code at once; reconnecting takes a new object.
//
// No call waits forever. A caller that has heard nothing from the agent for half of its patience sends a second
// request, the probe, which even a busy agent answers at once: a first scan can delay other replies for minutes. If the
// agent is silent for the whole patience, it has stopped, and the connection counts as lost.
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

// The agent's reply to a call. `code` is the agent's, or one of the client's own: kAgentShutdownCode if the connection
// is lost, kMessageTooLarge if the request is too long to be sent, or kInvalidMessage if the reply does not match the
// call. A failed call may have a result, too. Without one, every member of `result` has its default.
template <class Call>
struct Reply {
  agent_protocol::ResultCode code = 0;
  typename Call::Result result;
};

// Connects to the agent whose socket is in runtimeFolder, or in the substitute for that which was made since (see
// AgentFolders.h). Returns an empty descriptor if none listens, or if it accepts no connection within 2 seconds.
platform::Descriptor ReachAgent(const std::string& runtimeFolder);

// Sends the call "Hello" through a socket from ReachAgent and waits for the reply. Returns false if the agent ends or
// does not answer in time. A socket that accepts connections does not prove that its agent works: the agent may be
// stopped or about to be killed.
bool AnswersGreeting(const platform::Descriptor& socket, std::chrono::milliseconds patience);

class AgentConnection {
 public:
  // How long the agent may be silent while a caller waits.
  using Patience = std::chrono::milliseconds;
  static constexpr Patience kPatience = std::chrono::seconds(20);

  // Receives each notification as the object that the agent sent (AgentProtocol.h). It runs on the reader thread, in
  // the order of sending, and before calls of other threads return a reply that was sent later. Must not be null and
  // must not throw. It may make calls, and may delete the connection.
  using NotificationHandler = std::function<void(const Json&)>;
  // Called at the end of the reader thread, unless this side closed the connection. Must not be null. It may block but
  // must not throw.
  using LostHandler = std::function<void()>;

  // `socket` is from ReachAgent. Throws std::system_error if no thread can be created.
  AgentConnection(platform::Descriptor socket, NotificationHandler onNotification, LostHandler onLost,
                  Patience patience = kPatience);
  // Closes the connection and waits until the reader thread has delivered its last notification. If the reader thread
  // is the caller, it does not wait.
  ~AgentConnection();
  AgentConnection(const AgentConnection&) = delete;
  AgentConnection& operator=(const AgentConnection&) = delete;

  // Sends a call and waits for its reply. A call from a notification handler, on the reader thread, reads messages
  // itself while it waits; notifications among them are delivered when the handler has returned.
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
  // True once the reader thread or a call has noticed the loss. Notifications may still be on their way to the handler
  // (AwaitDelivery).
  bool IsLost() const;
  // True as soon as the agent has closed its end, even if nothing here has noticed it yet.
  bool HasEnded() const;
  bool HasFallenSilent() const;  // lost because the agent was silent
  void Close();                  // the connection is lost afterwards
  // For a connection that has ended: waits until everything that the agent had sent is delivered, for a second at most.
  // Returns at once on the reader thread.
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
  std::shared_ptr<State> state_;  // shared with the reader thread
};

}  // namespace agent_client
