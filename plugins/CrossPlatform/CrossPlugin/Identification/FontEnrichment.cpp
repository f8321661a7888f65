// Finding the database record of each font in use, for a slug, and the look-up by ID.
#include "Bridge/FontDataPreviouslyGottenFromDatabase.h"
#include "Bridge/FontManagerInterface.h"
#include "Identification/FontClassification.h"
#include "Identification/FontMerging.h"
#include "Identification/FontRecords.h"
#include "Services/DiagnosticLog.h"
#include "XCore/ECFExtensions/XCFUtils.h"

namespace GlyphsureSupport {

using platform::Array;
using platform::Dictionary;
using platform::String;

namespace {

FontManagerInterface* ConnectedManager() {
  FontManagerInterface* manager = FontManagerInterface::sm_pFontManager.get();
  return manager && manager->IsFontManagerConnected() ? manager : nullptr;
}

// A copy of the first record that the database has for the font; null if it has none.
int GetGlyphsureDataForBestMatch(FontManagerInterface& manager, const Dictionary& record, int workgroupID,
                                 Dictionary& best) {
  Array found = Array::Create();
  bool excludedRemote = false;
  const int status = manager.GetGlyphsureData(record, kPostScriptName, excludedRemote, workgroupID, &found);
  if (status == 0 && found.Count() > 0) best = Dictionary(found.At(0)).Copy();
  return status;
}

// The family of a font that is not known by name joins the array whole.
int AppendFamily(FontManagerInterface& manager, Dictionary record, int workgroupID, Array& fonts) {
  if (!record.Contains(kGS_FamilyKey)) {
    const std::string name = record.GetString(kGS_PostScriptNameKey).Text();
    record.Set(kGS_FamilyKey, name.substr(0, name.find('-')));
  }
  Array found = Array::Create();
  bool excludedRemote = false;
  const int status = manager.GetGlyphsureData(record, kFamilyName, excludedRemote, workgroupID, &found);
  MergeFontsIntoFontsArray(found, fonts);
  return status;
}

int EnrichOne(FontManagerInterface& manager, Array& fonts, size_t index, int workgroupID, bool excludeInactiveFonts,
              bool tryFamilyNames) {
  const Dictionary record(fonts.At(index));
  const std::string name = record.GetString(kGS_PostScriptNameKey).Text();
  if (excludeInactiveFonts) {
    Dictionary cached;
    uint32_t fontID = 0;
    if (FontDataPreviouslyGottenFromDatabase::CreateCopyOfGlyphsureDataForActiveFont(name, cached, fontID)) {
      MergeGlyphsureDictionaryIntoArray(fonts, cached);
      OutputIndentedAndFormattedString(0, "Using cached glyphsure data for the active version of %s", name.c_str());
      return 0;
    }
  }
  Dictionary best;
  const int status = GetGlyphsureDataForBestMatch(manager, record, workgroupID, best);
  if (!best) {
    if (tryFamilyNames && excludeInactiveFonts) return AppendFamily(manager, record, workgroupID, fonts);
    return status;
  }
  if (best.GetString(kGS_PostScriptNameKey).View() != name) fonts.RemoveAt(index);
  MergeGlyphsureDictionaryIntoArray(fonts, best);
  return status;
}

void RemoveInactive(FontManagerInterface& manager, Array& fonts) {
  const auto states = manager.GetFontIsActivated(fonts);
  for (size_t i = fonts.Count(); i-- > 0;) {
    const Dictionary record(fonts.At(i));
    const auto id = static_cast<uint32_t>(XCFUtils::GetLongFromDictString(record, kGS_DatabaseIDKey));
    const auto state = states.find(id);
    if (state != states.end() && state->second) continue;
    OutputIndentedAndFormattedString(0, "Removing inactive '%s' from fonts.",
                                     record.GetString(kGS_PostScriptNameKey).CString());
    fonts.RemoveAt(i);
  }
}

}  // namespace

int AppendGlyphsureDataToFonts(Array fonts, int workgroupID, bool excludeInactiveFonts, bool bGetAllFontInfo,
                               bool tryFamilyNames) {
  FontManagerInterface* manager = ConnectedManager();
  if (!manager) return kErrorMarquineNotRunning;
  if (!fonts) return kErrorBadArgument;
  int status = 0;
  // From the end, so that an index stays valid: what is replaced or added stands at it or above.
  for (size_t i = fonts.Count(); i-- > 0 && status != kErrorMarquineNotRunning;) {
    if (!fonts.At(i)) continue;
    status = EnrichOne(*manager, fonts, i, workgroupID, excludeInactiveFonts, tryFamilyNames);
  }
  if (excludeInactiveFonts) RemoveInactive(*manager, fonts);
  // True is the normal case, and the line is only a line.
  if (!bGetAllFontInfo && RemoveUnsluggableGlyphsureKeys(fonts)) {
    OutputIndentedAndFormattedString(0, "ERROR:  RemoveUnsluggableGlyphsureKeys() apparently failed.");
  }
  return status;
}

namespace {

Dictionary InfoOf(const String& name, uint64_t fontID, int workgroupID) {
  Dictionary info = CreateGlyphsureDictionary(name);
  XCFUtils::PutULongIntoDictAsString(info, kGS_DatabaseIDKey, fontID);
  XCFUtils::PutLongIntoDictAsString(info, kGS_WorkgroupIDKey, workgroupID);
  return info;
}

Array CreateFontInfoArrayFromVectorOfIDs(FontManagerInterface& manager, const std::vector<uint64_t>& ids,
                                         const String& name, bool isFamilyName, int workgroupID) {
  Array fonts = Array::Create();
  for (const uint64_t id : ids) {
    String psName = name;
    std::string found;
    if (isFamilyName && manager.GetPostscriptNameByID(found, workgroupID, static_cast<unsigned>(id)) == 0) {
      psName = String::FromUTF8(found);
    }
    Dictionary font = InfoOf(psName, id, workgroupID);
    font.Set(kGS_MatchedFontKey, InfoOf(psName, id, workgroupID));
    fonts.Append(font);
  }
  return fonts;
}

Array FindIDsForOneFont(FontManagerInterface& manager, const Dictionary& font, int index, int workgroupID) {
  std::vector<uint64_t> ids;
  const String name = font.GetString(kGS_PostScriptNameKey);
  if (!name) {
    OutputIndentedAndFormattedString(0, "Could not get fontName from entry %d in documentFonts array.", index);
  } else if (manager.FontIDsForPostScriptName(name.Text(), workgroupID, ids) == 0 && !ids.empty()) {
    return CreateFontInfoArrayFromVectorOfIDs(manager, ids, name, false, workgroupID);
  }
  const String family = font.GetString(kGS_FamilyKey);
  if (!family) {
    OutputIndentedAndFormattedString(0, "...Could not get familyName from entry %d in documentFonts array.", index);
    return Array();
  }
  if (manager.FontIDsForFamilyName(family.Text(), workgroupID, ids) != 0 || ids.empty()) return Array();
  return CreateFontInfoArrayFromVectorOfIDs(manager, ids, family, true, workgroupID);
}

}  // namespace

int FindIDsForBestMatches(const Array& documentFonts, Array* outMatchedFonts, int workgroupID) {
  FontManagerInterface* manager = ConnectedManager();
  if (!manager) return kErrorMarquineNotRunning;
  if (!documentFonts || !outMatchedFonts) return kErrorBadArgument;
  *outMatchedFonts = Array::Create();
  for (size_t i = 0; i < documentFonts.Count(); ++i) {
    // Nothing accumulates: the last font with IDs wins.
    const Array found = FindIDsForOneFont(*manager, Dictionary(documentFonts.At(i)), static_cast<int>(i), workgroupID);
    if (found) *outMatchedFonts = found;
  }
  return 0;
}

}  // namespace GlyphsureSupport
