// One handle's worth of agent: the connection that is made when it is first needed and, once lost, stays lost.
//
// A relaunched agent is reached through a new facade. Handles that were replaced answer with an agent-gone code.
//
// An agent that runs and does not answer (AgentConnection.h) costs its caller the waiting once. From then on every call
// gets kReplyTimeout at once, which is no reason to relaunch, until the agent has answered or its process has ended: a
// thread waits for that, and then connects again.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "frameworks/VelorantPluginInterface/AgentConnection.h"
#include "frameworks/VelorantPluginInterface/HeldFonts.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"

namespace plugin_interface {

// Any thread may use any operation.
class Facade {
 public:
  // The agent's socket lies in the runtime folder.
  Facade(PluginInterface::FacadeHandle handle, HeldFonts& held, std::string runtimeFolder)
      : handle_(handle), held_(held), runtimeFolder_(std::move(runtimeFolder)) {}

  PluginInterface::FacadeHandle Handle() const { return handle_; }
  const std::string& RuntimeFolder() const { return runtimeFolder_; }
  // Connects unless that is done: 0, an agent-gone code, kReplyTimeout, or kVersionMismatch for an agent that speaks
  // another protocol. An agent that has just been started is waited for; without one the answer comes at once. Callers
  // relaunch for as long as they get an agent-gone code; after a few relaunches that brought no agent it is kAgentNotFound.
  uint32_t Connect();
  // Connects if need be and asks; the agent's code, or one of those above. Throws BadMessage if the result is not that of
  // the call.
  template <class C>
  Reply<C> Call(const typename C::Arguments& arguments) {
    return ReadReply<C>(CallByName(agent_protocol::CallName<C>::kText, agent_protocol::ToJson(arguments)));
  }
  bool IsConnected() const;
  bool IsLost() const;
  // Ends the connection; the next call makes a new one. With keepFonts what the process holds stays active for good and
  // is no longer its own; otherwise the agent gives it back, and a new connection asks for it again.
  void Disconnect(bool keepFonts);
  // Ends the connection; every later call gets an agent-gone code.
  void Retire();

 private:
  RawReply CallByName(const char* name, Json arguments);
  using ConnectionRef = std::shared_ptr<AgentConnection>;
  ConnectionRef Connection() const;
  uint32_t ConnectAlone();
  uint32_t Greet(AgentConnection& connection);
  template <class Call>
  uint32_t AskAgainFor(AgentConnection& connection, HoldKind kind);

  const PluginInterface::FacadeHandle handle_;
  HeldFonts& held_;
  const std::string runtimeFolder_;
  std::mutex connecting_;     // one thread connects at a time
  mutable std::mutex mutex_;  // guards what follows
  ConnectionRef connection_;
  bool isRetired_ = false;
};

// The process's current facade, made if there is none. One whose agent is gone is replaced when an agent answers again,
// here or by itself: a client may have open documents and yet ask nothing more, and their fonts shall not wait for it.
std::shared_ptr<Facade> CurrentFacade();
// The facade of a handle; null with a code for one that was replaced (agent gone) or never given (invalid parameter).
std::shared_ptr<Facade> FacadeOf(PluginInterface::FacadeHandle handle, uint32_t& code);
// The next CurrentFacade makes a new one. keepFonts as for Disconnect.
void DiscardFacade(bool keepFonts);
// Whether the agent runs and does not answer.
bool IsAgentSilent();
void SetPatienceForTesting(AgentConnection::Patience patience);
// What the process holds, through whatever facade.
HeldFonts& ProcessFonts();

}  // namespace plugin_interface
