// The one place through which the rest of the plug-in reaches the panels. Each operation is repeated on all panels; the first
// failure ends it and is its result. Main thread only. Owns the panels for the life of the process.
//
// No transport is built yet: OpenSocket and RegisterPlugPlug say so, and the set of panels stays empty.
#pragma once

#include <set>
#include <string>

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
  unsigned int GetSocketPort();  // the first port of any panel; 0 if there is none
  TModuleErrorCode SetEnabled(bool enabled);
  TModuleErrorCode PopNotifications();
  void CheckForTypekit();
#define PANEL_PUSH(operation, push, parameters, arguments) TModuleErrorCode push parameters;
  PANEL_PUSHES(PANEL_PUSH)
#undef PANEL_PUSH

 private:
  std::set<MarquinePanel*> mPanels;
};
