// One connection to the agent: requests and their replies, and a thread that reads.
//
// Any thread may call. Replies are matched to requests by their number. Once the connection is lost every waiting and
// every later call gets the agent-gone code at once; a new connection is a new object.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "platform/LocalSocket.h"

namespace plugin_interface {

using Json = nlohmann::json;

struct CallResult {
  uint32_t code = 0;
  Json result = Json::object();
};

class AgentConnection {
 public:
  // Called on the reader thread, in the order in which the agent sent them.
  using NotificationHandler = std::function<void(const Json&)>;

  // onLost runs at the end of the reader thread, if it was not this side that ended the connection; it may take its time,
  // and must not throw. Throws std::system_error if no thread can be had.
  AgentConnection(platform::Descriptor socket, NotificationHandler onNotification, void (*onLost)());
  ~AgentConnection();  // closes; waits for the reader, unless called by it
  AgentConnection(const AgentConnection&) = delete;
  AgentConnection& operator=(const AgentConnection&) = delete;

  // Waits for the reply. On the reader thread itself (a notification's receiver asks something) it reads meanwhile.
  CallResult Call(const char* name, Json arguments);
  bool IsLost() const;
  void Close();  // lost from here on

 private:
  struct State;
  static void ReadUntilLost(const std::shared_ptr<State>& state);
  std::shared_ptr<State> state_;
};

}  // namespace plugin_interface
