// The agent of one state folder: the library, the clients that are connected, and when to end.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "agent/AgentLog.h"
#include "agent/Configuration.h"
#include "agent/Dispatcher.h"
#include "agent/FontLibrary.h"
#include "agent/InstanceLock.h"
#include "agent/Server.h"
#include "platform/RunLoop.h"

namespace agent {

class Agent {
 public:
  // `lock` is that of the state folder; it outlives the agent.
  Agent(const Configuration& configuration, const InstanceLock& lock, platform::RunLoop& loop);
  ~Agent();
  Agent(const Agent&) = delete;
  Agent& operator=(const Agent&) = delete;

  // Listens and starts the first scan. A failure to listen is the result.
  std::error_code Start();
  // Tells the clients and takes back what they asked for. To be called once, after the loop.
  void Finish();
  // The state folder was removed, moved or replaced while the agent ran, which stopped the loop.
  bool IsLost() const { return isLost_; }

 private:
  struct Client {
    bool wantsNotifications = false;
  };

  void WatchPlace();
  void CheckPlace();
  void ClearDesktop();
  void AddCalls();
#define AGENT_HANDLER(name) Answer<calls::name> Serve(ClientID client, const calls::name::Arguments& arguments);
  AGENT_SESSION_CALLS(AGENT_HANDLER)  // in SessionCalls.cpp
#undef AGENT_HANDLER
  LibraryEvents MakeLibraryEvents();
  void Notify(const Json& notification);
  void NotifyFont(uint32_t kind, uint32_t fontID);
  void OnGone(ClientID client);
  void EndAfter(double seconds);
  void KeepRunning();  // undoes EndAfter

  Configuration configuration_;
  const InstanceLock& lock_;
  platform::RunLoop& loop_;
  AgentLog log_;
  Server server_;
  Dispatcher dispatcher_;
  std::unique_ptr<FontLibrary> library_;  // null if its databases can't be used
  std::map<ClientID, Client> clients_;    // those that have said hello; others only looked whether somebody answers
  platform::RunLoopTimerRef endTimer_;
  platform::Descriptor placeWatch_;  // of the state folder and the lock file in it
  bool isLost_ = false;
};

}  // namespace agent
