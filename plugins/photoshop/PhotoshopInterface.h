// HostAppInterface for this host. Forwards news to the panels and stores the can-export flag in the current document.
#pragma once

#include "Bridge/HostAppInterface.h"

class PhotoshopInterface : public HostAppInterface {
 public:
  void RebuildWorkgroupsMenu() override;
  void SetCanExportFontsForDocument(bool can) override;
  bool CanExportFontsForDocument() override;
  void SetLoggedInState(bool loggedIn, EServerType serverType) override;
  void SetPanelsEnabled(bool enabled) override;
#define FORWARD_TO_PANELS(operation, push, parameters, arguments) void operation parameters override;
  HOST_EVENTS(FORWARD_TO_PANELS)
#undef FORWARD_TO_PANELS
};
