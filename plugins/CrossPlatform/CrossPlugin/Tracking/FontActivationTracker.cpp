// The records of fonts and documents, and opening fonts.
#include "Tracking/FontActivationTracker.h"

#include <cstdlib>
#include <set>

#include "Bridge/FontManagerInterface.h"
#include "Bridge/HostAppInterface.h"
#include "GScopedLock.h"
#include "Identification/FontClassification.h"
#include "Identification/FontNames.h"
#include "Identification/FontRecords.h"
#include "Services/DiagnosticLog.h"
#include "XCore/ECFExtensions/TextConversion.h"
#include "XCore/ECFExtensions/XCFUtils.h"
#include "host/include/TraceLines.h"
#include "platform/Process.h"

using namespace GlyphsureSupport;
using platform::Array;
using platform::Dictionary;
using platform::String;

// One run of OpenFontsForIdentifier.
struct FontActivationTracker::OpenRun {
  FontManagerInterface& manager;
  const Array& fonts;
  const std::string& identifier;
  bool bShowProgress;
  bool wantsFamilies = false;
  Array fontsToActivate = Array::Create();
  std::set<std::string> activeNames{};
  std::map<std::string, bool> activeFamilies{};  // the operating system's answer, asked once for each family
  void* handle = nullptr;
  ProgressRef progress = nullptr;
};

FontActivationTracker::FontActivationTracker(VPFInterface* ui) : mVPFInterface(ui) {}

FontActivationTracker::~FontActivationTracker() {
  const GScopedLock lock(mMutex);
  m_mFonts.clear();
}

std::string FontActivationTracker::GenerateUniqueIdentifier() {
  TracedCall traced("FontActivationTracker::GenerateUniqueIdentifier");
  std::string identifier = platform::CreateUUIDString();
  if (identifier.empty()) identifier = GenerateFallbackIdentifier();
  traced.End("FontActivationTracker::GenerateUniqueIdentifier() returning '%s'", identifier.c_str());
  return identifier;
}

std::string FontActivationTracker::GenerateFallbackIdentifier() {
  static std::set<char> sGiven;
  constexpr size_t kBytesButZero = 255;
  char byte = 0;
  do {
    byte = static_cast<char>(std::rand() & 0xFF);
  } while (byte == 0 || (sGiven.contains(byte) && sGiven.size() < kBytesButZero));
  if (!sGiven.insert(byte).second) {
    OutputFormattedDebugString("WARNING: two documents have the identifier 0x%02x and share their font counts.",
                               static_cast<unsigned char>(byte));
  }
  return std::string(1, byte);
}

void FontActivationTracker::ProgressCallback(int current, int maximum, const std::string& text, void* context) {
  auto* progress = static_cast<ProgressContext*>(context);
  if (!progress || !progress->bShow || !progress->ui || !progress->properties) return;
  progress->properties->GetProperties().SetIntForKey("MaxProgress", maximum);
  progress->properties->SetCurrentProgress(current);
  progress->properties->SetCurrentPostscriptName(text);
  progress->ui->UpdateProgress(*progress->properties);
}

FontActivationTracker::ProgressRef FontActivationTracker::StartProgress(bool bShow, size_t count, const char* titleKey,
                                                                        const char* headerKey) {
  if (!bShow || !mVPFInterface) return nullptr;
  auto properties = std::make_unique<FontProgressProperties>(
      static_cast<int>(count), mVPFInterface->LocalizedString(titleKey), mVPFInterface->LocalizedString(headerKey));
  mVPFInterface->ShowProgress(*properties);
  return properties;
}

