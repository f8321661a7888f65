// Giving fonts back: for one document, and for the quit.
#include "Bridge/FontManagerInterface.h"
#include "GScopedLock.h"
#include "Services/DiagnosticLog.h"
#include "Tracking/FontActivationTracker.h"

using namespace GlyphsureSupport;
using platform::Array;
using platform::Dictionary;
using platform::String;

// One run of a close.
struct FontActivationTracker::CloseRun {
  FontManagerInterface& manager;
  bool bDeactivate;
  bool bShowProgress;
  FontManagerInterface::ActivationStates states{};
  ProgressRef progress{};
  bool allClosed = true;
};

namespace {
FontManagerInterface* ConnectedManager() {
  FontManagerInterface* manager = FontManagerInterface::sm_pFontManager.get();
  return manager && manager->IsFontManagerConnected() ? manager : nullptr;
}
}  // namespace

int FontActivationTracker::CloseAllFontsForIdentifier(const std::string& identifier, bool bDeactivateClosedFonts,
                                                      bool bShowProgress, Array fontsDeactivated) {
  FontManagerInterface* manager = ConnectedManager();
  if (!manager) return kErrorMarquineNotRunning;
  const GScopedLock lock(mMutex);
  CloseRun run{*manager, bDeactivateClosedFonts, bShowProgress, {}, {}, bDeactivateClosedFonts};
  int result = 0;
  const auto document = m_mDocuments.find(identifier);
  if (document == m_mDocuments.end()) {
    OutputIndentedAndFormattedString(0, "No entry in FontActivationTracker::m_mDocuments for '%s'", identifier.c_str());
  } else if (document->second.fontIDs.empty()) {
    OutputIndentedAndFormattedString(0, "No fonts registered for '%s'", identifier.c_str());
    m_mDocuments.erase(document);
  } else {
    try {
      result = CloseRegisteredFonts(run, document->second, fontsDeactivated);
    } catch (...) {
      // Counts already lowered stay so; the IDs not yet reached wait for the quit.
      manager->EndActivationChange();
      m_mDocuments.erase(identifier);
      manager->SetCountForLongOperations(1);
      OutputIndentedAndFormattedString(-1, "FontActivationTracker::CloseAllFontsForIdentifier() exiting abnormally");
      throw;
    }
    manager->EndActivationChange();
    m_mDocuments.erase(identifier);
  }
  manager->FinishClosingFontsForDocument(identifier, run.allClosed);
  manager->SetCountForLongOperations(1);
  OutputIndentedAndFormattedString(-1, "FontActivationTracker::CloseAllFontsForIdentifier() returning %d", result);
  return result;
}

int FontActivationTracker::CloseRegisteredFonts(CloseRun& run, DocumentFonts& document, Array fontsDeactivated) {
  run.manager.SetCountForLongOperations(static_cast<int>(document.fontIDs.size()));
  run.progress = StartProgress(run.bShowProgress, document.fontIDs.size(), "FontDeactivationWindowTitle",
                               "FontDeactivationHeaderForDoc");
  run.states = run.manager.GetClientFontActivationStates(document.fontIDs);
  const int result = run.manager.ConnectedToCoreAgent() ? CloseInBatch(run, document, fontsDeactivated)
                                                        : CloseOneByOne(run, document, fontsDeactivated);
  if (run.progress) mVPFInterface->HideProgress();
  return result;
}

int FontActivationTracker::CloseInBatch(CloseRun& run, const DocumentFonts& document, Array fontsDeactivated) {
  const Array fontsToDeactivate = Array::Create();
  for (const uint32_t fontID : document.fontIDs) {
    const auto found = m_mFonts.find(fontID);
    if (found == m_mFonts.end()) {
      OutputIndentedAndFormattedString(0, "No entry found for nDatabaseID(%d) in FontManagerInterface::m_mFonts", fontID);
      continue;
    }
    FontInfo& info = found->second;
    OutputIndentedAndFormattedString(0, "Considering whether to deactivate databaseID %d", fontID);
    if (info.nRefCount-- != 1) run.allClosed = false;
    // Without deactivation the entry stays open, so that the quit can still find it.
    if (!run.bDeactivate) continue;
    const char* name = info.postScriptName.CString();
    if (info.nRefCount > 0) {
      OutputIndentedAndFormattedString(0, "Not deactivating '%s' because its ref count is %d", name, info.nRefCount);
      continue;
    }
    const auto state = run.states.find(fontID);
    if (state != run.states.end() && !state->second) {
      OutputIndentedAndFormattedString(0, "Not deactivating '%s' because it is no longer plugin activated", name);
    } else if (info.bWasAlreadyActive) {
      OutputIndentedAndFormattedString(0, "Not deactivating '%s' because it was already active", name);
    } else {
      OutputIndentedAndFormattedString(0, "Adding '%s' to fontsToDeactivate.", name);
      Array(fontsToDeactivate).Append(info.font);
    }
    m_mFonts.erase(found);
  }
  ProgressContext context{run.bShowProgress, mVPFInterface, run.progress.get()};
  return run.manager.DeactivateFonts(fontsToDeactivate, nullptr, fontsDeactivated, &ProgressCallback, &context);
}

