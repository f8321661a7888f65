#include "photoshop/DocumentEvents.h"

#include "Bridge/FontManagerInterface.h"
#include "Documents/AllTrackedDocuments.h"
#include "Readers/CommonFunctionality.h"
#include "Services/DiagnosticLog.h"
#include "Services/MarquineGlobals.h"
#include "Tracking/FontActivationTracker.h"
#include "photoshop/PhotoshopFontUtils.h"

using namespace host_sdk;

namespace {
// Incremented at every notification: odd for a pre-save, even for a post-save notification.
unsigned sNumberOfSaveEventsHandled = 0;
}  // namespace

void ResetDocumentEventsForTesting() {
  gOpenDocumentCallCounter = 0;
  sNumberOfSaveEventsHandled = 0;
}

namespace {

std::string PathOfDescriptor(PIActionDescriptor descriptor) {
  ScopedHandle alias;
  if (!descriptor || sPSActionDescriptor->GetAlias(descriptor, Code("null"), alias.Out()) != kNoErr) return "";
  return PhotoshopFontUtils::GetUTF8EncodedPathFromFileAlias(alias.Get());
}

void NoteOpenTime(OneTrackedDocument& document, const std::string& path) {
  document.SetTimeOpenEventWasHandled();
  OutputIndentedAndFormattedString(0, "SetTimeOpenEventWasHandled() associated %d with '%s'",
                                   static_cast<int>(document.GetTimeOpenEventWasHandled()), path.c_str());
}

// The counter is decremented on normal return only. After an exception it stays above 0, and documents are no longer
// closed and reopened.
void HandleOpenedDocumentGuarded(const std::string& path) {
  ++gOpenDocumentCallCounter;
  HandleOpenedDocument(path, false);
  --gOpenDocumentCallCounter;
}

void UpdateHandle(OneTrackedDocument& document, const std::string& path) {
  int current = 0, byPath = 0;
  PhotoshopFontUtils::GetCurrentDocumentID(&current);
  PhotoshopFontUtils::GetDocumentID(&byPath, path);
  document.SetDocumentHandle(byPath != 0 ? byPath : current);
}

}  // namespace

SPErr OpenEvent(FourCharCode, PIActionDescriptor descriptor, int32_t, void*) {
  if (!FontManagerInterface::AutoActivationIsReady()) return kNoErr;
  const std::string path = PathOfDescriptor(descriptor);
  OneTrackedDocument* document = AllTrackedDocuments::FindTrackedDocumentByPath(path);
  if (!document && gOpenDocumentCallCounter == 0) {
    HandleOpenedDocumentGuarded(path);
    document = AllTrackedDocuments::FindTrackedDocumentByPath(path);
    if (document) {
      NoteOpenTime(*document, path);
    } else {
      OutputIndentedAndFormattedString(0, "WARNING: HandleOpenedDocument() failed to add '%s' to AllTrackedDocuments.",
                                       path.c_str());
    }
  } else if (document && document->GetTimeOpenEventWasHandled() == 0) {
    // The window hook has handled this document already.
    NoteOpenTime(*document, path);
    if (document->GetUnresolvedFonts()) HandleOpenedDocumentGuarded(path);
  }
  // Look it up again: the handling may have run the event loop and the document may have been closed.
  document = AllTrackedDocuments::FindTrackedDocumentByPath(path);
  if (document) UpdateHandle(*document, path);
  return kNoErr;
}

void HandleOpenedDocument(const std::string& path, bool silently) {
  const TracedCall traced(__func__, "Entering %s('%s', %d)", __func__, path.c_str(), silently);
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  FontManagerInterface* manager = FontManagerInterface::sm_pFontManager.get();
  if (!ui || !ui->IsValid() || !manager) return;
  const auto document = std::make_shared<OneTrackedDocument>();
  document->SetIdentifier(FontActivationTracker::GenerateUniqueIdentifier());
  document->SetCanExportFontsForDocument(manager->CanActivateFromAllWorkgroups());
  // Adds nothing for a path that is tracked already: the older record keeps the handle and the path. This run then only
  // adds use counts under its own identifier, which are released at quit.
  AllTrackedDocuments::AddDocument(document, path);
  int numActivated = 0;
  if (silently) {
    CommonFunctionality::ActivateFontsForDocumentSilently(ui->GetEnabledGlyphsure(), ui->GetPickBestMatch(),
                                                          numActivated, path, platform::Array(), document.get());
  } else {
    ActivateFontsForDocument(true, numActivated, path, document.get());
  }
  int id = 0;
  if (PhotoshopFontUtils::GetDocumentID(&id, path) != kNoErr || id == 0) PhotoshopFontUtils::GetCurrentDocumentID(&id);
  if (id != 0) document->SetDocumentHandle(id);
  manager = FontManagerInterface::sm_pFontManager.get();
  if (!MarquineGlobals::ArePluginServicesEnabled() || !ui->GetEnabledAutoActivationPref() || !manager ||
      !manager->IsLoggedIn()) {
    return;
  }
  const bool hasMissing = document->GetHasMissingFonts();
  if (numActivated >= 1 && !hasMissing) {
    DeferredReplaceMissingFonts(static_cast<int>(document->GetDocumentHandle()));
  } else {
    OutputIndentedAndFormattedString(
        0, "DeferredReplaceMissingFonts(0x%08x) skipped because numFontsActivated=%d and HasMissingFonts=%d",
        static_cast<unsigned>(document->GetDocumentHandle()), numActivated, hasMissing);
  }
}

