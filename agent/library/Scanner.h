// Keeps the font table up to date with the library folders and with the fonts that the operating system has active by
// itself.
//
// A scan runs in small steps, so that the loop can answer requests in between. It walks the folders, then reads new and
// changed files, one per step, and then removes files that are gone. The index stores what was read. The workgroup of
// system fonts contains the files that the operating system's font service lists, except our own links and files of the
// library.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "agent/activation/ActiveFolder.h"
#include "agent/fonts/FontFile.h"
#include "agent/fonts/FontTable.h"
#include "agent/library/FolderWalk.h"
#include "agent/store/IndexStore.h"
#include "agent/store/UserStore.h"

namespace agent {

struct ScanProgress {
  size_t step = 0;
  size_t steps = 0;
  std::string text;
};

struct ScanReport {
  size_t files = 0;  // with at least one usable face
  size_t faces = 0;
  std::vector<ScanProblem> problems;
};

struct ScanEvents {
  std::function<void(const std::string& folder)> enteringFolder;  // called before its entries are read
  std::function<void(const std::string& path)> fileReplaced;      // its content has changed
  std::function<void(uint32_t former, uint32_t id)>
      fontRenewed;  // a new version, in the table, has replaced an old one
  std::function<void(const std::string& path, const std::vector<Font>&)> fontsGone;
};

class Scanner {
 public:
  struct Parts {
    IndexStore& index;
    UserStore& user;
    FontTable& table;
    const ActiveFolder& active;
  };
  Scanner(const Parts& parts, Workgroups workgroups, ScanEvents events);

  // From the next start on.
  void SetWorkgroups(Workgroups workgroups) { workgroups_ = std::move(workgroups); }
  void Start();
  bool IsRunning() const { return running_; }
  bool HasFinishedOnce() const { return finishedOnce_; }
  // Does one step and returns whether there is more to do. A file whose fonts cannot get IDs, because user.db cannot be
  // written, is left out and reported.
  bool Step();
  ScanProgress Progress() const;
  const ScanReport& Report() const { return report_; }  // of the last finished scan

  // Asks the operating system again and updates what has changed. Does nothing during a scan.
  void RefreshSystemFonts();

 private:
  void BeginReading();
  bool ReadNext();
  // Returns true if the file had to be read.
  bool TakeFile(const FoundFile& file);
  bool PutFonts(const IndexedFile& file, uint32_t workgroupID);
  void Drop(const std::string& path);
  void Finish();
  void TakeSystemFiles();
  bool IsLibraryFile(const FoundFile& file) const;
  void StoreInIndex(const IndexedFile& file);
  void NoteStoreProblem(const std::string& path, const StoreError& error);

  Parts parts_;
  Workgroups workgroups_;
  ScanEvents events_;
  FontFileReader reader_;
  std::map<std::string, IndexedFile> known_;                           // by path, all workgroups
  std::map<std::pair<uint64_t, uint64_t>, std::string> libraryFiles_;  // device and inode to path
  std::map<std::string, uint32_t> seen_;  // by path: the workgroup, in the current or last scan
  std::unique_ptr<FolderWalk> walk_;
  std::vector<FoundFile> systemFiles_;
  size_t next_ = 0;
  std::string lastRead_;
  enum class Phase { kWalking, kReading } phase_ = Phase::kWalking;
  bool running_ = false;
  bool finishedOnce_ = false;
  std::vector<ScanProblem> storeProblems_;  // the first of each kind
  ScanReport report_;
};

}  // namespace agent
