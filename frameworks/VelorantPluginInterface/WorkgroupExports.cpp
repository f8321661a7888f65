// Workgroups, rights, sets and copying font files.
#include "frameworks/VelorantPluginInterface/AgentRestart.h"
#include "frameworks/VelorantPluginInterface/Exports.h"
#include "frameworks/VelorantPluginInterface/Values.h"

using namespace plugin_interface;
using PluginInterface::FacadeHandle;
using PluginInterface::ValueRef;

namespace {
constexpr int32_t kAllWorkgroups = -2;
}

TModuleErrorCode GetAllWorkgroupsForUser(FacadeHandle h, ValueRef* outArray, bool includeSpecial, bool) {
  if (!outArray) return kNullPointer;
  *outArray = nullptr;
  return Guarded([&] {
    const auto reply = AskAgent<calls::GetAllWorkgroupsForUser>(h, {includeSpecial});
    if (reply.code == kSuccess) *outArray = ArrayOf(reply.result.workgroups).Release();
    return reply.code;
  });
}

TModuleErrorCode GetDefaultLibraryName(FacadeHandle h, char* buffer, uint32_t size) {
  return Guarded([&] {
    const auto reply = CallAgent<calls::GetDefaultLibraryName>(h);
    return reply.code == kSuccess ? WriteText(reply.result.name, buffer, size) : reply.code;
  });
}

TModuleErrorCode GetSystemWorkgroupID(FacadeHandle h, uint32_t* out) {
  if (!out) return kNullPointer;
  return Guarded([&] {
    const auto reply = AskAgent<calls::GetSystemWorkgroupID>(h);
    if (reply.code == kSuccess) *out = reply.result.workgroupID;
    return reply.code;
  });
}

int32_t IsAllWorkgroups(int32_t workgroupID) { return workgroupID == kAllWorkgroups || workgroupID == 0 ? 1 : 0; }

TModuleErrorCode GetPermission(FacadeHandle h, uint16_t, const char* right, uint32_t workgroupID, int32_t* out) {
  if (!right) return kNullPointer;
  return ReadValue<calls::GetPermission>(h, {{right, workgroupID}}, out);
}

TModuleErrorCode CreateTopLevelSet(FacadeHandle h, uint32_t* outSetID, uint32_t workgroupID, const char* name, uint32_t,
                                   uint32_t, uint32_t count, const uint32_t* fontIDs) {
  if (!outSetID || !name || (count > 0 && !fontIDs)) return kNullPointer;
  return Guarded([&] {
    const auto reply = CallAgent<calls::CreateTopLevelSet>(h, {name, workgroupID, NumbersOf(count, fontIDs)});
    if (reply.code == kSuccess) *outSetID = reply.result.setID;
    return reply.code;
  });
}

TModuleErrorCode AddFontsToSets(FacadeHandle h, uint32_t setCount, const uint32_t* setIDs, uint32_t count,
                                const uint32_t* fontIDs) {
  if ((setCount > 0 && !setIDs) || (count > 0 && !fontIDs)) return kNullPointer;
  return Guarded([&] {
    return CallAgent<calls::AddFontsToSets>(h, {NumbersOf(setCount, setIDs), NumbersOf(count, fontIDs)}).code;
  });
}

TModuleErrorCode CanExportFonts(FacadeHandle h, uint32_t count, const uint32_t* fontIDs, int32_t* out) {
  if (count > 0 && !fontIDs) return kNullPointer;
  return ReadValue<calls::CanExportFonts>(h, {{NumbersOf(count, fontIDs)}}, out);
}

TModuleErrorCode ExportFonts(FacadeHandle h, uint32_t count, const uint32_t* fontIDs, const char* folder, uint32_t,
                             uint32_t) {
  if (!folder || (count > 0 && !fontIDs)) return kNullPointer;
  return Guarded([&] { return CallAgent<calls::ExportFonts>(h, {NumbersOf(count, fontIDs), folder}).code; });
}
