// The only route from the rest of the plug-in to the panels. Repeats each operation on all panels; the first failure
// ends it and is the result. Owns the panels for the life of the process. Main thread only.
//
// No transport exists yet: OpenSocket and RegisterPlugPlug return kNotImplemented, and there are no panels.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ErrorCodes.h"
#include "Panel/MarquinePanel.h"
#include "platform/Value.h"

class SDKPlugPlug;

class PanelManager {
 public:
  virtual ~PanelManager();
  static PanelManager* GetSharedInstance();

  TModuleErrorCode OpenSocket();
  TModuleErrorCode RegisterPlugPlug(SDKPlugPlug* plugPlug);
  TModuleErrorCode SelectSocket(bool closeListeningSocket);
  unsigned int GetSocketPort();  // the first port that is not 0; 0 if no panel has one
  TModuleErrorCode SetEnabled(bool enabled);
  TModuleErrorCode PopNotifications();
  void CheckForTypekit();
#define PANEL_PUSH(operation, push, parameters, arguments) TModuleErrorCode push parameters;
  PANEL_PUSHES(PANEL_PUSH)
#undef PANEL_PUSH

 private:
  std::vector<std::unique_ptr<MarquinePanel>> mPanels;
};
