// Finds the candidates of a document font. Part of FontManagerInterface.
#include <cstring>
#include <vector>

#include "Bridge/FontManagerInterface.h"
#include "Identification/FontMatching.h"
#include "Identification/FontNames.h"
#include "Services/DiagnosticLog.h"
#include "XCore/ECFExtensions/TextConversion.h"
#include "XCore/ECFExtensions/XCFUtils.h"
#include "platform/PropertyList.h"

using namespace GlyphsureSupport;
using platform::Array;
using platform::Dictionary;
using platform::String;

namespace {

constexpr unsigned long kInfoBufferSize = 65536;

String NameOfKind(const Dictionary& record, TypeOfFontName kind) {
  if (kind == kPostScriptName) return record.GetString(kGS_PostScriptNameKey);
  if (kind == kFamilyName) return record.GetString(kGS_FamilyKey);
  return String();
}

// Returns an array whose first element is the font's record. On failure, traces a line and returns null.
Array ParseInfo(const char* xml) {
  const platform::PropertyListResult parsed = platform::ParseXMLPropertyList(xml);
  Array list(parsed.value);
  if (!list || list.Count() == 0) {
    OutputIndentedAndFormattedString(0,
                                     "...CFPropertyListCreateFromXMLData failed on \"%s\".  OS message is:\n   \"%s\"",
                                     xml, parsed.error.c_str());
    return Array();
  }
  return list;
}

void AddDecimal(Dictionary& record, std::string_view key, const char* keyName, long value) {
  XCFUtils::PutLongIntoDictAsString(record, key, value);
  const char* format = record.Contains(key) ? "Added %s:  %d" : "Failed to add %s:  %d";
  OutputIndentedAndFormattedString(0, format, keyName, static_cast<int>(value));
}

}  // namespace

int16_t FontManagerInterface::GetGlyphsureData(const Dictionary& record, TypeOfFontName kind, bool& excludedRemote,
                                               long workgroupID, Array* inOut) {
  const String name = NameOfKind(record, kind);
  if (!name || !inOut || !*inOut) return -1;
  int status = -1;
  // Do not look up a name that does not fit the look-up's buffer.
  if (name.View().size() < kNameBufferSize) {
    status = GetGlyphsureDataForFontName(name.CString(), kind, excludedRemote, workgroupID, inOut);
    if (status == 0 && inOut->Count() == 0) {
      const String bare = StripIllegalPostScriptCharacters(name);
      status = GetGlyphsureDataForFontName(bare.CString(), kind, excludedRemote, workgroupID, inOut);
    }
    if (status == 0 && inOut->Count() == 0)
      status = SearchWithoutAdditions(name.Text(), excludedRemote, workgroupID, inOut);
  }
  if (inOut->Count() >= 2) {
    OutputIndentedAndFormattedString(0, "...Sorting a %d-element array of Glyphsure data for '%s'.",
                                     static_cast<int>(inOut->Count()), name.CString());
    SortByBestMatch(*inOut, record);
  }
  return static_cast<int16_t>(status);
}

int FontManagerInterface::SearchWithoutAdditions(const std::string& name, bool& excludedRemote, long workgroupID,
                                                 Array* inOut) {
  char shorter[kNameBufferSize];
  std::strncpy(shorter, name.c_str(), sizeof shorter - 1);
  shorter[sizeof shorter - 1] = '\0';
  int status = 0;
  while (PSNameMightHaveCruftAppended(shorter, sizeof shorter, shorter)) {
    std::string spaced = shorter;
    replaceAll(spaced, "-", " ");
    const std::pair<const char*, TypeOfFontName> attempts[] = {
        {shorter, kPostScriptName}, {shorter, kFamilyName}, {spaced.c_str(), kFamilyName}};
    for (const auto& [attempt, kind] : attempts) {
      status = GetGlyphsureDataForFontName(attempt, kind, excludedRemote, workgroupID, inOut);
      if (status == 0 && inOut->Count() > 0) return 0;
    }
  }
  return status;
}

int FontManagerInterface::AppendRecordOf(const FontOrSetInfoRec& found, const char* name, bool& excludedRemote,
                                         Array& result) {
  std::vector<char> buffer(kInfoBufferSize);
  unsigned long size = kInfoBufferSize;
  const uint32_t fontID = found.fields.nDatabaseID;
  const int status = GetGlyphsureInfo(fontID, found.fontInfo, buffer.data(), &size);
  if (status != 0) {
    OutputIndentedAndFormattedString(0, "...GetGlyphsureInfo returned %d for %s (databaseID %d).", status, name,
                                     fontID);
    return status;
  }
  if (size == 0 || buffer[0] == '\0') {
    OutputIndentedAndFormattedString(0, "...GetGlyphsureInfo returned %d but no Glyphsure info for %s (databaseID %d).",
                                     status, name, fontID);
    return status;
  }
  const Array list = ParseInfo(buffer.data());
  Dictionary info(list.At(0));
  if (!info) return status;
  const long type = XCFUtils::GetLongFromDictString(info, kGS_WorkgroupTypeKey);
  if (IsRemoteWorkgroupTypeDisabled(type)) {
    excludedRemote = true;
    OutputIndentedAndFormattedString(
        0, "Excluding version with checksum %d because it's remote and we're running standalone.",
        static_cast<int>(XCFUtils::GetLongFromDictString(info, kGS_Glyphsure_1_2_Key)));
    return status;
  }
  const int state = found.activationState;
  AddDecimal(info, kGS_DatabaseIDKey, "kGS_DatabaseIDKey", fontID);
  AddDecimal(info, kGS_IsTempKey, "kGS_IsTempKey", state == kStateTemporarilyActive);
  AddDecimal(info, kGS_IsActiveKey, "kGS_IsActiveKey", state == kStateActive || state == kStateTemporarilyActive);
  AddDecimal(info, kGS_ActivationStateKey, "kGS_ActivationStateKey", state);
  if (!result) result = Array::Create();
  // From a list of n records, take the one at n - 1: for the agent's list, its only record.
  result.Append(list.At(list.Count() - 1));
  return status;
}

int16_t FontManagerInterface::GetGlyphsureDataForFontName(const char* name, TypeOfFontName kind, bool& excludedRemote,
                                                          long workgroupID, Array* out) {
  if (!name || !out) return kErrorBadArgument;
  std::string scratch;
  long count = 0;
  Array result;
  int status = CountNamedFonts(name, kind, workgroupID, &count, scratch);
  if (status != 0) count = 0;
  // Reports the status of the last font. A lost connection ends the loop, another failure only skips the font.
  for (long index = 1; index <= count && status != kErrorMarquineNotRunning; ++index) {
    FontOrSetInfoRec found;
    status = GetNamedFontInfo(name, kind, workgroupID, index, scratch, &found);
    if (status == 0) status = AppendRecordOf(found, name, excludedRemote, result);
  }
  if (result) *out = result;
  EndGetGlyphsureInfo(scratch);
  return static_cast<int16_t>(status);
}
