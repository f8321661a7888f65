// The only route from the rest of the plug-in to the panels. Repeats each operation on all panels; the first failure
// ends it and is the result. Owns the panels for the life of the process: one on a socket and, once the host's event
// service is there, one that is an extension of the host. Main thread only.
#pragma once

#include <memory>
#include <vector>

#include "ErrorCodes.h"
#include "Panel/MarquinePanel.h"

class SDKPlugPlug;

class PanelManager {
 public:
  virtual ~PanelManager();
  static PanelManager* GetSharedInstance();

  TModuleErrorCode OpenSocket();
  // Adds a panel on the service, which is not owned. kNullPointer for null; on failure nothing is added.
  TModuleErrorCode RegisterPlugPlug(SDKPlugPlug* plugPlug);
  TModuleErrorCode SelectSocket(bool closeListeningSocket);
  unsigned int GetSocketPort();  // the first port that is not 0; 0 if no panel has one
  TModuleErrorCode SetEnabled(bool enabled);
  TModuleErrorCode PopNotifications();
  void CheckForTypekit();
#define PANEL_PUSH(operation, push, parameters, arguments) TModuleErrorCode push parameters;
  PANEL_PUSHES(PANEL_PUSH)
#undef PANEL_PUSH

  void ResetForTesting() { mPanels.clear(); }

 private:
  std::vector<std::unique_ptr<MarquinePanel>> mPanels;
};
