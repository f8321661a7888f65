// A font panel as the panel manager sees it: one transport with its protocol.
//
// Results are codes, 0 for success. Main thread only. Dictionaries are borrowed for the call.
#pragma once

#include <string>

#include "Bridge/HostAppInterface.h"
#include "ErrorCodes.h"
#include "platform/Value.h"

// Pushes that no operation of the host forwards by itself; the columns are those of HOST_EVENTS.
#define PANEL_ONLY_PUSHES(X)                                                          \
  X(none, PushLoggedInStateChangedNotification, (EServerType serverType), serverType) \
  X(none, PushTypekitEnabledNotification, (bool enabled), enabled)

#define PANEL_PUSHES(X) \
  HOST_EVENTS(X)        \
  PANEL_ONLY_PUSHES(X)

class MarquinePanel {
 public:
  virtual ~MarquinePanel();
  // Starts to listen for the panel's page. A transport without a socket returns 0 and does nothing.
  virtual TModuleErrorCode OpenSocket() = 0;
  // Accepts a waiting connection and answers what it has sent; never blocks. With closeListeningSocket no further
  // connection is accepted.
  virtual TModuleErrorCode SelectSocket(bool closeListeningSocket) = 0;
  virtual unsigned int GetSocketPort() = 0;                           // 0 without a socket
  virtual TModuleErrorCode SendMessage(const std::string& text) = 0;  // one JSON message, UTF-8
  virtual TModuleErrorCode SetEnabled(bool enabled) = 0;
  // Sends what was pushed since the last call.
  virtual TModuleErrorCode PopNotifications() = 0;
  virtual TModuleErrorCode CheckForTypekit() = 0;
  // News. They are queued and sent by PopNotifications, except for images and progress, which are sent at once.
#define PANEL_PUSH(operation, push, parameters, arguments) virtual TModuleErrorCode push parameters = 0;
  PANEL_PUSHES(PANEL_PUSH)
#undef PANEL_PUSH
};