int FontActivationTracker::OpenFontsForIdentifier(const Array& fonts, const std::string& identifier, bool bShowProgress,
                                                  Array activated, Array refused) {
  TracedCall traced("FontActivationTracker::OpenFontsForIdentifier",
                    "Entering FontActivationTracker::OpenFontsForIdentifier(%d fonts, '%s')",
                    static_cast<int>(fonts.Count()), identifier.c_str());
  FontManagerInterface* manager = FontManagerInterface::ConnectedManager();
  if (!manager) {
    traced.End("OpenFontsForIdentifier returning kErrorMarquineNotRunning (EARLY RETURN)");
    return kErrorMarquineNotRunning;
  }
  manager->BeginOpeningFontsForDocument(identifier);
  int result = 0;
  if (fonts) {
    manager->SetCountForLongOperations(static_cast<int>(fonts.Count()));
    OpenRun run{*manager, fonts, identifier, bShowProgress};
    try {
      run.progress =
          StartProgress(bShowProgress, fonts.Count(), "FontActivationWindowTitle", "FontActivationHeaderFormat");
      if (manager->ConnectedToCoreAgent()) {
        PrepareFonts(run);
        AskToGoOnline(run);
        result = RunBatch(run, activated, refused);
      }
    } catch (...) {
      EndFontChangeSession(bShowProgress);
      manager->SetCountForLongOperations(1);
      OutputIndentedAndFormattedString(
          0, "   *** Exception caught in FontActivationTracker::OpenFontsForIdentifier.  Rethrowing.");
      throw;
    }
    EndFontChangeSession(bShowProgress);
  }
  manager->FinishOpeningFontsForDocument(identifier);
  manager->SetCountForLongOperations(1);
  traced.End("OpenFontsForIdentifier returning %d", result);
  return result;
}

void FontActivationTracker::PrepareFonts(OpenRun& run) {
  run.wantsFamilies = mVPFInterface && mVPFInterface->GetActivateEntireFamily();
  OutputIndentedAndFormattedString(0, "Preparing %d fonts for batch-activation...",
                                   static_cast<int>(run.fonts.Count()));
  for (size_t i = 0; i < run.fonts.Count(); ++i) {
    const platform::Value entry = run.fonts.At(i);
    const Dictionary element(entry);
    if (!entry) {
      OutputIndentedAndFormattedString(0, "WARNING:  font %d for document '%s' is NULL", static_cast<int>(i),
                                       run.identifier.c_str());
    } else if (!element) {
      OutputIndentedAndFormattedString(0, "   ...Error:  Array element at i = %d is NOT A DICTIONARY!!",
                                       static_cast<int>(i));
    } else {
      PrepareOneFont(run, element, i);
    }
  }
  const int count = static_cast<int>(run.fontsToActivate.Count());
  OutputIndentedAndFormattedString(0, trace_lines::kReadyToActivate, count);
  if (run.progress) run.progress->GetProperties().SetIntForKey("MaxProgress", count);
}

void FontActivationTracker::PrepareOneFont(OpenRun& run, const Dictionary& element, size_t index) {
  const Dictionary matched = element.GetDictionary(kGS_MatchedFontKey);
  if (!matched) {
    const String name = element.GetString(kGS_PostScriptNameKey);
    OutputIndentedAndFormattedString(0, "...Skipping font with no matched font in dictionary:  PS name \"%s\"",
                                     name ? name.CString() : "<NULL>");
    return;
  }
  const std::string familyName = matched.GetString(kGS_AssignedFamilyGroupNameKey).Text();
  const Array familyFonts = CollectFamily(run, matched);
  for (size_t i = 0; i < familyFonts.Count(); ++i) {
    const Dictionary font(familyFonts.At(i));
    if (!font) {
      OutputIndentedAndFormattedString(0, "*** ERROR: NULL entry in fonts in family array, iFont = %d",
                                       static_cast<int>(i));
      continue;
    }
    PrepareFamilyFont(run, element, font, familyName, index);
  }
}

namespace {

bool HasFontWithName(const Array& fonts) {
  for (size_t i = 0; i < fonts.Count(); ++i) {
    if (Dictionary(fonts.At(i)).Contains(kGS_PostScriptNameKey)) return true;
  }
  return false;
}

}  // namespace

