// Instances and their life cycle, notifications, and state queries.
#include "agent/client/AgentProcess.h"
#include "frameworks/VelorantPluginInterface/AgentRestart.h"
#include "frameworks/VelorantPluginInterface/Calls.h"
#include "frameworks/VelorantPluginInterface/Exports.h"
#include "frameworks/VelorantPluginInterface/Notifications.h"
#include "platform/Folders.h"

using namespace plugin_interface;
using PluginInterface::FacadeHandle;
using PluginInterface::NotificationCallback;

FacadeHandle GetPluginFacadeInstance() {
  FacadeHandle handle = 0;
  Guarded([&] {
    handle = CurrentFacade()->Handle();
    return kSuccess;
  });
  return handle;
}

TModuleErrorCode ResetPluginFacadeInstance() {
  DiscardFacade(false);
  return kSuccess;
}

// An unreachable agent is not a failure here: the caller asks next whether it is running and tells the user.
TModuleErrorCode InitAppInstance(FacadeHandle h, uint32_t, uint32_t) {
  return Guarded([&] {
    uint32_t code = kSuccess;
    const auto facade = FacadeOf(h, code);
    if (facade) code = facade->Connect();
    return IsUnreachable(code) ? kSuccess : code;
  });
}

TModuleErrorCode InitThreadInstance(FacadeHandle h) {
  return Guarded([&] {
    const uint32_t code = CallAgent<calls::InitThreadInstance>(h).code;
    return IsUnreachable(code) ? kAgentNotFound : code;
  });
}

// An orderly end: the caller has deactivated what should not stay active.
TModuleErrorCode DestroyThreadInstance(FacadeHandle h) {
  return Guarded([&] {
    uint32_t code = kSuccess;
    const auto facade = FacadeOf(h, code);
    if (facade) facade->Disconnect(true);
    return code;
  });
}

TModuleErrorCode CleanUpOnShutdown(FacadeHandle h) {
  return Guarded([&] {
    uint32_t code = kSuccess;
    if (FacadeOf(h, code)) DiscardFacade(true);
    ForgetRestarts();
    return code;
  });
}

TModuleErrorCode RegisterForNotifications(FacadeHandle h, NotificationCallback callback) {
  if (!callback) return kNullPointer;
  return Guarded([&] {
    AddCallback(callback);
    uint32_t code = kSuccess;
    const auto facade = FacadeOf(h, code);
    return facade ? facade->Connect() : code;
  });
}

TModuleErrorCode UnregisterForNotifications(FacadeHandle, NotificationCallback callback) {
  RemoveCallback(callback);
  return kSuccess;
}

TModuleErrorCode GetIsCoreAgentProcessRunning(FacadeHandle h, int32_t* out) {
  if (!out) return kNullPointer;
  return Guarded([&] {
    uint32_t code = kSuccess;
    const auto facade = FacadeOf(h, code);
    bool isThere =
        (facade && facade->IsConnected()) || agent_client::IsAgentProcessRunning(platform::GetPlaces().runtime);
    // After a no the plug-in does nothing more in this session, and an agent may be killed just before it asks.
    isThere = isThere || ReturnToAgent();
    // A silent agent counts as not running: otherwise callers would wait for it and report fonts as missing.
    *out = isThere && !IsAgentSilent() ? 1 : 0;
    return kSuccess;
  });
}

TModuleErrorCode GetAreSchemaVersionsInSync(FacadeHandle h, int32_t* out) {
  if (!out) return kNullPointer;
  return Guarded([&] {
    uint32_t code = kSuccess;
    const auto facade = FacadeOf(h, code);
    if (facade) code = facade->Connect();
    if (code != kSuccess && code != kVersionMismatch) return code;
    *out = code == kSuccess ? 1 : 0;
    return kSuccess;
  });
}

TModuleErrorCode GetFontVaultPath(FacadeHandle h, uint32_t size, char* buffer) {
  return Guarded([&] {
    const auto reply = CallAgent<calls::GetFontVaultPath>(h);
    return reply.code == kSuccess ? WriteText(reply.result.path, buffer, size) : reply.code;
  });
}

#define STATE_QUESTION(name) \
  TModuleErrorCode name(FacadeHandle h, int32_t* out) { return ReadValue<calls::name>(h, {}, out); }
STATE_QUESTION(GetIsLoggedIn)
STATE_QUESTION(GetIsOnline)
STATE_QUESTION(GetIsStandaloneMode)
STATE_QUESTION(GetIsReplicationRunning)
STATE_QUESTION(GetCurrentReplicationMode)
#undef STATE_QUESTION
