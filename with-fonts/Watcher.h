// Activates the fonts of documents in watched folders while programs use them.
//
// A program uses a document from the moment it opens the file until the program ends: most programs close a file as soon
// as they have read it. The program is found in /proc when the file is opened. If it has closed the file by then, nobody
// knows it, and the fonts stay for kUnknownUse.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "docfonts/ReaderPool.h"
#include "with-fonts/DocumentFonts.h"
#include "with-fonts/FolderWatch.h"
#include "with-fonts/FontKeeper.h"

namespace with_fonts {

// Files that are open are served first, and then those that were opened last. What has waited and is closed by then is
// left out, so that programs that open thousands of files cost little.
//
// Not thread-safe; the program must have no other threads.
class Watcher {
 public:
  static constexpr std::chrono::seconds kUnknownUse{60};

  // `write` takes the result for each document whose fonts are activated.
  Watcher(FontKeeper& keeper, std::function<void(const DocumentFonts&)> write, FolderWatch::Complaint complain);
  ~Watcher();

  void Add(const std::string& folder) { folders_.Add(folder); }
  size_t CountFolders() const { return folders_.Count(); }
  // Serves until `stop` is readable, no folder is left, or the keeper's process has ended. Returns false for the latter
  // two.
  bool Run(int stop);

 private:
  using Clock = std::chrono::steady_clock;
  struct Use;
  struct Known;

  void Collect(const std::string& own);
  void ServeOpened();
  void Notice(const std::string& path, pid_t user);
  const docfonts::Report& ReportOf(const std::string& path);
  void Await(int stop);
  void CloseUnused();

  FontKeeper& keeper_;
  const std::function<void(const DocumentFonts&)> write_;
  FolderWatch folders_;
  docfonts::ReaderPool pool_;
  std::map<std::string, Known> known_;               // what was read lately
  std::map<std::string, Clock::time_point> opened_;  // files to be served, with the time when that was noticed
  std::map<std::string, Use> used_;                  // documents that the keeper has open
  bool isKeeperThere_ = true;
};

}  // namespace with_fonts