void DetectAndHandleNewlyOpenedDocuments(bool silently) {
  if (gOpenDocumentCallCounter != 0) return;
  gOpenDocumentCallCounter = 1;
  std::vector<std::string> paths;
  PhotoshopFontUtils::GetUTF8PathsForAllOpenDocuments(paths);
  for (const std::string& path : paths) {
    if (path.empty() || AllTrackedDocuments::FindTrackedDocumentByPath(path)) continue;
    OutputIndentedAndFormattedString(0, "Newly opened document detected: '%s'", path.c_str());
    HandleOpenedDocument(path, silently);
  }
  --gOpenDocumentCallCounter;
}

SPErr MakeEvent(FourCharCode, PIActionDescriptor descriptor, int32_t, void*) {
  if (!FontManagerInterface::AutoActivationIsReady() || !descriptor) return kNoErr;
  FourCharCode objectClass = 0;
  ScopedDescriptor object;
  if (sPSActionDescriptor->GetObject(descriptor, Code("Nw  "), &objectClass, object.Out()) != kNoErr) return kNoErr;
  if (objectClass != Code("Dcmn")) {
    OutputIndentedAndFormattedString(0, "MakeEvent received for DescriptorClassID %s", FourChar(objectClass).c_str());
    return kNoErr;
  }
  const auto document = std::make_shared<OneTrackedDocument>();
  document->SetIdentifier(FontActivationTracker::GenerateUniqueIdentifier());
  document->SetCanExportFontsForDocument(FontManagerInterface::sm_pFontManager->CanActivateFromAllWorkgroups());
  int id = 0;
  PhotoshopFontUtils::GetCurrentDocumentID(&id);
  document->SetDocumentHandle(id);
  OutputIndentedAndFormattedString(0, "New document has ID 0x%08x", static_cast<unsigned>(id));
  document->SetTimeOpenEventWasHandled();
  AllTrackedDocuments::AddDocument(document, "");
  return kNoErr;
}

namespace {

// Returns the record of the document that is being saved, with its new path; null if it is not tracked.
OneTrackedDocument* FindSavedDocument(const std::string& path, int id) {
  if (OneTrackedDocument* document = AllTrackedDocuments::FindTrackedDocumentByPath(path)) return document;
  if (id == 0) return nullptr;
  OneTrackedDocument* document = AllTrackedDocuments::FindTrackedDocumentByHandle(id);
  if (!document) {
    OutputIndentedAndFormattedString(0, "WARNING: no documentID 0x%08x found in AllTrackedDocuments. '%s' is untracked",
                                     static_cast<unsigned>(id), path.c_str());
    return nullptr;
  }
  document->SetDocumentFilePath(path);
  OutputIndentedAndFormattedString(0, "DocumentID 0x%08x is now associated with '%s'", static_cast<unsigned>(id),
                                   path.c_str());
  return document;
}

}  // namespace

SPErr SaveEvent(FourCharCode, PIActionDescriptor descriptor, int32_t, void*) {
  ++sNumberOfSaveEventsHandled;
  std::string path;
  PhotoshopFontUtils::GetCurrentDocumentPathUnstableInCS6(&path);
  OutputIndentedAndFormattedString(0, "Document name is '%s'", path.c_str());
  // The host announces a save twice. Only at the second time is the file written.
  if (DescriptorHasKey(descriptor, Code("DocI")) && sNumberOfSaveEventsHandled % 2 == 1) {
    OutputIndentedAndFormattedString(0, "Doing nothing because this is a pre-save event.");
  } else if (const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
             ui && FontManagerInterface::AutoActivationIsReady()) {
    if (ui->GetEnabledGlyphsure()) {
      UpdateGlyphsureSlugsForDocument(path);
    } else {
      RemoveAllGlyphsureSlugsForDocument(path);
    }
  }
  int id = 0;
  PhotoshopFontUtils::GetCurrentDocumentID(&id);
  OneTrackedDocument* document = FindSavedDocument(path, id);
  if (!document) return kNoErr;
  if (document->GetDocumentHandle() != id) {
    OutputIndentedAndFormattedString(0, "WARNING: currentDocumentID is 0x%08x but document being saved has ID 0x%08x",
                                     static_cast<unsigned>(id), static_cast<unsigned>(document->GetDocumentHandle()));
  }
  if (document->GetTimeOpenEventWasHandled() == 0) document->SetTimeOpenEventWasHandled();
  document->SetTimeSaveEventWasHandled();
  return kNoErr;
}

SPErr CloseEvent(FourCharCode, PIActionDescriptor, int32_t, void*) {
  if (FontManagerInterface::AutoActivationIsReady()) HandleClosedDocument();
  return kNoErr;
}

namespace {

// If the query fails, treat the document as open.
bool HasBeenClosed(const OneTrackedDocument& document) {
  const std::string path = document.GetDocumentFilePath();
  OutputIndentedAndFormattedString(0, "Considering whether '%s' has been closed.", path.c_str());
  if (document.GetDocumentHandle() == 0) {
    OutputIndentedAndFormattedString(0, "Could not get a handle for '%s' so it must have been closed.", path.c_str());
    return true;
  }
  bool exists = false;
  const SPErr error = PhotoshopFontUtils::DocumentExists(static_cast<int>(document.GetDocumentHandle()), &exists);
  if (error == kNoErr && !exists) return true;
  OutputIndentedAndFormattedString(0, "Host app still has a valid handle for '%s' so it must still be open.",
                                   path.c_str());
  return false;
}

}  // namespace

void HandleClosedDocument() {
  auto& documents = AllTrackedDocuments::GetDocumentList();
  size_t at = 0;
  while (at < documents.size()) {
    const size_t before = documents.size();
    if (HasBeenClosed(*documents[at])) AllTrackedDocuments::RemoveClosedDocument(documents[at].get());
    // The list has changed, so start again from its beginning. Skip a record that could not be removed.
    at = documents.size() < before ? 0 : at + 1;
  }
}