Array FontActivationTracker::CollectFamily(OpenRun& run, const Dictionary& matched) {
  Array familyFonts = Array::Create();
  if (run.wantsFamilies) {
    run.manager.FindFontsInSameFamilyForActivation(matched, run.fonts, run.manager.GetCurrentWorkgroupID(),
                                                   &familyFonts);
    RemoveActivatedFonts(familyFonts, 0, false);
    // If any named family member is left, use the list as it is: it already contains the matched font, unless that was
    // dropped because it is active.
    if (matched.Contains(kGS_PostScriptNameKey) && HasFontWithName(familyFonts)) return familyFonts;
  }
  familyFonts.Append(matched);
  return familyFonts;
}

void FontActivationTracker::PrepareFamilyFont(OpenRun& run, const Dictionary& element, const Dictionary& font,
                                              const std::string& familyName, size_t index) {
  const String name = font.GetString(kGS_PostScriptNameKey);
  const auto fontID = static_cast<uint32_t>(XCFUtils::GetLongFromDictString(font, kGS_DatabaseIDKey));
  if (!name || fontID == 0) {
    OutputIndentedAndFormattedString(
        0, "   ...Error:  PostscriptName and/or DatabaseID not found in matched font dict for i = %d",
        static_cast<int>(index));
    return;
  }
  if (DoesArrayContainFontWithDatabaseID(run.fontsToActivate, fontID)) {
    OutputIndentedAndFormattedString(
        0, "--- Skipping family font with fontID %d (\"%s\"), which is already in the array to activate", fontID,
        name.CString());
    return;
  }
  OutputIndentedAndFormattedString(0, "'%s' (%d): state %s, active %s, system %s", name.CString(), fontID,
                                   font.GetString(kGS_ActivationStateKey).CString(),
                                   font.GetString(kGS_IsActiveKey).CString(),
                                   font.GetString(kGS_IsSystemKey).CString());
  const bool wasActive = !QueueForActivation(run, font, name, fontID, familyName);
  RegisterUnderIdentifiers(run, element, font, name, fontID, wasActive, index);
}

bool FontActivationTracker::IsFamilyActive(OpenRun& run, const std::string& familyName) {
  const auto [entry, isNew] = run.activeFamilies.try_emplace(familyName, false);
  if (isNew) entry->second = FontManagerInterface::IsFontActive(familyName);
  return entry->second;
}

// Returns false if the font is active already, and true whether or not it was added to the batch.
bool FontActivationTracker::QueueForActivation(OpenRun& run, const Dictionary& font, const String& name,
                                               uint32_t fontID, const std::string& familyName) {
  if (KeyValueIs(font, kGS_IsActiveKey, "1")) {
    OutputIndentedAndFormattedString(0, "Skipping '%s' because it is already active.", name.CString());
    run.activeNames.insert(name.Text());
    return false;
  }
  if (font.Contains(kGS_IsActiveKey) && IsFamilyActive(run, familyName)) {
    // Only traced: the font is handled like any other.
    OutputIndentedAndFormattedString(
        0, "The OS thinks the '%s' font family is active, but Nexcore says '%s' is not. Treating it as a system font",
        familyName.c_str(), name.CString());
  }
  if (DoesArrayContainFontWithPostScriptName(run.fontsToActivate, name)) {
    OutputIndentedAndFormattedString(
        0, "Skipping '%s' (%d) because a different font with the same postscript name is already in the array.",
        name.CString(), fontID);
  } else if (run.activeNames.count(name.Text()) > 0) {
    OutputIndentedAndFormattedString(
        0, "Skipping '%s' (%d) because a different font with the same postscript name is already active.",
        name.CString(), fontID);
  } else {
    OutputIndentedAndFormattedString(0, "Adding '%s' (%d) because it is not active.", name.CString(), fontID);
    run.fontsToActivate.Append(font);
  }
  return true;
}

