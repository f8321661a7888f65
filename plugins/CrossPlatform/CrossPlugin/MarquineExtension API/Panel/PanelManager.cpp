#include "Panel/PanelManager.h"

#include "FailedCheck.h"
#include "GSingleton.h"
#include "Services/DiagnosticLog.h"

MarquinePanel::~MarquinePanel() = default;
PanelManager::~PanelManager() = default;

PanelManager* PanelManager::GetSharedInstance() { return GSingleton<PanelManager>::GetSharedInstance(); }

TModuleErrorCode PanelManager::OpenSocket() {
  OutputIndentedAndFormattedString(0, "%s() called", __func__);
  return CoreErrorCodes::kNotImplemented;
}

TModuleErrorCode PanelManager::RegisterPlugPlug(SDKPlugPlug* plugPlug) {
  OutputIndentedAndFormattedString(0, "%s() called", __func__);
  RETURN_IF("Miscellaneous", (plugPlug) == nullptr, CoreErrorCodes::kNullPointer);
  return CoreErrorCodes::kNotImplemented;
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

// Calls every panel; reports and returns the first code other than 0.
#define FAN_OUT(call)                              \
  for (const auto& panel : mPanels) {              \
    RETURN_IF_ERROR("Miscellaneous", panel->call); \
  }                                                \
  return CoreErrorCodes::kSuccess

TModuleErrorCode PanelManager::SetEnabled(bool enabled) {
  OutputIndentedAndFormattedString(0, "%s(%d) called", __func__, enabled);
  FAN_OUT(SetEnabled(enabled));
}
TModuleErrorCode PanelManager::SelectSocket(bool closeListeningSocket) { FAN_OUT(SelectSocket(closeListeningSocket)); }
TModuleErrorCode PanelManager::PopNotifications() { FAN_OUT(PopNotifications()); }
#define PANEL_PUSH(operation, push, parameters, arguments) \
  TModuleErrorCode PanelManager::push parameters { FAN_OUT(push(arguments)); }
PANEL_PUSHES(PANEL_PUSH)
#undef PANEL_PUSH
#undef FAN_OUT
