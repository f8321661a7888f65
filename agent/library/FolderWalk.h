// Walks through folders and their subfolders, one folder per step, and collects their regular files.
//
// A folder or file that is reached twice, through links or because given folders overlap, counts once. So loops end. A given
// folder below another one is walked for its own workgroup.
#pragma once

#include <deque>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "agent/fonts/Workgroup.h"
#include "agent/store/IndexStore.h"

namespace agent {

struct ScanProblem {
  std::string path;
  std::string message;
};

struct FoundFile {
  std::string path;
  FileIdentity identity;
  uint32_t workgroupID = kSystemFontsID;
};

class FolderWalk {
 public:
  // Skips the excluded folder wherever it is found; it need not exist.
  FolderWalk(const Workgroups& workgroups, const std::string& excluded);

  bool IsDone() const { return waiting_.empty(); }
  // The folder that the next step reads; empty at the end.
  std::string Next() const { return waiting_.empty() ? "" : waiting_.front().path; }
  // Reads the next folder and returns its name, or an empty string at the end. Entries are sorted by name.
  std::string Step();

  const std::vector<FoundFile>& Files() const { return files_; }
  const std::vector<ScanProblem>& Problems() const { return problems_; }

 private:
  struct Folder {
    std::string path;
    uint32_t workgroupID;
  };
  void Take(const std::string& path, uint32_t workgroupID, bool isGiven);
  std::deque<Folder> waiting_;
  std::set<std::pair<uint64_t, uint64_t>> visited_;
  std::vector<FoundFile> files_;
  std::vector<ScanProblem> problems_;
};

}  // namespace agent
