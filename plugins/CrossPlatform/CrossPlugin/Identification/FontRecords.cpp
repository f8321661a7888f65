#include "Identification/FontRecords.h"

#include <algorithm>
#include <iterator>

#include "Services/DiagnosticLog.h"
#include "XCore/ECFExtensions/XCFUtils.h"
#include "platform/PropertyList.h"
#include "platform/TextEncoding.h"

namespace GlyphsureSupport {

using platform::Array;
using platform::Dictionary;
using platform::String;

namespace {

constexpr std::string_view kSluggableKeys[] = {
    kGS_PostScriptNameKey,  kGS_KindKey,     kGS_FoundryKey,        kGS_VersionKey,
    kGS_KerningChecksumKey, kGS_ChecksumKey, kGS_Glyphsure_1_2_Key, kGS_OutlineFileSizeKey,
    kGS_OutlineFileNameKey, kGS_FamilyKey,
};

// The largest kerning checksum plus one.
constexpr uint32_t kKerningChecksumLimit = 0x100000;

struct KindPair {
  std::string_view from;
  std::string_view to;
  bool isFullMappingOnly;
};

constexpr KindPair kFromTypecellar[] = {
    {"PS Pair", "Postscript", false},
    {"PS MM", "PostScript - MM", true},
    {"OpenType (TT)", "OpenType - TT", true},
    {"OpenType (PS)", "OpenType - PS", true},
    {"DFont", "TrueType", true},
};

// "TrueType" is not mapped back: "DFont" is lost on purpose.
constexpr KindPair kToTypecellar[] = {
    {"Postscript", "PS Pair", false},
    {"PostScript - MM", "PS MM", true},
    {"OpenType - TT", "OpenType (TT)", true},
    {"OpenType - PS", "OpenType (PS)", true},
};

template <size_t N>
String MapKind(const KindPair (&table)[N], const String& kind, ExtentOfMapping extent, const char* line) {
  for (const KindPair& pair : table) {
    if (pair.isFullMappingOnly && extent != kFullMapping) continue;
    if (!platform::EqualCaseless(kind.View(), pair.from)) continue;
    OutputIndentedAndFormattedString(0, line, kind.CString(), std::string(pair.to).c_str());
    return String::FromUTF8(pair.to);
  }
  return kind;
}

Dictionary CreateRecordWith(std::string_view key, const String& name) {
  Dictionary record = Dictionary::Create();
  if (!record) {
    OutputIndentedAndFormattedString(0, "CFDictionaryCreateMutable failed for: '%s'", name.CString());
    return record;
  }
  if (name) record.Set(key, name);
  return record;
}

bool IsMissingEmptyOrZero(const Dictionary& record, std::string_view key) {
  const String value = record.GetString(key);
  return value.IsEmpty() || value.View() == "0";
}

}  // namespace

Dictionary CreateGlyphsureDictionary(const String& psName) { return CreateRecordWith(kGS_PostScriptNameKey, psName); }

Dictionary CreateGlyphsureDictionaryWithFamilyName(const String& familyName) {
  return CreateRecordWith(kGS_FamilyKey, familyName);
}

int CreateXMLGlyphsureSlug(const Array& fontArray, String* outString) {
  if (!fontArray || !outString) return kErrorBadArgument;
  const std::string xml = platform::CreateXMLPropertyList(fontArray);
  // A failed conversion leaves the string unset and is not an error; the caller tests the string.
  if (!xml.empty()) *outString = String::FromUTF8(xml);
  return 0;
}

bool IsSluggableKey(std::string_view key) {
  return std::find(std::begin(kSluggableKeys), std::end(kSluggableKeys), key) != std::end(kSluggableKeys);
}

bool RemoveUnsluggableKeysFromDictionary(Dictionary record) {
  bool removed = false;
  for (const std::string& key : record.Keys()) {
    if (IsSluggableKey(key)) continue;
    OutputIndentedAndFormattedString(0, "Removing key %s", key.c_str());
    record.Remove(key);
    removed = true;
  }
  return removed;
}

bool RemoveUnsluggableGlyphsureKeys(const Array& fontArray) {
  bool removed = false;
  for (size_t i = 0; i < fontArray.Count(); ++i) {
    if (RemoveUnsluggableKeysFromDictionary(Dictionary(fontArray.At(i)))) removed = true;
  }
  return removed;
}

bool FixGlyphsureChecksumsIfNeeded(Dictionary record) {
  bool changed = false;
  if (!IsMissingEmptyOrZero(record, kGS_Glyphsure_1_2_Key) && IsMissingEmptyOrZero(record, kGS_ChecksumKey)) {
    OutputIndentedAndFormattedString(
        0, "Glyphsure 1.1 checksum was 0 or not provided.  Using Glyphsure 1.2 checksum for its value.");
    record.Set(kGS_ChecksumKey, record.Get(kGS_Glyphsure_1_2_Key));
    changed = true;
  }
  if (record.Contains(kGS_KerningChecksumKey)) {
    const auto kerning = static_cast<uint32_t>(XCFUtils::GetLongFromDictString(record, kGS_KerningChecksumKey));
    if (kerning >= kKerningChecksumLimit) {
      record.Set(kGS_KerningChecksumKey, "0");
      changed = true;
    }
  }
  return changed;
}

String MapTypecellarFontTypeToMarquineFontType(const String& kind, ExtentOfMapping extent) {
  return MapKind(kFromTypecellar, kind, extent, "MapTypecellarFontTypeToMarquineFontType mapping '%s' to '%s'");
}

String MapMarquineFontTypeToTypecellarFontType(const String& kind, ExtentOfMapping extent) {
  return MapKind(kToTypecellar, kind, extent, "MapMarquineFontTypeToTypecellarFontType mapping '%s' to '%s'");
}

bool MapTypecellarFontTypeToMarquineFontType(Dictionary record, ExtentOfMapping extent) {
  const String kind = record.GetString(kGS_KindKey);
  if (!kind) return false;
  const String mapped = MapTypecellarFontTypeToMarquineFontType(kind, extent);
  if (mapped.View() == kind.View()) return false;
  record.Set(kGS_KindKey, mapped);
  return true;
}

String CreateTypecellarFoundryNameFromMarquineFoundryName(const String& foundry) {
  if (!foundry) return String();
  const std::string lowered = platform::ToLowercase(foundry.View());
  if (lowered == "unknown") return String::FromUTF8("--");
  if (lowered == foundry.View()) return String::FromUTF8(platform::Capitalize(foundry.View()));
  return foundry;
}

bool MapTypecellarFoundryNameToMarquineFoundryName(Dictionary record) {
  const String foundry = record.GetString(kGS_FoundryKey);
  if (!foundry) return false;
  // Despite its name this maps in the other direction. Do not correct it: stored slugs have always been compared in
  // this form.
  const String mapped = CreateTypecellarFoundryNameFromMarquineFoundryName(foundry);
  if (mapped.View() == foundry.View()) return false;
  OutputIndentedAndFormattedString(0, "In %s(), changing '%s' to '%s'", __func__, foundry.CString(), mapped.CString());
  record.Set(kGS_FoundryKey, mapped);
  return true;
}

void PostProcessGlyphsureSlug(const Array& fontArray) {
  for (size_t i = 0; i < fontArray.Count(); ++i) {
    const Dictionary record(fontArray.At(i));
    if (record && PostProcessSingleFontForSlug(record)) {
      OutputIndentedAndFormattedString(0, "Entry %d modified by PostProcessSingleFontForSlug()", static_cast<int>(i));
    }
  }
}

void MapTypecellarNamesToMarquineNames(const Array& fontArray, ExtentOfMapping extent) {
  for (size_t i = 0; i < fontArray.Count(); ++i) {
    const Dictionary record(fontArray.At(i));
    if (!record) continue;
    MapTypecellarFontTypeToMarquineFontType(record, extent);
    if (extent == kFullMapping) MapTypecellarFoundryNameToMarquineFoundryName(record);
  }
}

namespace {

size_t CountCharacters(std::string_view utf8) {
  return static_cast<size_t>(std::count_if(utf8.begin(), utf8.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

}  // namespace

bool AreEqualTexts(std::string_view a, std::string_view b) {
  return a == b || (CountCharacters(a) == CountCharacters(b) && platform::EqualCaseless(a, b));
}

bool KeyValueIs(const Dictionary& record, std::string_view key, std::string_view value) {
  const String held = record.GetString(key);
  return held && AreEqualTexts(held.View(), value);
}

}  // namespace GlyphsureSupport
