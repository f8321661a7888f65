// The font panel of one run of the host: its web server, its connection with the plug-in, and the watch over the agent,
// which the panel's user needs all the time. Main thread only.
#pragma once

#include <memory>
#include <string>

#include "host/console/PanelFonts.h"
#include "host/panel/EventLink.h"
#include "host/panel/PanelServer.h"
#include "platform/Descriptor.h"
#include "platform/RunLoop.h"

namespace console {

class Sandbox;
class Session;

class PanelSession {
 public:
  // Serves the panel and opens it in the browser if there is a desktop. Both arguments must outlive the object. Throws
  // std::exception if the panel can't be served.
  PanelSession(const Sandbox& sandbox, Session& session);
  ~PanelSession();
  PanelSession(const PanelSession&) = delete;
  PanelSession& operator=(const PanelSession&) = delete;

  std::string Address() const { return server_.Address(); }

  // During its life an agent that has ended is started again, and the page told. It belongs around the time in which
  // the console waits for a command, because a command looks after the agent itself.
  class AgentWatch {
   public:
    explicit AgentWatch(PanelSession* panel);  // does nothing without a panel
    ~AgentWatch();
    AgentWatch(const AgentWatch&) = delete;
    AgentWatch& operator=(const AgentWatch&) = delete;

   private:
    platform::RunLoopTimerRef timer_;
  };

 private:
  void Take(const std::string& type, const std::string& data);
  void OpenInBrowser() const;
  void Log(const std::string& line) const;
  void TellAgentState(bool isRunning);
  // Returns false if the agent is gone and could not be started.
  bool LookAfterAgent();

  const Sandbox& sandbox_;
  Session& session_;
  platform::Descriptor log_;
  bool isAgentGone_ = false;  // as the page was told
  PanelFonts fonts_;
  panel::PanelServer server_;
  panel::EventLink events_;
};

}  // namespace console
