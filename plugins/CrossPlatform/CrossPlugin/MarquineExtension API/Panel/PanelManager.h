// The one place through which the rest of the plug-in reaches the panels: each operation is repeated on all of them, and
// the first that fails ends it with its code. Main thread only. It owns the panels and never lets one go.
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
  TModuleErrorCode SendFontImages(const platform::Dictionary& fontPNGs);
  void CheckForTypekit();

  TModuleErrorCode PushLoggedInStateChangedNotification(EServerType serverType);
  TModuleErrorCode PushOnlineStateChangedNotification(bool isOnline);
  TModuleErrorCode PushGoogleWebFontsEnabledNotificaton(bool enabled);
  TModuleErrorCode PushFontActivatedNotification(unsigned int fontID);
  TModuleErrorCode PushFontDeactivatedNotification(unsigned int fontID);
  TModuleErrorCode PushFontMissingNotification(unsigned int fontID);
  TModuleErrorCode PushFontNonCompliantNotification(unsigned int fontID);
  TModuleErrorCode PushBulkReplicationProgressNotification(const platform::Dictionary& details);
  TModuleErrorCode PushBulkReplicationStoppedNotification();
  TModuleErrorCode PushIncrementalReplicationProgressNotification(const platform::Dictionary& details);
  TModuleErrorCode PushIncrementalReplicationStoppedNotification();
  TModuleErrorCode PushGoogleReplicationProgressNotification(const platform::Dictionary& details);
  TModuleErrorCode PushGoogleReplicationStoppedNotification();
  TModuleErrorCode PushFontServerReplicationProgressNotification(const platform::Dictionary& details);
  TModuleErrorCode PushFontServerReplicationStoppedNotification();
  TModuleErrorCode PushDataChangedNotification();
  TModuleErrorCode PushSmartListsChangedNotification();
  TModuleErrorCode PushOfflineDownloadFinishedNotification();
  TModuleErrorCode PushTypekitEnabledNotification(bool enabled);

 private:
  std::set<MarquinePanel*> mPanels;
};
