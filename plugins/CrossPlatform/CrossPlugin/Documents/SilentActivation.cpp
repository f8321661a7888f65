// Activates a document's fonts from its file alone, without dialogs.
#include "Bridge/FontManagerInterface.h"
#include "Documents/AllTrackedDocuments.h"
#include "Identification/FontClassification.h"
#include "Identification/FontMerging.h"
#include "Readers/CommonFunctionality.h"
#include "Services/DiagnosticLog.h"
#include "Services/MarquineGlobals.h"
#include "Tracking/FontActivationTracker.h"
#include "platform/Files.h"

using namespace GlyphsureSupport;
using platform::Array;

namespace {

constexpr TModuleErrorCode kFontsRefused = 0x12000000;

struct SilentRun {
  const std::string& filePath;
  OneTrackedDocument* document;
  Array fontsToOpen = Array::Create();
  Array unresolved = Array::Create();
};

TModuleErrorCode OpenFonts(SilentRun& run, TModuleErrorCode result, int& numFontsActivated) {
  FontActivationTracker* tracker = MarquineGlobals::GetSharedFontActivationTracker();
  const OneTrackedDocument* tracked = AllTrackedDocuments::FindTrackedDocumentByPath(run.filePath);
  if (!tracker || !tracked) return result;
  const Array activated = Array::Create(), refused = Array::Create();
  const int alreadyActive = CountActiveFonts(run.fontsToOpen);
  const int status =
      tracker->OpenFontsForIdentifier(run.fontsToOpen, tracked->GetIdentifier(), false, activated, refused);
  if (refused.Count() > 0) {
    if (run.document) run.document->SetNoncompliantFonts(refused);
    return kFontsRefused;
  }
  numFontsActivated = static_cast<int>(activated.Count());
  const int failed = static_cast<int>(run.fontsToOpen.Count()) - alreadyActive - numFontsActivated;
  const int missing = CountMissingFonts(run.unresolved);
  if (failed != missing) {
    OutputIndentedAndFormattedString(0, "ERROR: numberOfFailedActivations (%d) != numberOfMissingFonts (%d)", failed,
                                     missing);
  }
  return status != 0 ? static_cast<TModuleErrorCode>(status) : result;
}

}  // namespace

TModuleErrorCode CommonFunctionality::ActivateFontsForDocumentSilently(bool useGlyphsure, bool pickBestMatch,
                                                                       int& numFontsActivated,
                                                                       const std::string& filePath,
                                                                       const Array& extraFonts,
                                                                       OneTrackedDocument* document) {
  numFontsActivated = 0;
  FontManagerInterface* manager = FontManagerInterface::sm_pFontManager.get();
  if (!manager || !FontManagerInterface::AutoActivationIsReady()) return CoreErrorCodes::kSuccess;
  SilentRun run{filePath, document};
  const Array allFonts = Array::Create();
  if (!run.fontsToOpen || !run.unresolved || !allFonts) return CoreErrorCodes::kOutOfMemory;
  const bool scanRawBytes = !(FileExtensionIs(filePath, "pdf") && extraFonts);
  TModuleErrorCode result = GetAllFontDataFromDocFile(filePath, allFonts, scanRawBytes);
  if (result == CoreErrorCodes::kNotFound && platform::FileExists(filePath)) result = CoreErrorCodes::kSuccess;
  if (extraFonts.Count() > 0) MergeFontsIntoFontsArray(extraFonts, allFonts);
  if (allFonts.Count() > 0) {
    ProcessDocumentFontsForAutoActivation(allFonts, run.fontsToOpen, run.unresolved, useGlyphsure, pickBestMatch,
                                          manager->GetCurrentWorkgroupID(), nullptr);
    if (run.unresolved.Count() > 0) {
      // Filters a list that is not used any more, so unresolved fonts keep the host's pseudo fonts.
      RemoveFontsThatHaveNoPossibleReplacement(allFonts);
      if (document) document->SetUnresolvedFonts(run.unresolved);
    }
  }
  if (run.fontsToOpen.Count() == 0) {
    if (document) document->SetCanExportFontsForDocument(false);
    return result;
  }
  if (document) document->SetCanExportFontsForDocument(manager->CanExportFromWorkgroup(run.fontsToOpen));
  return OpenFonts(run, result, numFontsActivated);
}
