// Keeps the font table up to date with the library folders and with the fonts that the operating system has active by
// itself.
//
// A scan runs in small steps, so that the loop can answer requests in between. It walks the folders, has new and
// changed files read by threads of its own, numbers and stores what they found, some files at a time, and then removes
// files that are gone. The index stores what was read. The workgroup of system fonts contains the files that the
// operating system's font service lists, except our own links and files of the library.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "agent/activation/ActiveFolder.h"
#include "agent/fonts/FontFile.h"
#include "agent/fonts/FontTable.h"
#include "agent/library/FolderWalk.h"
#include "agent/library/FontReaders.h"
#include "agent/library/KnownFiles.h"
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
  std::function<void()> canContinue;  // after a step that had to wait; called on another thread, and must not throw
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
  bool IsRunning() const { return phase_ != Phase::kIdle; }
  bool HasFinishedOnce() const { return finishedOnce_; }
  enum class Outcome { kMore, kMustWait, kFinished };
  // Does one step. After kMustWait, the next one is due when canContinue is called; before, it does nothing. A file
  // whose fonts cannot get IDs, because user.db cannot be written, is left out and reported.
  Outcome Step();
  ScanProgress Progress() const;
  const ScanReport& Report() const { return report_; }  // of the last finished scan

  // Asks the operating system again and updates what has changed. Does nothing during a scan.
  void RefreshSystemFonts();

 private:
  // A file that was given to the readers.
  struct Reading {
    FoundFile file;
    bool isReplaced;
  };
  using Files = std::vector<IndexedFile>;

  void LoadIndex();
  bool Number(Files& files);
  void BeginReading();
  Outcome ReadNext();
  void AskAhead();
  void TakeFile(const FoundFile& file);
  size_t StoreAnswers();
  void Store(Files files, const std::vector<Reading>& readings);
  void PutFonts(const IndexedFile& file, uint32_t workgroupID);
  void ChangeIndex(const Files& put, const std::vector<std::string>& removed);
  void NoteStoreProblem(const std::string& path, const StoreError& error);
  void BeginDropping();
  bool DropSome();
  void Finish();
  void TakeSystemFiles();

  Parts parts_;
  Workgroups workgroups_;
  ScanEvents events_;
  KnownFiles known_;
  std::unique_ptr<FolderWalk> walk_;
  std::unique_ptr<FontReaders> readers_;  // during a scan
  std::deque<Reading> readings_;          // in the order of their answers
  std::vector<FoundFile> systemFiles_;    // that are not files of a library
  std::vector<SharedText> vanished_;
  size_t next_ = 0;
  std::string lastRead_;
  enum class Phase { kIdle, kWalking, kReading, kDropping } phase_ = Phase::kIdle;
  bool finishedOnce_ = false;
  std::vector<ScanProblem> storeProblems_;  // the first of each kind
  ScanReport report_;
};

}  // namespace agent
