// The fonts that the agent has, kept in step with the folders, and what is active of them. It owns the two databases,
// the table, the scanner, the folder of links and the books of activations, and runs the scans on the loop.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "agent/Activations.h"
#include "agent/ActiveFolder.h"
#include "agent/Configuration.h"
#include "agent/FontTable.h"
#include "agent/IndexStore.h"
#include "agent/LibraryWatch.h"
#include "agent/Scanner.h"
#include "agent/UserStore.h"
#include "platform/RunLoop.h"

namespace agent {

struct LibraryEvents {
  std::function<void(uint32_t fontID)> activated;
  std::function<void(uint32_t fontID)> deactivated;
  std::function<void(uint32_t fontID)> missing;
  std::function<void(const ScanProgress&)> scanProgress;  // now and then while files are read
  std::function<void(bool hadProgress)> scanFinished;
  std::function<void(const std::string& line)> report;  // for a person
};

class FontLibrary {
 public:
  // Throws StoreError if a database can't be used; nothing is changed then.
  FontLibrary(const Configuration& configuration, platform::RunLoop& loop, LibraryEvents events);
  ~FontLibrary();
  FontLibrary(const FontLibrary&) = delete;
  FontLibrary& operator=(const FontLibrary&) = delete;

  // Clears what an agent left behind that was killed, and starts the first scan.
  void Start();
  // The first scan is done: the table can be asked.
  bool IsReady() const { return scanner_.HasFinishedOnce(); }
  void Rescan();  // if none runs
  // Before questions of what is active. The operating system is asked at most every few seconds, unless it must be now.
  void FreshenSystemFonts(bool now);
  // Takes back what clients asked for; what is stored stays linked.
  void Finish();

  const FontTable& Table() const { return table_; }
  const Scanner& Scans() const { return scanner_; }
  Activations& Active() { return activations_; }
  UserStore& User() { return user_; }

 private:
  void PostStep();
  void Step();
  void FinishScan();
  void WriteScanLog() const;

  platform::RunLoop& loop_;
  LibraryEvents events_;
  std::string logPath_;
  IndexStore index_;
  UserStore user_;
  FontTable table_;
  ActiveFolder folder_;
  Activations activations_;
  Scanner scanner_;
  LibraryWatch watch_;
  double lastProgress_ = 0;
  bool hadProgress_ = false;
  bool scanAgain_ = false;
  double lastFreshened_ = 0;
  std::shared_ptr<int> alive_ = std::make_shared<int>(0);  // posted steps look whether this object is still there
};

}  // namespace agent
