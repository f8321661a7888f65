// Looks fonts up and turns agent data into font records. Part of CoreAgentInterface.
#include <algorithm>
#include <cstring>

#include "Bridge/CoreAgentInterface.h"
#include "Bridge/CoreAgentSupport.h"
#include "Bridge/FontDataPreviouslyGottenFromDatabase.h"
#include "Identification/FontNames.h"
#include "Identification/FontRecords.h"
#include "Services/DiagnosticLog.h"
#include "XCore/ECFExtensions/XCFUtils.h"

using namespace GlyphsureSupport;
using platform::Dictionary;
using platform::String;
using platform::Value;

namespace {

constexpr uint32_t kPostScriptNameCapacity = 1024;
constexpr uint32_t kFamilyNameCapacity = 4096;

// Indexed by the agent's state, 0 to 11.
constexpr int kPluginStates[] = {1, 3, 3, 3, 2, 2, 2, 0, 0, 3, 3, 2};

// Appends the fonts that the agent finds in some workgroups, at most as many as the buffer holds.
TModuleErrorCode Query(TypeOfFontName kind, const std::string& name, const std::vector<uint32_t>& workgroups,
                       std::vector<uint64_t>& out) {
  const bool byFamily = kind == kFamilyName;
  std::vector<uint32_t> buffer(byFamily ? kFamilyNameCapacity : kPostScriptNameCapacity);
  const auto capacity = static_cast<uint32_t>(buffer.size());
  const auto function = byFamily ? AgentTable().pfGetFontsByFamilyName : AgentTable().pfGetFontsByPostscriptName;
  uint32_t count = 0;
  const TModuleErrorCode code = function(GetFacade(), name.c_str(), workgroups.data(),
                                         static_cast<uint32_t>(workgroups.size()), buffer.data(), capacity, &count);
  AppendArrayToVector(buffer.data(), std::min(count, capacity), out);
  return code;
}

Dictionary RequestFor(uint64_t fontID, long workgroupID) {
  Dictionary request = Dictionary::Create();
  XCFUtils::PutULongIntoDictAsString(request, kGS_DatabaseIDKey, fontID);
  XCFUtils::PutLongIntoDictAsString(request, kGS_WorkgroupIDKey, workgroupID);
  return request;
}

}  // namespace

int CoreAgentInterface::LookUp(const std::string& name, TypeOfFontName kind, long workgroupID,
                               std::vector<uint64_t>& out) {
  if (kind != kPostScriptName && kind != kFamilyName) return -1;
  FontIDs workgroups;
  PopulateWorkgroupArray(static_cast<int>(workgroupID), workgroups);
  std::vector<uint64_t> found;
  TModuleErrorCode code = Query(kind, name, workgroups, found);
  if (!IsAllWorkgroups(static_cast<int>(workgroupID)) && GetSystemWorkgroupID() != -1) {
    code = Query(kind, name, {static_cast<uint32_t>(GetSystemWorkgroupID())}, found);
  }
  out.swap(found);
  return code == 0 ? 0 : -1;
}

int CoreAgentInterface::FontIDsForPostScriptName(const std::string& name, long workgroupID,
                                                 std::vector<uint64_t>& out) {
  return LookUp(name, kPostScriptName, workgroupID, out);
}

int CoreAgentInterface::FontIDsForFamilyName(const std::string& name, long workgroupID, std::vector<uint64_t>& out) {
  return LookUp(name, kFamilyName, workgroupID, out);
}

int CoreAgentInterface::CountNamedFonts(const std::string& name, TypeOfFontName kind, long workgroupID, long* outCount,
                                        std::string&) {
  std::vector<uint64_t> ids;
  const int status = LookUp(name, kind, workgroupID, ids);
  *outCount = static_cast<long>(ids.size());
  return status;
}

int CoreAgentInterface::GetNamedFontInfo(const std::string& name, TypeOfFontName kind, long workgroupID, long index,
                                         std::string&, FontOrSetInfoRec* out) {
  std::vector<uint64_t> ids;
  const int status = LookUp(name, kind, workgroupID, ids);
  if (status != 0) return status;
  if (index < 1 || static_cast<size_t>(index) > ids.size()) return -1;
  return GetFontInfoByID(RequestFor(ids[static_cast<size_t>(index) - 1], workgroupID), out);
}

int CoreAgentInterface::GetFontInfoByID(const Dictionary& request, FontOrSetInfoRec* out) {
  const long requested = XCFUtils::GetLongFromDictString(request, kGS_WorkgroupIDKey);
  const bool all = IsAllWorkgroupsSelected() || IsAllWorkgroups(static_cast<int>(requested));
  FontIDs workgroups;
  PopulateWorkgroupArray(all ? kAllWorkgroupsID : -1, workgroups);
  *out = FontOrSetInfoRec();
  platform::ValueRef dictionary = nullptr;
  const TModuleErrorCode code =
      AgentTable().pfGetFontInfoByID(GetFacade(), workgroups.data(), static_cast<uint32_t>(workgroups.size()),
                                     request.Ref(), &out->fields, &dictionary);
  out->fontInfo = Dictionary(Value::Adopt(dictionary));
  if (code == 0 && out->fontInfo) {
    out->tag = 1;
    ConvertActivationStateValues(out->fontInfo);
    out->activationState = static_cast<int16_t>(XCFUtils::GetLongFromDictString(out->fontInfo, kGS_ActivationStateKey));
    FixGlyphsureChecksumsIfNeeded(out->fontInfo);
    FontDataPreviouslyGottenFromDatabase::Add(out->fields.nDatabaseID, *out);
  }
  return static_cast<int>(code);
}