void FontActivationTracker::RegisterUnderIdentifiers(OpenRun& run, const Dictionary& element, const Dictionary& font,
                                                     const String& name, uint32_t fontID, bool wasActive,
                                                     size_t index) {
  if (!run.identifier.empty()) {
    RegisterFontWithDocument(font, name, fontID, wasActive, run.identifier, run.handle);
    return;
  }
  const Array subDocuments = element.GetArray(kGS_SubDocumentsWithFontKey);
  if (!subDocuments) {
    OutputIndentedAndFormattedString(0, "WARNING:  font %d for document '%s' has no kGS_SubDocumentsWithFontKey",
                                     static_cast<int>(index), run.identifier.c_str());
  }
  for (size_t i = 0; i < subDocuments.Count(); ++i) {
    RegisterFontWithDocument(font, name, fontID, wasActive, String(subDocuments.At(i)).Text(), run.handle);
  }
}

void FontActivationTracker::AskToGoOnline(OpenRun& run) {
  if (run.manager.IsOnline()) return;
  for (size_t i = 0; i < run.fontsToActivate.Count(); ++i) {
    if (XCFUtils::GetLongFromDictString(Dictionary(run.fontsToActivate.At(i)), kGS_IsLocalKey) == 1) continue;
    if (VPFInterfaceRef(mVPFInterface)->ShowSomeFontsOfflineMessageBox()) run.manager.GoOnline();
    return;
  }
}

int FontActivationTracker::RunBatch(OpenRun& run, Array activated, Array refused) {
  const Array counted = activated ? activated : Array::Create();
  const size_t before = counted.Count();
  ProgressContext context{run.bShowProgress, mVPFInterface, run.progress.get()};
  const int result = run.manager.ActivateFontsByID(run.fontsToActivate, run.identifier, &run.handle, counted, refused,
                                                   &ProgressCallback, &context);
  if (refused.Count() > 0) {
    // Close at once everything that this run opened.
    CloseAllFontsForIdentifier(run.identifier, true, false, Array());
    return result;
  }
  const size_t count = counted.Count() - before;
  if (count < run.fontsToActivate.Count()) {
    OutputIndentedAndFormattedString(0, "Calling SetMissingFontsDialogNeeded() because %d of %d fonts were activated.",
                                     static_cast<int>(count), static_cast<int>(run.fontsToActivate.Count()));
    HostAppInterface::GetHostAppInterface()->SetMissingFontsDialogNeeded();
  }
  return result;
}

void FontActivationTracker::EndFontChangeSession(bool bShowProgress) {
  if (bShowProgress && mVPFInterface) mVPFInterface->HideProgress();
  if (FontManagerInterface::sm_pFontManager) FontManagerInterface::sm_pFontManager->EndActivationChange();
}

void FontActivationTracker::RegisterFontWithDocument(const Dictionary& font, const String& name, uint32_t fontID,
                                                     bool bWasAlreadyActive, const std::string& identifier,
                                                     void* handle) {
  const GScopedLock lock(mMutex);
  const auto [entry, isNew] = m_mFonts.try_emplace(fontID);
  FontInfo& info = entry->second;
  if (isNew) info = {font, fontID, bWasAlreadyActive, name, identifier, false, 0, handle};
  info.bOpen = true;
  ++info.nRefCount;
  DocumentFonts& document = m_mDocuments[identifier];
  document.identifier = identifier;
  document.fontIDs.push_back(fontID);
}

std::vector<FontActivationTracker::FontInfo> FontActivationTracker::GetOpenFontsForIdentifier(
    const std::string& identifier) {
  const GScopedLock lock(mMutex);
  std::vector<FontInfo> fonts;
  const auto document = m_mDocuments.find(identifier);
  if (document == m_mDocuments.end()) return fonts;
  const std::set<uint32_t> fontIDs(document->second.fontIDs.begin(), document->second.fontIDs.end());
  for (const uint32_t fontID : fontIDs) {
    const auto found = m_mFonts.find(fontID);
    if (found != m_mFonts.end() && found->second.bOpen) fonts.push_back(found->second);
  }
  return fonts;
}

