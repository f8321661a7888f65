// The agent's fonts, kept up to date with the folders, and their activations. Owns the two databases, the table, the
// scanner, the folder of links and the activations. A scan is a series of short steps on the loop, between which the
// agent answers requests. Only the loop's thread may use the library, and all events are called on it.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "agent/activation/Activations.h"
#include "agent/activation/ActiveFolder.h"
#include "agent/fonts/FontTable.h"
#include "agent/library/LibraryWatch.h"
#include "agent/library/Scanner.h"
#include "agent/library/SmartLists.h"
#include "agent/store/Configuration.h"
#include "agent/store/IndexStore.h"
#include "agent/store/RightsStore.h"
#include "agent/store/UserStore.h"
#include "platform/RunLoop.h"

namespace agent {

// What the library tells the agent. All must be set, except those of the Note... functions if nobody calls these.
struct LibraryEvents {
  std::function<void(uint32_t fontID)> activated;
  std::function<void(uint32_t fontID)> deactivated;
  std::function<void(uint32_t fontID)> missing;           // its file has gone
  std::function<void(const ScanProgress&)> scanProgress;  // at most every 0.1 seconds; never in a short scan
  // `hadProgress` is true if the scan called scanProgress.
  std::function<void(bool hadProgress)> scanFinished;
  std::function<void()> fontsChanged;  // there are other fonts than before; after the scan that has found that
  // The client asked to activate the font for a design, and "refused" in the configuration names the font.
  std::function<void(ClientID client, uint32_t fontID)> designRefused;
  std::function<void()> listsChanged;  // smart lists have changed, or what they are made of: sets and smart sets
  std::function<void(const std::string& line)> report;  // a line for people, for the agent's log
};

class FontLibrary {
 public:
  // Opens the databases; Start does the rest. The loop must outlive the library. Throws StoreError, with nothing
  // changed, if a database is damaged or of a later version. One that cannot be written is used in memory.
  FontLibrary(const Configuration& configuration, platform::RunLoop& loop, LibraryEvents events);
  ~FontLibrary();
  FontLibrary(const FontLibrary&) = delete;
  FontLibrary& operator=(const FontLibrary&) = delete;

  // Removes what a killed agent left and starts the first scan.
  void Start();
  // True if the first scan has finished. Before, "not in the table" does not mean "not in the library".
  bool IsReady() const { return scanner_.HasFinishedOnce(); }
  // Starts a scan, or notes to start another one after the scan that is running.
  void Rescan();
  // Replaces the libraries and scans their folders. Fonts of folders that no library has any more are deactivated.
  void SetWorkgroups(const Workgroups& workgroups);
  // Call before looking at active fonts: updates which fonts the operating system has active by itself. Asks it at most
  // every 5 seconds, or always if `now` is true.
  void FreshenSystemFonts(bool now);
  // Call before the agent ends: deactivates what clients requested. Activations that outlive their client stay linked.
  void Finish();

  const FontTable& Table() const { return table_; }
  const Workgroups& Groups() const { return workgroups_; }
  const Scanner& Scans() const { return scanner_; }
  bool IsUnwatched() const { return watch_.IsUnwatched(); }
  Activations& Active() { return activations_; }
  const Activations& Active() const { return activations_; }
  UserStore& User() { return user_; }
  const UserStore& User() const { return user_; }
  SmartStore& Smart() { return smart_; }
  RightsStore& Rights() { return rights_; }
  const SmartLists& Lists() const { return lists_; }
  void NoteDesignRefused(ClientID client, uint32_t fontID) { events_.designRefused(client, fontID); }
  // Call when what lists are made of has been changed.
  void NoteListsChanged() { events_.listsChanged(); }

 private:
  void PostStep();
  void Step();
  void FinishScan();
  void WriteScanLog() const;
  void ReportUnwritable();
  void StoreAgain();
  void TellOfChanges();

  std::shared_ptr<int> alive_ = std::make_shared<int>(0);  // posted steps check whether this object still exists
  platform::RunLoop& loop_;
  LibraryEvents events_;
  std::string logPath_;
  IndexStore index_;
  UserStore user_;
  SmartStore smart_;
  RightsStore rights_;
  Workgroups workgroups_;
  FontTable table_;
  ActiveFolder folder_;
  Activations activations_;
  SmartLists lists_;
  Scanner scanner_;
  LibraryWatch watch_;
  double lastProgress_ = 0;      // on the steady clock, in seconds
  bool hadProgress_ = false;     // the scan that is running called scanProgress
  bool scanAgain_ = false;       // after the scan that is running
  double lastFreshened_ = 0;     // on the steady clock, in seconds
  uint64_t toldRevision_ = 0;    // of the table when fontsChanged was called last
  bool saidUnwritable_ = false;  // reported that user.db cannot be written
};

}  // namespace agent
