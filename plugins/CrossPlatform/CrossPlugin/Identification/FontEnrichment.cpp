// Finds the database record of each used font for a slug, and looks fonts up by ID.
#include <vector>

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

// Copies the first record that the database has for the font; null if it has none.
int GetGlyphsureDataForBestMatch(FontManagerInterface& manager, const Dictionary& record, int workgroupID,
                                 Dictionary& best) {
  Array found = Array::Create();
  bool excludedRemote = false;
  const int status = manager.GetGlyphsureData(record, kPostScriptName, excludedRemote, workgroupID, &found);
  if (status == 0 && found.Count() > 0) best = Dictionary(found.At(0)).Copy();
  return status;
}

// Walks over the fonts and replaces them by the database's records. An entry whose record was found under another name
// is emptied and removed only at the end, because the index of names refers to positions.
class Enrichment {
 public:
  Enrichment(FontManagerInterface& manager, Array& fonts, int workgroupID, bool excludeInactiveFonts,
             bool tryFamilyNames)
      : manager_(manager),
        fonts_(fonts),
        index_(fonts),
        workgroupID_(workgroupID),
        excludesInactive_(excludeInactiveFonts),
        triesFamilies_(tryFamilyNames && excludeInactiveFonts) {}
  ~Enrichment() {
    for (const size_t at : emptied_) fonts_.RemoveAt(at);
  }
  Enrichment(const Enrichment&) = delete;
  Enrichment& operator=(const Enrichment&) = delete;

  // Returns the status of the last look-up. 1000 ends the walk.
  int Walk() {
    // Backwards, so that indexes stay valid: changes happen at i or above.
    for (size_t i = fonts_.Count(); i-- > 0 && status_ != kErrorMarquineNotRunning;) {
      if (fonts_.At(i)) EnrichOne(i);
    }
    return status_;
  }
  bool HasFailed() const { return hasFailed_; }

 private:
  void EnrichOne(size_t at) {
    const Dictionary record(fonts_.At(at));
    const String name = record.GetString(kGS_PostScriptNameKey);
    if (excludesInactive_ && MergeCached(name)) return;
    Dictionary best;
    status_ = GetGlyphsureDataForBestMatch(manager_, record, workgroupID_, best);
    NoteStatus(name);
    if (!best) {
      if (triesFamilies_) MergeFamily(record);
      return;
    }
    if (best.GetString(kGS_PostScriptNameKey).View() != name.View()) {
      fonts_.Set(at, platform::Value());
      index_.Replaced(at, name, String());
      emptied_.push_back(at);
    }
    MergeGlyphsureDictionaryIntoArray(fonts_, best, &index_);
  }

  // Uses no look-up, so the status stays.
  bool MergeCached(const String& name) {
    Dictionary cached;
    uint32_t fontID = 0;
    if (!FontDataPreviouslyGottenFromDatabase::CreateCopyOfGlyphsureDataForActiveFont(name.Text(), cached, fontID))
      return false;
    MergeGlyphsureDictionaryIntoArray(fonts_, cached, &index_);
    OutputIndentedAndFormattedString(0, "Using cached glyphsure data for the active version of %s", name.CString());
    return true;
  }

  // Adds the whole family of a font that is not known by name.
  void MergeFamily(Dictionary record) {
    if (!record.Contains(kGS_FamilyKey)) {
      const std::string_view name = record.GetString(kGS_PostScriptNameKey).View();
      record.Set(kGS_FamilyKey, name.substr(0, name.find('-')));
    }
    Array found = Array::Create();
    bool excludedRemote = false;
    status_ = manager_.GetGlyphsureData(record, kFamilyName, excludedRemote, workgroupID_, &found);
    NoteStatus(record.GetString(kGS_FamilyKey));
    MergeFontsIntoFontsArray(found, fonts_, &index_);
  }

  // A name that is too long for a look-up belongs to no font of the database; that is not a failed look-up.
  void NoteStatus(const String& name) {
    hasFailed_ |= status_ != 0 && name.View().size() < FontManagerInterface::kNameBufferSize;
  }

  FontManagerInterface& manager_;
  Array& fonts_;
  FontNameIndex index_;
  const int workgroupID_;
  const bool excludesInactive_, triesFamilies_;
  int status_ = 0;
  bool hasFailed_ = false;
  std::vector<size_t> emptied_;  // in descending order
};

// Returns false if the agent did not report the state of every font of the database.
bool RemoveInactive(FontManagerInterface& manager, Array& fonts) {
  const auto states = manager.GetFontIsActivated(fonts);
  bool areAllKnown = true;
  for (size_t i = fonts.Count(); i-- > 0;) {
    const Dictionary record(fonts.At(i));
    const auto id = static_cast<uint32_t>(XCFUtils::GetLongFromDictString(record, kGS_DatabaseIDKey));
    const auto state = states.find(id);
    if (state != states.end() && state->second) continue;
    areAllKnown &= id == 0 || state != states.end();
    OutputIndentedAndFormattedString(0, "Removing inactive '%s' from fonts.",
                                     record.GetString(kGS_PostScriptNameKey).CString());
    fonts.RemoveAt(i);
  }
  return areAllKnown;
}

}  // namespace

int AppendGlyphsureDataToFonts(Array fonts, int workgroupID, bool excludeInactiveFonts, bool bGetAllFontInfo,
                               bool tryFamilyNames, bool* hasFailed) {
  bool ignored = false;
  bool& failed = hasFailed ? *hasFailed : ignored;
  failed = true;
  FontManagerInterface* manager = FontManagerInterface::ConnectedManager();
  if (!manager) return kErrorMarquineNotRunning;
  if (!fonts) return kErrorBadArgument;
  int status = 0;
  {
    Enrichment enrichment(*manager, fonts, workgroupID, excludeInactiveFonts, tryFamilyNames);
    status = enrichment.Walk();
    failed = enrichment.HasFailed();
  }
  if (excludeInactiveFonts && !RemoveInactive(*manager, fonts)) failed = true;
  // True is the normal case; this only traces it.
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
    if (isFamilyName) {
      std::string found;  // empty if the agent does not know
      manager.GetPostscriptNameByID(found, workgroupID, static_cast<unsigned>(id));
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
  FontManagerInterface* manager = FontManagerInterface::ConnectedManager();
  if (!manager) return kErrorMarquineNotRunning;
  if (!documentFonts || !outMatchedFonts) return kErrorBadArgument;
  *outMatchedFonts = Array::Create();
  for (size_t i = 0; i < documentFonts.Count(); ++i) {
    // The results are not accumulated: the last font with IDs wins.
    const Array found = FindIDsForOneFont(*manager, Dictionary(documentFonts.At(i)), static_cast<int>(i), workgroupID);
    if (found) *outMatchedFonts = found;
  }
  return 0;
}

}  // namespace GlyphsureSupport
