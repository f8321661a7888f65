#include "photoshop/PhotoshopInterface.h"

#include "Documents/AllTrackedDocuments.h"
#include "Panel/PanelManager.h"
#include "photoshop/PhotoshopFontUtils.h"

namespace {

PanelManager& Panels() { return *PanelManager::GetSharedInstance(); }

OneTrackedDocument* CurrentDocument() {
  int id = 0;
  if (PSDocumentSuite::GetCurrentDocument(id) != host_sdk::kNoErr) return nullptr;
  return AllTrackedDocuments::FindTrackedDocumentByHandle(id);
}

}  // namespace

HostAppInterface* HostAppInterface::GetHostAppInterface() {
  static PhotoshopInterface sInterface;
  if (!sm_pHostApp) sm_pHostApp = &sInterface;
  return sm_pHostApp;
}

void PhotoshopInterface::RebuildWorkgroupsMenu() { Panels().CheckForTypekit(); }

void PhotoshopInterface::SetCanExportFontsForDocument(bool can) {
  if (OneTrackedDocument* document = CurrentDocument()) document->SetCanExportFontsForDocument(can);
}

bool PhotoshopInterface::CanExportFontsForDocument() {
  const OneTrackedDocument* document = CurrentDocument();
  return document && document->GetCanExportFontsForDocument();
}

void PhotoshopInterface::SetLoggedInState(bool, EServerType serverType) {
  Panels().PushLoggedInStateChangedNotification(serverType);
}
void PhotoshopInterface::SetPanelsEnabled(bool enabled) { Panels().SetEnabled(enabled); }

#define FORWARD_TO_PANELS(operation, push, parameters, arguments) \
  void PhotoshopInterface::operation parameters { Panels().push(arguments); }
HOST_EVENTS(FORWARD_TO_PANELS)
#undef FORWARD_TO_PANELS
