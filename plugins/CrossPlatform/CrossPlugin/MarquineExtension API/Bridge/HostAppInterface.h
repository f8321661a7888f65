// The host as the rest of the plug-in sees it, without knowing which host it is. Every operation of the base does nothing.
#pragma once

#include <map>
#include <string>

#include "platform/Value.h"

// Which server a login concerns, as the agent numbers them. 3 is a server that this plug-in has no dealings with.
enum EServerType : int { kServerTypeDefault = 1, kServerTypeIgnored = 3 };

class HostAppInterface {
 public:
  // The one host object, made on first use and kept for the life of the process.
  static HostAppInterface* GetHostAppInterface();
  static void SetForTesting(HostAppInterface* host) { sm_pHostApp = host; }

  virtual void RebuildWorkgroupsMenu() = 0;
  virtual void HandlePanelDataChanged() {}
  virtual void SetCanExportFontsForDocument(bool) {}
  virtual bool CanExportFontsForDocument() { return false; }
  virtual void SetMissingFontsDialogNeeded() {}
  virtual void SetLoggedInState(bool, EServerType) {}
  virtual void SetIsOnline(bool) {}
  virtual void FontActivated(unsigned int) {}
  virtual void FontActivationRecognized(unsigned int) {}
  virtual void DesignActivationFailedComplianceCheck(unsigned int) {}
  virtual void FontDeactivated(unsigned int) {}
  virtual void FontMissing(unsigned int) {}
  virtual void BulkReplicationProgress(const platform::Dictionary&) {}
  virtual void BulkReplicationStopped() {}
  virtual void IncrementalReplicationProgress(const platform::Dictionary&) {}
  virtual void IncrementalReplicationStopped() {}
  virtual void LumetypeReplicationProgress(const platform::Dictionary&) {}
  virtual void LumetypeReplicationStopped() {}
  virtual void GoogleReplicationProgress(const platform::Dictionary&) {}
  virtual void GoogleReplicationStopped() {}
  virtual void GoogleWebFontsEnabled(bool) {}
  virtual void FontServerReplicationProgress(const platform::Dictionary&) {}
  virtual void FontServerReplicationStopped() {}
  virtual void PreviewPNGsRendered(const platform::Dictionary&) {}
  virtual void SmartListsChanged() {}
  virtual void OfflineDownloadFinished() {}
  virtual ~HostAppInterface();

 private:
  static HostAppInterface* sm_pHostApp;
  std::map<std::string, std::string> mProperties;  // part of the object's form; nothing reads it
};