int FontActivationTracker::CloseOneByOne(CloseRun& run, const DocumentFonts& document, Array fontsDeactivated) {
  int result = 0;
  for (const uint32_t fontID : document.fontIDs) {
    const auto found = m_mFonts.find(fontID);
    if (found == m_mFonts.end()) continue;
    FontInfo& info = found->second;
    const bool isLast = info.nRefCount-- == 1;
    if (!isLast) run.allClosed = false;
    if (!isLast || !run.bDeactivate) continue;
    if (!info.bWasAlreadyActive) {
      if (run.progress) {
        run.progress->SetCurrentPostscriptName(info.postScriptName.Text());
        mVPFInterface->UpdateProgress(*run.progress);
      }
      const int status = run.manager.DeactivateFont(info.font, info.handle);
      if (status != 0) {
        OutputIndentedAndFormattedString(0, "XTDeactivateFont returned %d", status);
        result = status;
        if (status == kErrorMarquineNotRunning) break;
      } else {
        fontsDeactivated.Append(info.font);
      }
    }
    m_mFonts.erase(found);
  }
  return result;
}

int FontActivationTracker::CloseAllFonts(bool bDeactivateClosedFonts, bool bShowProgress) {
  FontManagerInterface* manager = ConnectedManager();
  if (!manager) return kErrorMarquineNotRunning;
  if (m_mFonts.empty()) return 0;
  const GScopedLock lock(mMutex);
  const int count = static_cast<int>(m_mFonts.size());
  OutputIndentedAndFormattedString(0, "Calling FontManagerInterface::SetCountForLongOperations(%d)", count);
  manager->SetCountForLongOperations(count);
  CloseRun run{*manager, bDeactivateClosedFonts, bShowProgress, {}, {}, true};
  int result = 0;
  try {
    run.progress =
        StartProgress(bShowProgress, m_mFonts.size(), "FontDeactivationWindowTitle", "FontDeactivationHeaderForQuit");
    FontManagerInterface::FontIDs ids;
    for (const auto& [fontID, info] : m_mFonts) ids.push_back(fontID);
    run.states = manager->GetClientFontActivationStates(ids);
    result = manager->ConnectedToCoreAgent() ? CloseBooksInBatch(run) : CloseBooksOneByOne(run);
  } catch (...) {
    // At quit, losing track is better than holding up the host.
    manager->EndActivationChange();
    m_mFonts.clear();
    OutputIndentedAndFormattedString(-1, "FontActivationTracker::CloseAllFonts() exiting abnormally");
    throw;
  }
  if (run.progress) mVPFInterface->HideProgress();
  manager->EndActivationChange();
  m_mFonts.clear();
  OutputIndentedAndFormattedString(-1, "FontActivationTracker::CloseAllFonts() returning %d", result);
  return result;
}

int FontActivationTracker::CloseBooksInBatch(CloseRun& run) {
  Array batch = Array::Create();
  for (auto& [fontID, info] : m_mFonts) {
    const auto state = run.states.find(fontID);
    const bool isHeld = state == run.states.end() || state->second;
    if (!info.font) continue;
    if (info.bOpen && isHeld && !info.bWasAlreadyActive && run.bDeactivate) batch.Append(info.font);
    info.bOpen = false;
    info.font = Dictionary();
    info.postScriptName = String();
  }
  ProgressContext context{run.bShowProgress, mVPFInterface, run.progress.get()};
  return run.manager.DeactivateFonts(batch, nullptr, Array(), &ProgressCallback, &context);
}

int FontActivationTracker::CloseBooksOneByOne(CloseRun& run) {
  int result = 0, done = 0;
  for (auto& [fontID, info] : m_mFonts) {
    if (info.bOpen && !info.bWasAlreadyActive && run.bDeactivate) {
      const int status = run.manager.DeactivateFont(info.font, info.handle);
      if (status != 0) {
        OutputIndentedAndFormattedString(0, "XTDeactivateFont returned %d", status);
        result = status;
        if (status == kErrorMarquineNotRunning) break;
      }
    }
    info.bOpen = false;
    if (run.progress) {
      run.progress->SetCurrentProgress(++done);
      mVPFInterface->UpdateProgress(*run.progress);
    }
  }
  return result;
}
