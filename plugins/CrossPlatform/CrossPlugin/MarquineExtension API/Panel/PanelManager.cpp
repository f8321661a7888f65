#include "Panel/PanelManager.h"

#include "GSingleton.h"
#include "Panel/FlashPanel.h"
#include "Panel/HTMLPanel.h"
#include "Panel/PanelChecks.h"

// Calls every panel; reports and returns the first code other than 0.
#define FAN_OUT(operation, arguments)                                                     \
  for (const auto& panel : mPanels) {                                                     \
    PANEL_CHECK_AS(panel->operation(arguments), "(*it)->" #operation "(" #arguments ")"); \
  }                                                                                       \
  return CoreErrorCodes::kSuccess

PanelManager::~PanelManager() = default;

PanelManager* PanelManager::GetSharedInstance() { return GSingleton<PanelManager>::GetSharedInstance(); }

TModuleErrorCode PanelManager::OpenSocket() {
  OutputIndentedAndFormattedString(0, "%s() called", __func__);
  mPanels.push_back(std::make_unique<FlashPanel>());
  FAN_OUT(OpenSocket, );
}

TModuleErrorCode PanelManager::RegisterPlugPlug(SDKPlugPlug* plugPlug) {
  OutputIndentedAndFormattedString(0, "%s() called", __func__);
  RETURN_IF(kPanelLogIdentifier, (plugPlug) == nullptr, CoreErrorCodes::kNullPointer);
  auto htmlPanel = std::make_unique<HTMLPanel>(plugPlug);
  PANEL_CHECK(htmlPanel->RegisterHandler());
  mPanels.push_back(std::move(htmlPanel));
  return CoreErrorCodes::kSuccess;
}

unsigned int PanelManager::GetSocketPort() {
  OutputIndentedAndFormattedString(0, "%s() called", __func__);
  for (const auto& panel : mPanels) {
    if (const unsigned int port = panel->GetSocketPort()) return port;
  }
  return 0;
}

void PanelManager::CheckForTypekit() {
  for (const auto& panel : mPanels) panel->CheckForTypekit();
}

TModuleErrorCode PanelManager::SetEnabled(bool enabled) {
  OutputIndentedAndFormattedString(0, "%s(%d) called", __func__, enabled);
  FAN_OUT(SetEnabled, enabled);
}
TModuleErrorCode PanelManager::SelectSocket(bool closeListeningSocket) { FAN_OUT(SelectSocket, closeListeningSocket); }
TModuleErrorCode PanelManager::PopNotifications() { FAN_OUT(PopNotifications, ); }
#define PANEL_PUSH(operation, push, parameters, arguments) \
  TModuleErrorCode PanelManager::push parameters { FAN_OUT(push, arguments); }
PANEL_PUSHES(PANEL_PUSH)
#undef PANEL_PUSH
#undef FAN_OUT
