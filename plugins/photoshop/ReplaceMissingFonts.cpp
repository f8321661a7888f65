#include "photoshop/ReplaceMissingFonts.h"

#include <cstdlib>
#include <sstream>
#include <vector>

#include "Documents/AllTrackedDocuments.h"
#include "Services/DiagnosticLog.h"
#include "Services/MarquineGlobals.h"
#include "photoshop/PhotoshopFontUtils.h"
#include "platform/Process.h"
#include "platform/RunLoop.h"
#include "platform/TextEncoding.h"
#include "platform/Window.h"

int gOpenDocumentCallCounter = 0;
int gShowingAlertCallCounter = 0;

namespace {

constexpr double kRetrySeconds = 1.0;

std::vector<platform::RunLoopTimerRef> sTimers;  // pending, one for each document

// Closes and reopens the document, unless that would lose changes or disturb the user. The host may give the reopened
// document another handle, so the tracked document takes the handle of the document that is in front afterwards.
void CloseAndReopen(int documentID) {
  PhotoshopFontUtils::BringDocumentToFront(documentID);
  std::string path;
  PhotoshopFontUtils::GetCurrentDocumentPathUnstableInCS6(&path);
  int currentID = 0;
  bool isDirty = false;
  PhotoshopFontUtils::GetCurrentDocumentID(&currentID);
  PhotoshopFontUtils::GetDocumentDirtyFlag(&currentID, &isDirty);
  if (isDirty) {
    OutputIndentedAndFormattedString(0, "Skipping close/reopen because document %d is dirty.", documentID);
  } else if (platform::Window::Modal()) {
    OutputIndentedAndFormattedString(0, "Skipping close/reopen because a modal window is displayed.");
  } else if (platform::EncodeText(path, platform::TextEncoding::kMacRoman)) {
    // The host opens files by MacRoman paths only. A document with another path stays open, or it could not be
    // reopened.
    PhotoshopFontUtils::PlayeventClose();
    PhotoshopFontUtils::PlayeventOpen(path);
  }
  if (OneTrackedDocument* document = AllTrackedDocuments::FindTrackedDocumentByPath(path)) {
    int reopenedID = static_cast<int>(document->GetDocumentHandle());
    PhotoshopFontUtils::GetCurrentDocumentID(&reopenedID);
    document->SetDocumentHandle(reopenedID);
  }
}

void replaceMissingFontsTimerCallback(platform::RunLoopTimer& timer, int documentID) {
  const TracedCall traced(__func__, "Entering %s(gOpenDocumentCallCounter == %d && gShowingAlertCallCounter == %d)",
                          __func__, gOpenDocumentCallCounter, gShowingAlertCallCounter);
  // While the host is busy, leave the timer armed: it fires again in kRetrySeconds.
  if (gOpenDocumentCallCounter != 0 || gShowingAlertCallCounter != 0) return;
  std::erase_if(sTimers, [&](const platform::RunLoopTimerRef& pending) { return pending.get() == &timer; });
  timer.Invalidate();
  const SuitesForOneCall suites;
  CloseAndReopen(documentID);
}

// Returns the path of the first program with this name in the folders of PATH, or else the name.
std::string FindProgram(const std::string& name) {
  const char* folders = std::getenv("PATH");
  std::istringstream stream(folders ? folders : "");
  for (std::string folder; std::getline(stream, folder, ':');) {
    std::string path = folder + "/" + name;
    if (platform::IsExecutableFile(path)) return path;
  }
  return name;
}

}  // namespace

void DeferredReplaceMissingFonts(int documentID) {
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (!ui) return;
  int delay = ui->GetLongPreferenceForKey(kVPFPreference_PhotoshopRMFDelayMilliseconds);
  if (delay == 0) {
    delay = kPhotoshopDefaultRMFDelayMilliseconds;
    ui->SetLongPreferenceForKey(kVPFPreference_PhotoshopRMFDelayMilliseconds, delay);
  }
  if (delay < 0) return;  // switched off
  auto timer = platform::RunLoopTimer::After(
      delay / 1000.0, kRetrySeconds,
      [documentID](platform::RunLoopTimer& fired) { replaceMissingFontsTimerCallback(fired, documentID); });
  // The default mode keeps the timer from firing in a modal loop.
  platform::RunLoop::Main().AddTimer(timer, platform::RunLoopMode::kDefault);
  sTimers.push_back(timer);
}

void DelayReplaceMissingFontsTimers() {
  for (const auto& timer : sTimers) timer->FireAfter(kRetrySeconds);
}

bool SystemOpenFile(const std::string& path) {
  std::string error;
  if (platform::LaunchDetached(FindProgram("xdg-open"), path, "", &error)) return true;
  OutputIndentedAndFormattedString(0, "%s('%s') failed: %s", __func__, path.c_str(), error.c_str());
  return false;
}

void timerCallback(platform::RunLoopTimer&, void* info) { SystemOpenFile(*static_cast<const std::string*>(info)); }

void ResetReplaceMissingFontsForTesting() {
  for (const auto& timer : sTimers) timer->Invalidate();
  sTimers.clear();
  gOpenDocumentCallCounter = 0;
  gShowingAlertCallCounter = 0;
}
