#include "agent/library/FontLibrary.h"

#include "agent/fonts/ShownText.h"
#include "platform/Clock.h"
#include "platform/Files.h"

namespace agent {

namespace {

constexpr double kProgressInterval = 0.1;  // seconds
constexpr double kSystemFontsAge = 5.0;    // seconds

std::vector<std::string> FoldersOf(const Workgroups& workgroups) {
  std::vector<std::string> folders;
  for (const Workgroup& workgroup : workgroups) {
    folders.insert(folders.end(), workgroup.folders.begin(), workgroup.folders.end());
  }
  return folders;
}

}  // namespace

FontLibrary::FontLibrary(const Configuration& configuration, platform::RunLoop& loop, LibraryEvents events)
    : loop_(loop),
      events_(std::move(events)),
      logPath_(configuration.LogFolder() + "/scan.log"),
      index_(configuration.DataFolder() + "/index.db", events_.report),
      user_(configuration.DataFolder() + "/user.db"),
      smart_(user_.Tables()),
      rights_(user_.Tables()),
      workgroups_(configuration.AllWorkgroups()),
      folder_(configuration.ActiveFolderPath(), configuration.desktop ? LinkKind::kHardPreferred : LinkKind::kSymbolic,
              loop),
      activations_({table_, folder_, user_}, configuration.refused,
                   {events_.activated, events_.deactivated, events_.report}),
      lists_({table_, activations_, user_, smart_, workgroups_}),
      scanner_({index_, user_, table_, folder_}, workgroups_,
               {[this](const std::string& folder) { watch_.Add(folder); },
                [this](const std::string& path) { activations_.OnFileReplaced(path); },
                [this](uint32_t former, uint32_t id) { activations_.OnFontRenewed(former, id); },
                [this](const std::string& path, const std::vector<Font>& fonts) {
                  activations_.OnFontsGone(path, fonts);
                  for (const Font& font : fonts) events_.missing(font.id);
                },
                [this] { PostStep(); }}),
      watch_(loop, FoldersOf(workgroups_), {[this] { Rescan(); }, events_.report}) {}

FontLibrary::~FontLibrary() = default;

void FontLibrary::Start() {
  ReportUnwritable();
  if (const std::error_code error = folder_.Prepare()) {
    events_.report("can't make the folder of active fonts: " + platform::DescribeError(error));
  }
  activations_.RemoveUnaskedLinks();
  Rescan();
}

void FontLibrary::Rescan() {
  if (scanner_.IsRunning()) {
    scanAgain_ = true;  // the change may be in a folder that was scanned already
    return;
  }
  StoreAgain();
  watch_.BeginScan();
  scanner_.Start();
  lastProgress_ = platform::Clock::Steady();
  hadProgress_ = false;
  PostStep();
}

void FontLibrary::SetWorkgroups(const Workgroups& workgroups) {
  workgroups_ = workgroups;
  watch_.SetGiven(FoldersOf(workgroups_));
  scanner_.SetWorkgroups(workgroups_);
  Rescan();
}

void FontLibrary::PostStep() {
  loop_.Post([this, alive = std::weak_ptr<int>(alive_)] {
    if (!alive.expired()) Step();
  });
}

void FontLibrary::Step() {
  const Scanner::Outcome outcome = scanner_.Step();
  if (outcome == Scanner::Outcome::kFinished) return FinishScan();
  if (outcome == Scanner::Outcome::kMustWait) return;  // the scanner posts the next step
  const double now = platform::Clock::Steady();
  if (now - lastProgress_ >= kProgressInterval) {
    lastProgress_ = now;
    hadProgress_ = true;
    events_.scanProgress(scanner_.Progress());
  }
  PostStep();
}

void FontLibrary::StoreAgain() {
  try {
    if (!user_.ReturnToFile()) return;
    saidUnwritable_ = false;
    events_.report("user.db can be written again; what changed since is stored");
  } catch (const StoreError& error) {
    events_.report(error.what());
  }
}

void FontLibrary::ReportUnwritable() {
  if (user_.Unwritable().empty() || saidUnwritable_) return;
  saidUnwritable_ = true;
  events_.report(user_.Unwritable() + "; fonts are served, but what changes is kept only until the agent ends");
}

void FontLibrary::FinishScan() {
  ReportUnwritable();
  lastFreshened_ = platform::Clock::Steady();
  WriteScanLog();
  activations_.Reconcile();
  events_.scanFinished(hadProgress_);
  TellOfChanges();
  if (!scanAgain_) return;
  scanAgain_ = false;
  Rescan();
}

void FontLibrary::WriteScanLog() const {
  std::string text;
  for (const ScanProblem& problem : scanner_.Report().problems)
    text += ShownPath(problem.path) + ": " + problem.message + "\n";
  if (const std::error_code error = platform::ReplaceFileUnsynced(logPath_, text)) {
    events_.report(logPath_ + ": " + platform::DescribeError(error));
  }
}

void FontLibrary::FreshenSystemFonts(bool now) {
  const double time = platform::Clock::Steady();
  if (!now && time - lastFreshened_ < kSystemFontsAge) return;
  lastFreshened_ = time;
  scanner_.RefreshSystemFonts();
  if (!scanner_.IsRunning()) TellOfChanges();
}

void FontLibrary::TellOfChanges() {
  if (toldRevision_ == table_.Revision()) return;
  toldRevision_ = table_.Revision();
  events_.fontsChanged();
}

void FontLibrary::Finish() {
  StoreAgain();
  activations_.ReleaseAllClients();
  folder_.FinishTouches();
}

}  // namespace agent
