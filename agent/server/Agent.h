// The agent of one state folder: owns the library and the connected clients and decides when to end.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "agent/library/FontLibrary.h"
#include "agent/previews/Previews.h"
#include "agent/server/Dispatcher.h"
#include "agent/server/Server.h"
#include "agent/store/AgentLog.h"
#include "agent/store/Configuration.h"
#include "agent/store/InstanceLock.h"
#include "agent/webfonts/WebFonts.h"
#include "platform/RunLoop.h"

namespace agent {

class Agent {
 public:
  // `lock` is the lock of the state folder and must outlive the agent.
  Agent(const Configuration& configuration, const InstanceLock& lock, platform::RunLoop& loop);
  ~Agent();
  Agent(const Agent&) = delete;
  Agent& operator=(const Agent&) = delete;

  // Listens and starts the first scan. Returns the error if it cannot listen. `passed` is a socket that already listens
  // in the runtime folder, or none.
  std::error_code Start(platform::Descriptor passed = platform::Descriptor());
  // Notifies the clients and deactivates what they requested. Call once, after the loop.
  void Finish();
  // True if the state folder was removed, moved or replaced while the agent was running, which stopped the loop.
  bool IsLost() const { return isLost_; }

 private:
  struct Client {
    bool wantsNotifications = false;
    bool activatesDesigns = false;
  };

  void WatchPlace();
  void CheckPlace();
  void ClearDesktop();
  void AddSessionCalls();
  void AddFontCalls();  // of the library, which must exist
#define AGENT_HANDLER(name) Answer<calls::name> Serve(ClientID client, const calls::name::Arguments& arguments);
  AGENT_SESSION_CALLS(AGENT_HANDLER)  // in SessionCalls.cpp, WorkgroupCalls.cpp, WebFontCalls.cpp
  AGENT_PREVIEW_CALLS(AGENT_HANDLER)  // in PreviewCalls.cpp
#undef AGENT_HANDLER
  // Stores the configuration and takes over its workgroups. Returns false with a line in `problem`, and nothing
  // changed.
  bool ChangeConfiguration(const Configuration& changed, std::string& problem);
  bool IsRight(const calls::Right& right) const;
  LibraryEvents MakeLibraryEvents();
  PreviewEvents MakePreviewEvents();
  WebFontEvents MakeWebFontEvents();
  void FollowWebFolder();
  void Notify(const Json& notification);
  void NotifyFont(uint32_t kind, uint32_t fontID);
  void NotifyProgress(uint32_t kind, const ScanProgress& progress);
  void OnGone(ClientID client);
  void EndAfter(double seconds);
  void KeepRunning();  // cancels EndAfter

  Configuration configuration_;
  const InstanceLock& lock_;
  platform::RunLoop& loop_;
  AgentLog log_;
  Server server_;
  Dispatcher dispatcher_;
  std::unique_ptr<FontLibrary> library_;  // null if its databases cannot be used
  Previews previews_;
  WebFonts webFonts_;
  std::map<ClientID, Client> clients_;  // that called Hello; others only checked whether an agent answers
  platform::RunLoopTimerRef endTimer_;
  platform::Descriptor placeWatch_;  // watches the state folder and its lock file
  bool isLost_ = false;
};

}  // namespace agent
