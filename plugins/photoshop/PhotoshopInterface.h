// This host, as the rest of the plug-in speaks to it: news go to the panels, the can-export flag to the current document.
#pragma once

#include "Bridge/HostAppInterface.h"

class PhotoshopInterface : public HostAppInterface {
 public:
  void RebuildWorkgroupsMenu() override;
  void HandlePanelDataChanged() override;
  void SetCanExportFontsForDocument(bool can) override;
  bool CanExportFontsForDocument() override;
  void SetLoggedInState(bool loggedIn, EServerType serverType) override;
  void SetIsOnline(bool isOnline) override;
  void FontActivated(unsigned int fontID) override;
  void DesignActivationFailedComplianceCheck(unsigned int fontID) override;
  void FontDeactivated(unsigned int fontID) override;
  void FontMissing(unsigned int fontID) override;
  void BulkReplicationProgress(const platform::Dictionary& details) override;
  void BulkReplicationStopped() override;
  void IncrementalReplicationProgress(const platform::Dictionary& details) override;
  void IncrementalReplicationStopped() override;
  void GoogleReplicationProgress(const platform::Dictionary& details) override;
  void GoogleReplicationStopped() override;
  void GoogleWebFontsEnabled(bool enabled) override;
  void FontServerReplicationProgress(const platform::Dictionary& details) override;
  void FontServerReplicationStopped() override;
  void PreviewPNGsRendered(const platform::Dictionary& fontPNGs) override;
  void SmartListsChanged() override;
  void OfflineDownloadFinished() override;
};
