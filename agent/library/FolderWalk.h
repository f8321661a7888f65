// Walks through folders and their subfolders, a part of a folder per step, and collects their regular files.
//
// A folder or file that is reached twice, through links or because given folders overlap, counts once. So loops end. A
// given folder below another one is walked for its own workgroup.
#pragma once

#include <dirent.h>
#include <sys/stat.h>

#include <deque>
#include <memory>
#include <string>
#include <unordered_set>
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

  bool IsDone() const { return waiting_.empty() && next_ == names_.size(); }
  // The folder that the next step opens; empty if it goes on with the last one, or at the end.
  std::string Next() const { return waiting_.empty() || next_ < names_.size() ? "" : waiting_.front().path; }
  // Reads the next part of a folder, or opens the next folder. Returns its name. Entries are sorted by name.
  std::string Step();

  const std::vector<FoundFile>& Files() const { return files_; }
  const std::vector<ScanProblem>& Problems() const { return problems_; }

 private:
  struct Folder {
    std::string path;
    uint32_t workgroupID = 0;
  };
  using Identity = std::pair<uint64_t, uint64_t>;  // device and inode
  struct HashOfIdentity {
    size_t operator()(const Identity& identity) const { return identity.first * 31 + identity.second; }
  };
  struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
  };

  void Take(std::string path, uint32_t workgroupID, const struct stat& info);
  bool IsNew(const struct stat& info);
  void NoteUnreachable(int folder, const char* name, const std::string& path);
  void Open();

  std::deque<Folder> waiting_;
  Folder folder_;  // the one that is being read
  std::unique_ptr<DIR, CloseFolder> listing_;
  std::vector<std::string> names_;  // its entries
  size_t next_ = 0;                 // of the entries
  std::unordered_set<Identity, HashOfIdentity> visited_;
  std::vector<FoundFile> files_;
  std::vector<ScanProblem> problems_;
};

}  // namespace agent
