// Looking fonts up, and what the agent says of one.
#include "frameworks/VelorantPluginInterface/Calls.h"
#include "frameworks/VelorantPluginInterface/Exports.h"
#include "frameworks/VelorantPluginInterface/Values.h"

using namespace plugin_interface;
using platform::Array;
using platform::Dictionary;
using platform::Value;
using PluginInterface::FacadeHandle;
using PluginInterface::FontRecordFields;
using PluginInterface::ValueRef;

namespace {

constexpr const char* kDatabaseIDKey = "DatabaseID";
constexpr const char* kAssignedFamilyIDKey = "AssignedFamilyID";

struct Workgroups {
  const uint32_t* ids;
  uint32_t count;
};

struct FontIDBuffer {
  uint32_t* ids;
  uint32_t capacity;
  uint32_t* count;
};

TModuleErrorCode LookUp(FacadeHandle h, const char* call, const char* name, const Workgroups& workgroups,
                        const FontIDBuffer& out) {
  if (!name || !out.count) return kNullPointer;
  *out.count = 0;
  return Guarded([&] {
    const CallResult reply =
        CallAgent(h, call, {{"name", name}, {"workgroupIDs", Numbers(workgroups.count, workgroups.ids)}});
    if (reply.code == kSuccess) *out.count = WriteNumbers(reply.result.at("fontIDs"), out.ids, out.capacity);
    return reply.code;
  });
}

}  // namespace

TModuleErrorCode GetFontsByPostscriptName(FacadeHandle h, const char* name, const uint32_t* workgroupIDs,
                                          uint32_t workgroupCount, uint32_t* outFontIDs, uint32_t capacity,
                                          uint32_t* outCount) {
  return LookUp(h, "GetFontsByPostscriptName", name, {workgroupIDs, workgroupCount}, {outFontIDs, capacity, outCount});
}

TModuleErrorCode GetFontsByFamilyName(FacadeHandle h, const char* name, const uint32_t* workgroupIDs,
                                      uint32_t workgroupCount, uint32_t* outFontIDs, uint32_t capacity,
                                      uint32_t* outCount) {
  return LookUp(h, "GetFontsByFamilyName", name, {workgroupIDs, workgroupCount}, {outFontIDs, capacity, outCount});
}

TModuleErrorCode GetFontInfoByID(FacadeHandle h, const uint32_t* workgroupIDs, uint32_t workgroupCount,
                                 ValueRef request, FontRecordFields* outFields, ValueRef* outDictionary) {
  if (!outFields || !outDictionary) return kNullPointer;
  *outFields = {};
  *outDictionary = nullptr;
  const auto fontID = NumberInText(Dictionary(Value::Retain(request)), kDatabaseIDKey);
  if (!fontID) return kInvalidParam;
  return Guarded([&] {
    const CallResult reply =
        CallAgent(h, "GetFontInfoByID", {{"fontID", *fontID}, {"workgroupIDs", Numbers(workgroupCount, workgroupIDs)}});
    if (reply.code != kSuccess) return reply.code;
    Value record = ValueOfJson(reply.result.at("record"));
    if (!record.Is(platform::ValueType::kDictionary)) return kInvalidMessage;
    outFields->nDatabaseID = *fontID;
    *outDictionary = record.Release();
    return kSuccess;
  });
}

TModuleErrorCode FindFontsInSameFamilyForActivation(ValueRef fontRecord, const uint32_t* workgroupIDs,
                                                    uint32_t workgroupCount, ValueRef filledArray) {
  const Dictionary font(Value::Retain(fontRecord));
  Array family(Value::Retain(filledArray));
  if (!font || !family) return kNullPointer;
  const auto familyID = NumberInText(font, kAssignedFamilyIDKey);
  if (!familyID) return kInvalidParam;
  return Guarded([&] {
    const CallResult reply = CurrentFacade()->Call("FindFontsInSameFamilyForActivation",
                                                   {{"fontID", NumberInText(font, kDatabaseIDKey).value_or(0)},
                                                    {"familyID", *familyID},
                                                    {"workgroupIDs", Numbers(workgroupCount, workgroupIDs)}});
    if (reply.code != kSuccess) return reply.code;
    for (const Json& record : reply.result.at("records")) family.Append(ValueOfJson(record));
    return kSuccess;
  });
}
