#include "Documents/AllTrackedDocuments.h"

#include <algorithm>

#include "Services/DiagnosticLog.h"
#include "Services/MarquineGlobals.h"
#include "Tracking/FontActivationTracker.h"

std::unique_ptr<AllTrackedDocuments::DocumentList> AllTrackedDocuments::s_pDocumentList;
std::string AllTrackedDocuments::s_currentDocumentIdentifier;

AllTrackedDocuments::DocumentList& AllTrackedDocuments::GetDocumentList() {
  if (!s_pDocumentList) s_pDocumentList = std::make_unique<DocumentList>();
  return *s_pDocumentList;
}

void AllTrackedDocuments::ResetForTesting() {
  s_pDocumentList.reset();
  s_currentDocumentIdentifier.clear();
}

namespace {

template <class Test>
OneTrackedDocument* FindFirst(const Test& test) {
  for (const auto& record : AllTrackedDocuments::GetDocumentList()) {
    if (test(*record)) return record.get();
  }
  return nullptr;
}

}  // namespace

void AllTrackedDocuments::AddDocument(std::shared_ptr<OneTrackedDocument> record, const std::string& path) {
  OutputIndentedAndFormattedString(0, "AllTrackedDocuments::AddDocument(pInfo=0x%08x, path='%s')",
                                   LowBits(record.get()), path.c_str());
  if (FindTrackedDocumentByPath(path)) return;
  if (!record) record = std::make_shared<OneTrackedDocument>();
  record->SetDocumentFilePath(path);
  GetDocumentList().push_back(std::move(record));
}

void AllTrackedDocuments::RemoveClosedDocument(const OneTrackedDocument* closed) {
  const std::string identifier = closed->GetIdentifier();
  const TracedCall traced(__func__, "Entering %s('%s')", __func__, identifier.c_str());
  DocumentList& list = GetDocumentList();
  try {
    const auto isIt = [&](const auto& record) { return record->GetIdentifier() == identifier; };
    if (std::none_of(list.begin(), list.end(), isIt)) return;
    FontActivationTracker* tracker = MarquineGlobals::GetSharedFontActivationTracker();
    const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
    if (tracker && ui) {
      tracker->CloseAllFontsForIdentifier(identifier, ui->GetCloseFontsOnDocClose(), false, platform::Array());
    }
    // Search again: a progress box runs the event loop, and a close in it may have removed the record.
    const auto position = std::find_if(list.begin(), list.end(), isIt);
    if (position != list.end()) list.erase(position);
  } catch (...) {
    // Keep the record, so that a later close event tries again.
    OutputIndentedAndFormattedString(0, "Exception thrown in %s()", "RemoveClosedDocument");
  }
}

OneTrackedDocument* AllTrackedDocuments::FindTrackedDocumentByPath(const std::string& path) {
  return FindFirst([&](const OneTrackedDocument& record) { return record.GetDocumentFilePath() == path; });
}

OneTrackedDocument* AllTrackedDocuments::FindTrackedDocumentByHandle(long handle) {
  OneTrackedDocument* found =
      FindFirst([&](const OneTrackedDocument& record) { return record.GetDocumentHandle() == handle; });
  if (!found && handle != 0) {
    OutputIndentedAndFormattedString(0, "WARNING: %s() could not find document 0x%08x", __func__,
                                     static_cast<unsigned>(handle));
  }
  return found;
}

OneTrackedDocument* AllTrackedDocuments::FindTrackedDocumentByIdentifier(const std::string& identifier) {
  return FindFirst([&](const OneTrackedDocument& record) { return record.GetIdentifier() == identifier; });
}

OneTrackedDocument* AllTrackedDocuments::GetCurrentDocument() {
  return FindTrackedDocumentByIdentifier(s_currentDocumentIdentifier);
}

void AllTrackedDocuments::SetCurrentDocument(const std::string& identifier) {
  s_currentDocumentIdentifier = identifier;
}

OneTrackedDocument* AllTrackedDocuments::GetMostRecentlyOpenedDocument() {
  OneTrackedDocument* latest = nullptr;
  for (const auto& record : GetDocumentList()) {
    const std::time_t time = record->GetTimeOpenEventWasHandled();
    if (time > 0 && (!latest || time > latest->GetTimeOpenEventWasHandled())) latest = record.get();
  }
  return latest;
}
