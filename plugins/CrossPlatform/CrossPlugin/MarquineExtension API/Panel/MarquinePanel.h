// A font panel as the panel manager sees it: one transport with its protocol. Results are codes, 0 for success.
#pragma once

#include <string>

#include "Bridge/HostAppInterface.h"
#include "ErrorCodes.h"
#include "platform/Value.h"

class MarquinePanel {
 public:
  virtual ~MarquinePanel();
  virtual TModuleErrorCode OpenSocket() = 0;
  virtual TModuleErrorCode SelectSocket(bool closeListeningSocket) = 0;
  virtual unsigned int GetSocketPort() = 0;
  virtual TModuleErrorCode SendMessage(const std::string& text) = 0;
  virtual TModuleErrorCode SendFontImages(const platform::Dictionary& fontPNGs) = 0;
  virtual TModuleErrorCode SetEnabled(bool enabled) = 0;
  virtual TModuleErrorCode PopNotifications() = 0;
  virtual TModuleErrorCode CheckForTypekit() = 0;
  virtual TModuleErrorCode PushLoggedInStateChangedNotification(EServerType serverType) = 0;
  virtual TModuleErrorCode PushOnlineStateChangedNotification(bool isOnline) = 0;
  virtual TModuleErrorCode PushGoogleWebFontsEnabledNotificaton(bool enabled) = 0;
  virtual TModuleErrorCode PushFontActivatedNotification(unsigned int fontID) = 0;
  virtual TModuleErrorCode PushFontDeactivatedNotification(unsigned int fontID) = 0;
  virtual TModuleErrorCode PushFontMissingNotification(unsigned int fontID) = 0;
  virtual TModuleErrorCode PushFontNonCompliantNotification(unsigned int fontID) = 0;
  virtual TModuleErrorCode PushBulkReplicationProgressNotification(const platform::Dictionary& details) = 0;
  virtual TModuleErrorCode PushBulkReplicationStoppedNotification() = 0;
  virtual TModuleErrorCode PushIncrementalReplicationProgressNotification(const platform::Dictionary& details) = 0;
  virtual TModuleErrorCode PushIncrementalReplicationStoppedNotification() = 0;
  virtual TModuleErrorCode PushGoogleReplicationProgressNotification(const platform::Dictionary& details) = 0;
  virtual TModuleErrorCode PushGoogleReplicationStoppedNotification() = 0;
  virtual TModuleErrorCode PushFontServerReplicationProgressNotification(const platform::Dictionary& details) = 0;
  virtual TModuleErrorCode PushFontServerReplicationStoppedNotification() = 0;
  virtual TModuleErrorCode PushDataChangedNotification() = 0;
  virtual TModuleErrorCode PushSmartListsChangedNotification() = 0;
  virtual TModuleErrorCode PushOfflineDownloadFinishedNotification() = 0;
  virtual TModuleErrorCode PushTypekitEnabledNotification(bool enabled) = 0;
};