size_t FontActivationTracker::CountFontsRegisteredForIdentifier(const std::string& identifier) {
  TracedCall traced(__func__);
  const GScopedLock lock(mMutex);
  const auto document = m_mDocuments.find(identifier);
  size_t count = 0;
  if (document == m_mDocuments.end()) {
    OutputIndentedAndFormattedString(0, "No entry in FontActivationTracker::m_mDocuments for '%s'", identifier.c_str());
  } else {
    count = document->second.fontIDs.size();
  }
  traced.End("%s('%s') returning %d", __func__, identifier.c_str(), static_cast<int>(count));
  return count;
}

size_t FontActivationTracker::CountFontsOpenedForIdentifier(const std::string& identifier, size_t& alreadyActive) {
  const GScopedLock lock(mMutex);
  alreadyActive = 0;
  size_t count = 0;
  const auto document = m_mDocuments.find(identifier);
  if (document == m_mDocuments.end()) return 0;
  for (const uint32_t fontID : document->second.fontIDs) {
    const auto found = m_mFonts.find(fontID);
    if (found == m_mFonts.end()) continue;
    const FontInfo& info = found->second;
    if (!info.bOpen || info.sFirstDocument != identifier) continue;
    if (info.bWasAlreadyActive) {
      OutputIndentedAndFormattedString(0, "Font '%s' (#%d) used by this document was already active.",
                                       info.postScriptName.CString(), fontID);
      ++alreadyActive;
    } else {
      OutputIndentedAndFormattedString(0, "Font '%s' (#%d) has been referenced %d times.",
                                       info.postScriptName.CString(), fontID, info.nRefCount);
      ++count;
    }
  }
  return count;
}

namespace {

// True if neither the system nor an automatic activation activated the font.
bool IsManuallyActivated(const Dictionary& font, int workgroupID) {
  FontManagerInterface* manager = FontManagerInterface::sm_pFontManager.get();
  if (!manager) return false;
  Array found = Array::Create();
  bool excludedRemote = false;
  if (manager->GetGlyphsureData(font, kPostScriptName, excludedRemote, workgroupID, &found) != 0) return false;
  if (found.Count() == 0) return false;
  const Dictionary first(found.At(0));
  const long isAuto = XCFUtils::GetLongFromDictString(first, kGS_IsAutoActivatedKey);
  const long isSystem = XCFUtils::GetLongFromDictString(first, kGS_IsSystemKey);
  OutputIndentedAndFormattedString(0, "Font:  '%s':  kGS_IsAutoActivatedKey=%d, kGS_IsSystemKey=%d",
                                   font.GetString(kGS_PostScriptNameKey).CString(), static_cast<int>(isAuto),
                                   static_cast<int>(isSystem));
  return isAuto == 0 && isSystem == 0;
}

}  // namespace

void FontActivationTracker::RemoveActivatedFonts(Array fontArray, int workgroupID, bool removeOnlyManuallyActivated) {
  for (size_t i = fontArray.Count(); i-- > 0;) {
    const Dictionary font(fontArray.At(i));
    if (!font) {
      OutputIndentedAndFormattedString(0, "ERROR:  fontArray[%d] is NULL", static_cast<int>(i));
      continue;
    }
    unsigned char pascalName[255];
    const String name = font.GetString(kGS_PostScriptNameKey);
    if (!name || !CopyUTF8CStringToMacRomanPascalString(pascalName, sizeof pascalName, name.CString())) continue;
    if (!FontManagerInterface::IsFontActive(pascalName)) continue;
    if (!removeOnlyManuallyActivated || IsManuallyActivated(font, workgroupID)) fontArray.RemoveAt(i);
  }
}

void FontActivationTracker::AddUnresolvedFont(const std::string& identifier, const std::string& fontName) {
  m_mUnresolvedFonts[identifier].push_back(fontName);
}

std::vector<std::string>& FontActivationTracker::GetUnresolvedFonts(const std::string& identifier) {
  return m_mUnresolvedFonts[identifier];
}
