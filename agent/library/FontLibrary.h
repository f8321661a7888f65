// The agent's fonts, kept up to date with the folders, and their activations. Owns the two databases, the table, the
// scanner, the folder of links and the activations, and runs the scans on the loop.
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

struct LibraryEvents {
  std::function<void(uint32_t fontID)> activated;
  std::function<void(uint32_t fontID)> deactivated;
  std::function<void(uint32_t fontID)> missing;
  std::function<void(const ScanProgress&)> scanProgress;  // occasionally, while files are read
  std::function<void(bool hadProgress)> scanFinished;
  // A font may not be activated for a preview that this client asked for.
  std::function<void(ClientID client, uint32_t fontID)> designRefused;
  std::function<void()> listsChanged;                   // smart lists, or the sets and smart sets that they are made of
  std::function<void(const std::string& line)> report;  // a line for people
};

class FontLibrary {
 public:
  // Throws StoreError, with nothing changed, if a database is damaged or of a later version. One that cannot be written is
  // used in memory.
  FontLibrary(const Configuration& configuration, platform::RunLoop& loop, LibraryEvents events);
  ~FontLibrary();
  FontLibrary(const FontLibrary&) = delete;
  FontLibrary& operator=(const FontLibrary&) = delete;

  // Removes what a killed agent left and starts the first scan.
  void Start();
  // True if the first scan has finished, so that the table can be used.
  bool IsReady() const { return scanner_.HasFinishedOnce(); }
  void Rescan();  // again after one that is running
  // Replaces the workgroups and scans their folders. Fonts of folders that are left out are deactivated.
  void SetWorkgroups(const Workgroups& workgroups);
  // Call before looking at active fonts. Asks the operating system at most every few seconds, or at once with `now`.
  void FreshenSystemFonts(bool now);
  // Deactivates what clients requested; stored activations stay linked.
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
  double lastProgress_ = 0;
  bool hadProgress_ = false;
  bool scanAgain_ = false;
  double lastFreshened_ = 0;
  bool saidUnwritable_ = false;
};

}  // namespace agent
