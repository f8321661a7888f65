// The agent behind one handle: connects when it is first needed. A lost connection stays lost.
//
// A relaunched agent is reached through a new facade. Calls with an old handle return an agent-gone code.
//
// If the agent runs but does not answer (AgentConnection.h), one caller waits. Later calls return kReplyTimeout at
// once, which is no reason to relaunch. A thread waits until the agent answers or its process ends, and then connects
// again.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "agent/client/AgentConnection.h"
#include "frameworks/VelorantPluginInterface/HeldFonts.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"

namespace plugin_interface {

using agent_client::AgentConnection;
using agent_client::Reply;

// Thread-safe.
class Facade {
 public:
  // runtimeFolder is the folder of the agent's socket.
  Facade(PluginInterface::FacadeHandle handle, HeldFonts& held, std::string runtimeFolder)
      : handle_(handle), held_(held), runtimeFolder_(std::move(runtimeFolder)) {}

  PluginInterface::FacadeHandle Handle() const { return handle_; }
  const std::string& RuntimeFolder() const { return runtimeFolder_; }
  // Connects if not connected. Returns 0, an agent-gone code, kReplyTimeout, or kVersionMismatch for an agent with
  // another protocol. Waits for an agent that has just been started; returns at once if there is none. Callers relaunch
  // the agent while they get an agent-gone code; after several relaunches without success it returns kAgentNotFound.
  uint32_t Connect();
  // Connects if necessary and calls the agent. Returns the agent's code or one of those above.
  template <class C>
  Reply<C> Call(const typename C::Arguments& arguments) {
    if (const uint32_t code = Connect()) return {code, {}};
    const ConnectionRef connection = Connection();
    if (!connection || connection->IsLost()) return {agent_protocol::kAgentShutdownCode, {}};
    Reply<C> reply = connection->Call<C>(arguments);
    if (connection->HasFallenSilent()) StopWaiting();
    return reply;
  }
  bool IsConnected() const;
  bool IsLost() const;
  // If the connection is lost, waits until the agent's last notifications are delivered.
  void AwaitLastWords() const;
  // Closes the connection; the next call connects again. With keepFonts, the fonts that this process holds stay active
  // and are not held any more. Otherwise the agent deactivates them, and a new connection requests them again.
  void Disconnect(bool keepFonts);
  // Closes the connection; all later calls return an agent-gone code.
  void Retire();

 private:
  using ConnectionRef = std::shared_ptr<AgentConnection>;
  ConnectionRef Connection() const;
  bool IsRetired() const;
  void StopWaiting() const;  // the agent is silent
  uint32_t ConnectAlone();
  uint32_t ConnectThrough(platform::Descriptor socket);
  uint32_t CodeWithoutSocket(bool hasEnded);
  uint32_t Greet(AgentConnection& connection);
  template <class Call, class... More>
  uint32_t AskAgainFor(AgentConnection& connection, HoldKind kind, More... more);

  const PluginInterface::FacadeHandle handle_;
  HeldFonts& held_;
  const std::string runtimeFolder_;
  std::mutex connecting_;     // one thread connects at a time
  mutable std::mutex mutex_;  // guards what follows
  ConnectionRef connection_;
  bool isRetired_ = false;
};

// Returns the current facade of the process and creates it if necessary. A facade whose agent is gone is replaced as
// soon as an agent answers, by this call or in the background: a client with open documents may not call for a long
// time, but its fonts must come back.
std::shared_ptr<Facade> CurrentFacade();
// Returns the facade of a handle. Returns null and sets `code` for a handle that was replaced (agent gone) or never
// existed (kInvalidParam).
std::shared_ptr<Facade> FacadeOf(PluginInterface::FacadeHandle handle, uint32_t& code);
// Makes the next CurrentFacade create a new one. keepFonts as for Disconnect.
void DiscardFacade(bool keepFonts);
// True if the agent runs but does not answer.
bool IsAgentSilent();
// True if this process was connected to an agent that has not announced its end.
bool ExpectsAgent();
void SetPatienceForTesting(AgentConnection::Patience patience);
// The fonts that the process holds, independent of facades.
HeldFonts& ProcessFonts();

}  // namespace plugin_interface
