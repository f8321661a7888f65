// Activates the fonts of a document, and builds the data of its fonts for a slug.
#include "Bridge/FontManagerInterface.h"
#include "Bridge/HostAppInterface.h"
#include "Documents/AllTrackedDocuments.h"
#include "Identification/FontClassification.h"
#include "Identification/FontMerging.h"
#include "Readers/CommonFunctionality.h"
#include "Readers/XMPFontMetadata.h"
#include "Services/DiagnosticLog.h"
#include "Services/MarquineGlobals.h"
#include "Tracking/FontActivationTracker.h"
#include "host/include/TraceLines.h"
#include "photoshop/DocumentEvents.h"
#include "photoshop/PhotoshopFontUtils.h"

using namespace GlyphsureSupport;
using platform::Array;

namespace {

constexpr int kArraysNotMade = -148;
constexpr int kNoFontArray = -43;
constexpr int kLookUpFailed = -1;

// The arrays and results of one activation.
struct Activation {
  const bool bOpeningNewDocument;
  int& numFontsActivated;
  const std::string& filePath;
  OneTrackedDocument* document;
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  const bool useGlyphsure = ui->GetEnabledGlyphsure();
  const bool pickBestMatch = ui->GetPickBestMatch();
  Array slugFonts = Array::Create();
  Array documentFontNames = Array::Create();
  Array fontsToOpen = Array::Create();
  Array unresolved = Array::Create();
  bool allResolved = true;
  bool wasRefused = false;
  int openResult = 0;
  int missing = 0;
};

// The fonts that the document needs: its slug, reduced to the names that its file uses. Null if it needs none.
Array CombinedFonts(Activation& run) {
  if (run.useGlyphsure) {
    const Array read = Array::Create();
    CommonFunctionality::GetAllGlyphsureDataFromDocument(run.filePath, read);
    MergeFontsIntoFontsArray(read, run.slugFonts);
  }
  PSGetDocumentFonts(run.documentFontNames, run.filePath, run.bOpeningNewDocument);
  if (run.slugFonts.Count() == 0 && run.documentFontNames.Count() == 0) return Array();
  // If the document's font names cannot be read, use the whole slug.
  if (run.documentFontNames.Count() == 0) return run.slugFonts.Copy();
  return CreateGlyphsureSlugsWithGlyphsureFontsAndDocumentFonts(run.slugFonts, run.documentFontNames);
}

void Resolve(Activation& run) {
  // Reads the preference again, because the classification may have run the event loop.
  if (run.unresolved.Count() == 0 || run.ui->GetPickBestMatch()) return;
  run.ui->ShowResolveFonts(run.unresolved);
  run.allResolved = AllFontsResolved(run.unresolved, run.fontsToOpen);
}

void OpenFonts(Activation& run) {
  FontManagerInterface& manager = *FontManagerInterface::sm_pFontManager;
  run.document->SetCanExportFontsForDocument(manager.CanExportFromWorkgroup(run.fontsToOpen));
  FontActivationTracker* tracker = MarquineGlobals::GetSharedFontActivationTracker();
  if (!tracker) return;
  const Array activated = Array::Create(), refused = Array::Create();
  const int alreadyActive = CountActiveFonts(run.fontsToOpen);
  run.openResult =
      tracker->OpenFontsForIdentifier(run.fontsToOpen, run.document->GetIdentifier(), false, activated, refused);
  run.wasRefused = refused.Count() > 0;
  if (run.wasRefused) {
    run.ui->ShowRestrictedFonts(refused);
    run.numFontsActivated = 0;
  } else {
    run.numFontsActivated = static_cast<int>(activated.Count());
  }
  run.missing = CountMissingFonts(run.unresolved);
  const int failed = static_cast<int>(run.fontsToOpen.Count()) - alreadyActive - run.numFontsActivated;
  if (failed > 0) run.missing += failed;
}

void Finish(Activation& run) {
  if (run.wasRefused) return;
  if (!run.bOpeningNewDocument) {
    HostAppInterface::GetHostAppInterface()->SetCanExportFontsForDocument(run.document->GetCanExportFontsForDocument());
  }
  // With pick-best-match the array is kept even if empty; callers count its entries to see whether fonts are missing.
  const bool isSolved = run.allResolved && run.openResult == 0 && !run.pickBestMatch;
  run.document->SetUnresolvedFonts(isSolved ? Array() : run.unresolved);
  if (run.missing > 0 && run.pickBestMatch) run.ui->ShowSomeLayersMissingFontsMessage();
}

}  // namespace

