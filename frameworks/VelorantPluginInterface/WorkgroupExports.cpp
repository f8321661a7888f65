// Workgroups, rights, sets, and copies of font files.
#include "frameworks/VelorantPluginInterface/Calls.h"
#include "frameworks/VelorantPluginInterface/Exports.h"
#include "frameworks/VelorantPluginInterface/Values.h"

using namespace plugin_interface;
using PluginInterface::FacadeHandle;
using PluginInterface::ValueRef;

namespace {
constexpr int32_t kAllWorkgroups = -2;
}

TModuleErrorCode GetAllWorkgroupsForUser(FacadeHandle h, ValueRef* outArray, bool includeSpecial, bool flag) {
  if (!outArray) return kNullPointer;
  *outArray = nullptr;
  return Guarded([&] {
    const CallResult reply =
        CallAgent(h, "GetAllWorkgroupsForUser", {{"includeSpecial", includeSpecial}, {"flag", flag}});
    if (reply.code == kSuccess) *outArray = ValueOfJson(reply.result.at("workgroups")).Release();
    return reply.code;
  });
}

TModuleErrorCode GetDefaultLibraryName(FacadeHandle h, char* buffer, uint32_t size) {
  return Guarded([&] {
    const CallResult reply = CallAgent(h, "GetDefaultLibraryName");
    return reply.code == kSuccess ? WriteText(reply.result.at("name").get<std::string>(), buffer, size) : reply.code;
  });
}

TModuleErrorCode GetSystemWorkgroupID(FacadeHandle h, uint32_t* out) {
  if (!out) return kNullPointer;
  return Guarded([&] {
    const CallResult reply = CallAgent(h, "GetSystemWorkgroupID");
    if (reply.code == kSuccess) *out = NumberOfJson(reply.result.at("workgroupID"));
    return reply.code;
  });
}

int32_t IsAllWorkgroups(int32_t workgroupID) { return workgroupID == kAllWorkgroups || workgroupID == 0 ? 1 : 0; }

TModuleErrorCode GetPermission(FacadeHandle h, uint16_t flag, const char* right, uint32_t workgroupID, int32_t* out) {
  if (!right) return kNullPointer;
  return ReadNumber(h, "GetPermission", {{"flag", flag}, {"right", right}, {"workgroupID", workgroupID}}, out);
}

TModuleErrorCode CreateTopLevelSet(FacadeHandle h, uint32_t* outSetID, uint32_t workgroupID, const char* name, uint32_t,
                                   uint32_t, uint32_t count, const uint32_t* fontIDs) {
  if (!outSetID || !name || (count > 0 && !fontIDs)) return kNullPointer;
  return Guarded([&] {
    const CallResult reply = CallAgent(
        h, "CreateTopLevelSet", {{"workgroupID", workgroupID}, {"name", name}, {"fontIDs", Numbers(count, fontIDs)}});
    if (reply.code == kSuccess) *outSetID = NumberOfJson(reply.result.at("setID"));
    return reply.code;
  });
}

TModuleErrorCode AddFontsToSets(FacadeHandle h, uint32_t setCount, const uint32_t* setIDs, uint32_t count,
                                const uint32_t* fontIDs) {
  if ((setCount > 0 && !setIDs) || (count > 0 && !fontIDs)) return kNullPointer;
  return Guarded([&] {
    return CallAgent(h, "AddFontsToSets", {{"setIDs", Numbers(setCount, setIDs)}, {"fontIDs", Numbers(count, fontIDs)}})
        .code;
  });
}

TModuleErrorCode CanExportFonts(FacadeHandle h, uint32_t count, const uint32_t* fontIDs, int32_t* out) {
  if (count > 0 && !fontIDs) return kNullPointer;
  return ReadNumber(h, "CanExportFonts", {{"fontIDs", Numbers(count, fontIDs)}}, out);
}

TModuleErrorCode ExportFonts(FacadeHandle h, uint32_t count, const uint32_t* fontIDs, const char* folder, uint32_t,
                             uint32_t) {
  if (!folder || (count > 0 && !fontIDs)) return kNullPointer;
  return Guarded([&] {
    return CallAgent(h, "ExportFonts", {{"fontIDs", Numbers(count, fontIDs)}, {"folder", folder}}).code;
  });
}
