// Closes fonts, for one document or at quit.
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
  bool allClosed;
  std::vector<uint32_t> fontIDs{};  // the fonts to close: a document's, or all in the order of their IDs
  FontManagerInterface::ActivationStates states{};
  ProgressRef progress{};
};

namespace {

// Returns true if this was the last registration. After a quit, a remaining vector can contain a font more often than
// it is counted; such a font stays open until the next quit.
bool LowerCount(FontActivationTracker::FontInfo& info) { return info.nRefCount-- == 1; }

}  // namespace

int FontActivationTracker::CloseAllFontsForIdentifier(const std::string& identifier, bool bDeactivateClosedFonts,
                                                      bool bShowProgress, Array fontsDeactivated) {
  FontManagerInterface* manager = FontManagerInterface::ConnectedManager();
  if (!manager) return kErrorMarquineNotRunning;
  TracedCall traced("FontActivationTracker::CloseAllFontsForIdentifier");
  const GScopedLock lock(mMutex);
  CloseRun run{*manager, bDeactivateClosedFonts, bShowProgress, bDeactivateClosedFonts};
  int result = 0;
  const auto document = m_mDocuments.find(identifier);
  if (document == m_mDocuments.end()) {
    OutputIndentedAndFormattedString(0, "No entry in FontActivationTracker::m_mDocuments for '%s'", identifier.c_str());
  } else if (document->second.fontIDs.empty()) {
    OutputIndentedAndFormattedString(0, "No fonts registered for '%s'", identifier.c_str());
    m_mDocuments.erase(document);
  } else {
    // Remove the entry before calling the agent, so that an open or close during the calls finds correct records:
    // nothing is decremented twice, and what is registered meanwhile stays.
    run.fontIDs = std::move(document->second.fontIDs);
    m_mDocuments.erase(document);
    try {
      result = CloseRegisteredFonts(run, fontsDeactivated);
    } catch (...) {
      // Counts that were decremented stay so. The fonts that were not reached are closed at quit.
      manager->EndActivationChange();
      manager->SetCountForLongOperations(1);
      traced.End("FontActivationTracker::CloseAllFontsForIdentifier() exiting abnormally");
      throw;
    }
    manager->EndActivationChange();
  }
  manager->FinishClosingFontsForDocument(identifier, run.allClosed);
  manager->SetCountForLongOperations(1);
  traced.End("FontActivationTracker::CloseAllFontsForIdentifier() returning %d", result);
  return result;
}

int FontActivationTracker::CloseRegisteredFonts(CloseRun& run, Array fontsDeactivated) {
  run.manager.SetCountForLongOperations(static_cast<int>(run.fontIDs.size()));
  run.progress = StartProgress(run.bShowProgress, run.fontIDs.size(), "FontDeactivationWindowTitle",
                               "FontDeactivationHeaderForDoc");
  run.states = run.manager.GetClientFontActivationStates(run.fontIDs);
  return run.manager.ConnectedToCoreAgent() ? CloseInBatch(run, fontsDeactivated)
                                            : CloseOneByOne(run, fontsDeactivated);
}

int FontActivationTracker::CloseInBatch(CloseRun& run, Array fontsDeactivated) {
  Array fontsToDeactivate = Array::Create();
  for (const uint32_t fontID : run.fontIDs) {
    const auto found = m_mFonts.find(fontID);
    if (found == m_mFonts.end()) {
      OutputIndentedAndFormattedString(0, "No entry found for nDatabaseID(%d) in FontManagerInterface::m_mFonts",
                                       fontID);
      continue;
    }
    FontInfo& info = found->second;
    OutputIndentedAndFormattedString(0, "Considering whether to deactivate databaseID %d", fontID);
    if (!LowerCount(info)) run.allClosed = false;
    // Without deactivation keep the entry, so that the quit finds it.
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
      fontsToDeactivate.Append(info.font);
    }
    m_mFonts.erase(found);
  }
  ProgressContext context{run.bShowProgress, mVPFInterface, run.progress.get()};
  return run.manager.DeactivateFonts(fontsToDeactivate, nullptr, fontsDeactivated, &ProgressCallback, &context);
}