int ActivateFontsForDocument(bool bOpeningNewDocument, int& numFontsActivated, const std::string& filePath,
                             OneTrackedDocument* document) {
  numFontsActivated = 0;
  if (!FontManagerInterface::sm_pFontManager || !MarquineGlobals::GetSharedVPFInterface() ||
      !FontManagerInterface::AutoActivationIsReady()) {
    return -1;
  }
  if (bOpeningNewDocument && document->GetIdentifier().empty()) {
    document->SetIdentifier(FontActivationTracker::GenerateUniqueIdentifier());
  }
  Activation run{bOpeningNewDocument, numFontsActivated, filePath, document};
  if (!run.slugFonts || !run.documentFontNames || !run.fontsToOpen || !run.unresolved) return kArraysNotMade;
  const Array combined = CombinedFonts(run);
  if (!combined) return -1;
  CommonFunctionality::RemoveFontsThatHaveNoPossibleReplacement(combined);
  ProcessDocumentFontsForAutoActivation(combined, run.fontsToOpen, run.unresolved, run.useGlyphsure, run.pickBestMatch,
                                        FontManagerInterface::sm_pFontManager->GetCurrentWorkgroupID(), nullptr);
  // The host's default font never counts as a problem.
  CommonFunctionality::RemoveMatchingFonts(run.unresolved, "MyriadPro");
  Resolve(run);
  if (run.fontsToOpen.Count() > 0) {
    OpenFonts(run);
  } else {
    document->SetCanExportFontsForDocument(false);
  }
  Finish(run);
  return -1;
}

int CreateGlyphsureDataForDocument(const std::string& path, Array& out, long workgroupID, bool allInfo,
                                   bool& allFontsFound) {
  allFontsFound = false;
  Array fonts;
  PSGetDocumentFonts(fonts, path, false);
  if (!fonts) {
    allFontsFound = true;
    return kNoFontArray;
  }
  CommonFunctionality::RemoveFontsThatHaveNoPossibleReplacement(fonts);
  const size_t before = fonts.Count();
  bool hasFailed = false;
  const int status = AppendGlyphsureDataToFonts(fonts, static_cast<int>(workgroupID), true, allInfo, false, &hasFailed);
  allFontsFound = fonts.Count() == before;
  out = fonts;
  OneTrackedDocument* document = AllTrackedDocuments::FindTrackedDocumentByPath(path);
  if (document && FontManagerInterface::sm_pFontManager) {
    const bool can = FontManagerInterface::sm_pFontManager->CanExportFromWorkgroup(fonts);
    OutputIndentedAndFormattedString(0, "Updating 'can export' flag to %s", can ? "true" : "false");
    document->SetCanExportFontsForDocument(can);
  }
  if (!hasFailed) return 0;
  return status != 0 ? status : kLookUpFailed;
}

void UpdateGlyphsureSlugsForDocument(const std::string& path) {
  Array fonts;
  bool allFound = false;
  const int status =
      CreateGlyphsureDataForDocument(path, fonts, FontManagerInterface::kAllWorkgroupsID, false, allFound);
  if ((status & 0xFFFF) != 0 || !fonts) {
    // Do not replace the document's slug with the result of a failed look-up.
    OutputIndentedAndFormattedString(0, trace_lines::kFontsLookedUp, path.c_str(), status);
    return;
  }
  std::string currentPath;
  PhotoshopFontUtils::GetCurrentDocumentPathUnstableInCS6(&currentPath);
  const TModuleErrorCode code = WriteXMPGlyphsureSlugToFile(currentPath, fonts);
  OutputIndentedAndFormattedString(0, trace_lines::kSlugWritten, currentPath.c_str(), code);
}

void RemoveAllGlyphsureSlugsForDocument(const std::string& path) {
  const TModuleErrorCode code = WriteXMPGlyphsureSlugToFile(path, Array());
  OutputIndentedAndFormattedString(0, trace_lines::kSlugWritten, path.c_str(), code);
}
