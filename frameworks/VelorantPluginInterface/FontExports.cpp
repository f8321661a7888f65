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

struct FontIDBuffer {
  uint32_t* ids;
  uint32_t capacity;
  uint32_t* count;
};

TModuleErrorCode LookUp(FacadeHandle h, const RecentFonts::Question& question, const FontIDBuffer& out) {
  if (IsConnected(h)) {
    if (const auto ids = RecentFonts::Shared().IDsFor(question)) {
      *out.count = WriteNumbers(*ids, out.ids, out.capacity);
      return kSuccess;
    }
  }
  const uint64_t generation = RecentFonts::Shared().Generation();
  const auto reply = AskAgent<calls::LookUpFonts>(
      h, {{question.name}, question.byFamily, question.workgroupIDs, RecentFonts::kMostRecords});
  if (reply.code != kSuccess) return reply.code;
  if (reply.result.found.size() != 1) return kInvalidMessage;
  const calls::LookUpFonts::Found& found = reply.result.found.front();
  RecentFonts::Shared().Remember(generation, question, found);
  *out.count = WriteNumbers(found.fontIDs, out.ids, out.capacity);
  return kSuccess;
}

}  // namespace

TModuleErrorCode GetFontsByPostscriptName(FacadeHandle h, const char* name, const uint32_t* workgroupIDs,
                                          uint32_t workgroupCount, uint32_t* outFontIDs, uint32_t capacity,
                                          uint32_t* outCount) {
  if (!name || !outCount) return kNullPointer;
  *outCount = 0;
  return Guarded([&] {
    return LookUp(h, {name, false, NumbersOf(workgroupCount, workgroupIDs)}, {outFontIDs, capacity, outCount});
  });
}

TModuleErrorCode GetFontsByFamilyName(FacadeHandle h, const char* name, const uint32_t* workgroupIDs,
                                      uint32_t workgroupCount, uint32_t* outFontIDs, uint32_t capacity,
                                      uint32_t* outCount) {
  if (!name || !outCount) return kNullPointer;
  *outCount = 0;
  return Guarded([&] {
    return LookUp(h, {name, true, NumbersOf(workgroupCount, workgroupIDs)}, {outFontIDs, capacity, outCount});
  });
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
    std::optional<Record> record = IsConnected(h) ? RecentFonts::Shared().RecordOf(*fontID) : std::nullopt;
    if (!record) {
      auto reply = AskAgent<calls::GetFontInfoByID>(h, {*fontID});
      if (reply.code != kSuccess) return reply.code;
      record = std::move(reply.result.record);
    }
    outFields->nDatabaseID = *fontID;
    *outDictionary = DictionaryOf(*record).Release();
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