// Returns the agent's status and traces a failure.
int FontActivationTracker::DeactivateOne(CloseRun& run, const FontInfo& info) {
  const int status = run.manager.DeactivateFont(info.font, info.handle);
  if (status != 0) OutputIndentedAndFormattedString(0, "XTDeactivateFont returned %d", status);
  return status;
}

int FontActivationTracker::CloseOneByOne(CloseRun& run, Array fontsDeactivated) {
  int result = 0;
  for (const uint32_t fontID : run.fontIDs) {
    const auto found = m_mFonts.find(fontID);
    if (found == m_mFonts.end()) continue;
    const bool isLast = LowerCount(found->second);
    if (!isLast) run.allClosed = false;
    if (!isLast || !run.bDeactivate) continue;
    const FontInfo info = found->second;
    if (!info.bWasAlreadyActive) {
      if (run.progress) {
        run.progress->SetCurrentPostscriptName(info.postScriptName.Text());
        mVPFInterface->UpdateProgress(*run.progress);
      }
      const int status = DeactivateOne(run, info);
      if (status == 0) {
        fontsDeactivated.Append(info.font);
      } else {
        result = status;
      }
      if (status == kErrorMarquineNotRunning) break;
    }
    const auto closed = m_mFonts.find(fontID);
    if (closed != m_mFonts.end() && closed->second.nRefCount == 0) m_mFonts.erase(closed);
  }
  return result;
}

int FontActivationTracker::CloseAllFonts(bool bDeactivateClosedFonts, bool bShowProgress) {
  FontManagerInterface* manager = FontManagerInterface::ConnectedManager();
  if (!manager) return kErrorMarquineNotRunning;
  if (m_mFonts.empty()) return 0;
  TracedCall traced("FontActivationTracker::CloseAllFonts");
  const GScopedLock lock(mMutex);
  CloseRun run{*manager, bDeactivateClosedFonts, bShowProgress, true};
  int result = 0;
  try {
    result = CloseBooks(run);
  } catch (...) {
    // At quit, losing records is better than blocking the host.
    manager->EndActivationChange();
    m_mFonts.clear();
    traced.End("FontActivationTracker::CloseAllFonts() exiting abnormally");
    throw;
  }
  manager->EndActivationChange();
  m_mFonts.clear();
  traced.End("FontActivationTracker::CloseAllFonts() returning %d", result);
  return result;
}

int FontActivationTracker::CloseBooks(CloseRun& run) {
  const int count = static_cast<int>(m_mFonts.size());
  OutputIndentedAndFormattedString(0, "Calling FontManagerInterface::SetCountForLongOperations(%d)", count);
  run.manager.SetCountForLongOperations(count);
  run.progress =
      StartProgress(run.bShowProgress, m_mFonts.size(), "FontDeactivationWindowTitle", "FontDeactivationHeaderForQuit");
  for (const auto& [fontID, info] : m_mFonts) run.fontIDs.push_back(fontID);
  run.states = run.manager.GetClientFontActivationStates(run.fontIDs);
  return run.manager.ConnectedToCoreAgent() ? CloseBooksInBatch(run) : CloseBooksOneByOne(run);
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
  for (const uint32_t fontID : run.fontIDs) {
    const auto found = m_mFonts.find(fontID);
    if (found == m_mFonts.end()) continue;
    const FontInfo info = found->second;
    found->second.bOpen = false;
    if (info.bOpen && !info.bWasAlreadyActive && run.bDeactivate) {
      const int status = DeactivateOne(run, info);
      if (status != 0) result = status;
      if (status == kErrorMarquineNotRunning) break;
    }
    if (!run.progress) continue;
    run.progress->SetCurrentProgress(++done);
    mVPFInterface->UpdateProgress(*run.progress);
  }
  return result;
}
