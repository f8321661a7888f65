// A connection to the agent for one command.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "agent/client/AgentConnection.h"

namespace nexctl {

namespace calls = agent_protocol::calls;
using agent_protocol::Json;
using agent_protocol::Numbers;

// What ends a command with status 1: a line for people.
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};
// What ends it with status 2.
struct WrongUsage : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The absolute path of the named state folder; of the user's if the name is empty.
std::string StateFolderNamed(const std::string& name);
// A line for people about a code of the agent.
std::string DescribeCode(agent_protocol::ResultCode code);

class Session {
 public:
  using NotificationHandler = agent_client::AgentConnection::NotificationHandler;

  // `stateFolder` is empty for the user's. Starts the agent if none runs there and the folder exists. With a handler,
  // the agent's notifications come to it, on another thread. Throws Failure.
  explicit Session(const std::string& stateFolder, const NotificationHandler& onNotification = nullptr);

  // Throws Failure if the call fails.
  template <class Call>
  typename Call::Result Ask(const typename Call::Arguments& arguments = {}) {
    auto reply = Try<Call>(arguments);
    if (reply.code != agent_protocol::kSuccess) throw Failure(DescribeCode(reply.code));
    return std::move(reply.result);
  }
  template <class Call>
  agent_client::Reply<Call> Try(const typename Call::Arguments& arguments = {}) {
    return connection_->Call<Call>(arguments);
  }

  // Waits until no scan is running. Shows how far it is on a terminal, if it takes longer than a second.
  void AwaitScan();
  const std::string& StateFolder() const { return stateFolder_; }
  bool IsLost() const { return connection_->IsLost(); }

 private:
  bool Connect(const NotificationHandler& onNotification);
  void Launch(const NotificationHandler& onNotification);

  std::string stateFolder_;
  std::unique_ptr<agent_client::AgentConnection> connection_;
};

}  // namespace nexctl
