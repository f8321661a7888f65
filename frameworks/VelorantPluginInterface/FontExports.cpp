// Looking fonts up and reading their records.
#include "frameworks/VelorantPluginInterface/AgentRestart.h"
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

template <class Call>
TModuleErrorCode LookUp(FacadeHandle h, const char* name, const Workgroups& workgroups, const FontIDBuffer& out) {
  if (!name || !out.count) return kNullPointer;
  *out.count = 0;
  return Guarded([&] {
    const Reply<Call> reply = AskAgent<Call>(h, {{name, NumbersOf(workgroups.count, workgroups.ids)}});
    if (reply.code == kSuccess) *out.count = WriteNumbers(reply.result.fontIDs, out.ids, out.capacity);
    return reply.code;
  });
}

}  // namespace

TModuleErrorCode GetFontsByPostscriptName(FacadeHandle h, const char* name, const uint32_t* workgroupIDs,
                                          uint32_t workgroupCount, uint32_t* outFontIDs, uint32_t capacity,
                                          uint32_t* outCount) {
  return LookUp<calls::GetFontsByPostscriptName>(h, name, {workgroupIDs, workgroupCount},
                                                 {outFontIDs, capacity, outCount});
}

TModuleErrorCode GetFontsByFamilyName(FacadeHandle h, const char* name, const uint32_t* workgroupIDs,
                                      uint32_t workgroupCount, uint32_t* outFontIDs, uint32_t capacity,
                                      uint32_t* outCount) {
  return LookUp<calls::GetFontsByFamilyName>(h, name, {workgroupIDs, workgroupCount}, {outFontIDs, capacity, outCount});
}

// Ignores the workgroups, because a font is in one workgroup only, and callers pass pseudo IDs.
TModuleErrorCode GetFontInfoByID(FacadeHandle h, const uint32_t*, uint32_t, ValueRef request,
                                 FontRecordFields* outFields, ValueRef* outDictionary) {
  if (!outFields || !outDictionary) return kNullPointer;
  *outFields = {};
  *outDictionary = nullptr;
  const auto fontID = NumberInText(Dictionary(Value::Retain(request)), kDatabaseIDKey);
  if (!fontID) return kInvalidParam;
  return Guarded([&] {
    const auto reply = AskAgent<calls::GetFontInfoByID>(h, {*fontID});
    if (reply.code != kSuccess) return reply.code;
    outFields->nDatabaseID = *fontID;
    *outDictionary = DictionaryOf(reply.result.record).Release();
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
    const auto reply = AskAgent<calls::FindFontsInSameFamilyForActivation>(
        CurrentFacade()->Handle(),
        {NumberInText(font, kDatabaseIDKey).value_or(0), *familyID, NumbersOf(workgroupCount, workgroupIDs)});
    for (const Record& record : reply.result.records) family.Append(DictionaryOf(record));
    return reply.code;
  });
}
