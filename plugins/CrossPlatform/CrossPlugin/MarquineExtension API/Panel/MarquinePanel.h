// A font panel as the panel manager sees it: one transport to a panel's page, with its protocol.
//
// Main thread only. Results are codes of ErrorCodes.h, 0 for success. The panel manager calls the panels in turn and
// stops at the first error, which it returns. Arguments are borrowed for the call. No call may block; the plug-in's
// timer calls SelectSocket and PopNotifications several times a second.
#pragma once

#include <string>

#include "Bridge/HostAppInterface.h"
#include "ErrorCodes.h"
#include "platform/Value.h"

// Pushes that do not forward an operation of the host. The columns are those of HOST_EVENTS.
#define PANEL_ONLY_PUSHES(X)                                                          \
  X(none, PushLoggedInStateChangedNotification, (EServerType serverType), serverType) \
  X(none, PushTypekitEnabledNotification, (bool enabled), enabled)

#define PANEL_PUSHES(X) \
  HOST_EVENTS(X)        \
  PANEL_ONLY_PUSHES(X)

class MarquinePanel {
 public:
  virtual ~MarquinePanel();
  // Starts to listen for the panel's page. A transport without a socket does nothing and returns 0.
  virtual TModuleErrorCode OpenSocket() = 0;
  // Accepts a waiting connection, reads what the page sent and answers it. After closeListeningSocket the panel accepts
  // no further connection.
  virtual TModuleErrorCode SelectSocket(bool closeListeningSocket) = 0;
  // Returns the TCP port on which the panel listens, or 0 without a socket.
  virtual unsigned int GetSocketPort() = 0;
  // Sends one message to the page at once: one JSON text in UTF-8.
  virtual TModuleErrorCode SendMessage(const std::string& text) = 0;
  // Tells the page whether the plug-in's services are on.
  virtual TModuleErrorCode SetEnabled(bool enabled) = 0;
  // Sends the pushes that were queued since the last call.
  virtual TModuleErrorCode PopNotifications() = 0;
  // Called when the user's workgroups changed.
  virtual TModuleErrorCode CheckForTypekit() = 0;
  // One operation for each line of PANEL_PUSHES: tells the page one piece of news. Images and progress are sent at
  // once; the others are queued until PopNotifications. Font IDs are the agent's.
#define PANEL_PUSH(operation, push, parameters, arguments) virtual TModuleErrorCode push parameters = 0;
  PANEL_PUSHES(PANEL_PUSH)
#undef PANEL_PUSH
};