int CoreAgentInterface::ComputePluginActivationState(long agentState) {
  constexpr long kCount = sizeof kPluginStates / sizeof *kPluginStates;
  return agentState >= 0 && agentState < kCount ? kPluginStates[agentState] : 0;
}

int CoreAgentInterface::ConvertActivationStateValues(Dictionary record) {
  if (!record) return -1;
  const long agentState = XCFUtils::GetLongFromDictString(record, kGS_ActivationStateKey);
  const int state = ComputePluginActivationState(agentState);
  XCFUtils::PutLongIntoDictAsString(record, kGS_ActivationStateKey, state);
  XCFUtils::PutLongIntoDictAsString(record, kGS_IsTempKey, state == kStateTemporarilyActive);
  XCFUtils::PutLongIntoDictAsString(record, kGS_IsActiveKey, state == kStateActive || state == kStateTemporarilyActive);
  XCFUtils::PutLongIntoDictAsString(record, kGS_IsAutoActivatedKey, agentState == 1 || agentState == 2);
  return 0;
}

int CoreAgentInterface::GetPostscriptNameByID(std::string& outName, int workgroupID, unsigned fontID) {
  FontIDs workgroups;
  PopulateWorkgroupArray(GetCurrentWorkgroupID(), workgroups);
  FontOrSetInfoRec record;
  platform::ValueRef dictionary = nullptr;
  const TModuleErrorCode code =
      AgentTable().pfGetFontInfoByID(GetFacade(), workgroups.data(), static_cast<uint32_t>(workgroups.size()),
                                     RequestFor(fontID, workgroupID).Ref(), &record.fields, &dictionary);
  const Dictionary info(Value::Adopt(dictionary));
  if (code == 0) outName = info.GetString(kGS_PostScriptNameKey).Text();
  return static_cast<int>(code);
}

int CoreAgentInterface::GetGlyphsureInfo(unsigned, const Dictionary& fontInfo, char* xmlBuffer,
                                         unsigned long* inOutSize) {
  if (!fontInfo) return -1;
  Array one = Array::Create();
  one.Append(fontInfo);
  String text;
  const int status = CreateXMLGlyphsureSlug(one, &text);
  if (status != 0) return status;
  // Text that does not fit leaves the buffer unchanged and is not an error.
  if (text.View().size() < *inOutSize) std::memcpy(xmlBuffer, text.CString(), text.View().size() + 1);
  return 0;
}

int CoreAgentInterface::EndGetGlyphsureInfo(const std::string&) {
  return static_cast<int>(CoreErrorCodes::kNotImplemented);
}

int CoreAgentInterface::FindFontsInSameFamilyForActivation(const Dictionary& font, const Array& documentFonts,
                                                           int workgroupID, Array* outFonts) {
  if (!font || !outFonts || !*outFonts) {
    OutputIndentedAndFormattedString(0, "*** ERROR: inFontRef and/or outFontsInFamily is NULL");
    return -1;
  }
  if (!font.Contains(kGS_AssignedFamilyGroupIDKey)) {
    OutputIndentedAndFormattedString(0, "*** ERROR: inFontRef does not include assigned family group ID");
    return -1;
  }
  FontIDs workgroups;
  PopulateWorkgroupArray(workgroupID, workgroups);
  AgentTable().pfFindFontsInSameFamilyForActivation(font.Ref(), workgroups.data(),
                                                    static_cast<uint32_t>(workgroups.size()), outFonts->Ref());
  const String ownID = font.GetString(kGS_DatabaseIDKey);
  for (size_t i = outFonts->Count(); i-- > 0;) {
    const Dictionary member(outFonts->At(i));
    if (!member) {
      OutputIndentedAndFormattedString(0, "ERROR:  outFontsInFamily[%d] is NULL", static_cast<int>(i));
      continue;
    }
    const String id = member.GetString(kGS_DatabaseIDKey);
    const String name = member.GetString(kGS_PostScriptNameKey);
    const bool isTheFont = id && id.View() == ownID.View();
    if (!isTheFont && DoesArrayContainFontWithPostScriptName(documentFonts, name)) {
      OutputIndentedAndFormattedString(
          0,
          ">>> Skipping family font \"%s\" (fontID %d), because it's a duplicate of one of "
          "the original doc font matches.",
          name.CString(), static_cast<int>(XCFUtils::GetLongFromDictString(member, kGS_DatabaseIDKey)));
      outFonts->RemoveAt(i);
      continue;
    }
    if (!isTheFont) ConvertActivationStateValues(member);
  }
  return 0;
}
