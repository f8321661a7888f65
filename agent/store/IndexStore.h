// index.db: what a scan found in each file, so that unchanged files are not read again. It can be created again by a
// scan, so the file may be deleted at any time. A damaged one is renamed and created anew.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "agent/fonts/FontFile.h"
#include "agent/store/Database.h"

namespace agent {

// If identities are equal, the file's content has not changed.
struct FileIdentity {
  uint64_t device = 0;
  uint64_t inode = 0;
  uint64_t size = 0;
  int64_t modified = 0;  // nanoseconds since the epoch

  // Reads the identity of the file at the path. Returns false with a line in `problem`.
  static bool Of(const std::string& path, FileIdentity& identity, std::string& problem);
  bool IsSameFile(const FileIdentity& other) const { return device == other.device && inode == other.inode; }
  bool operator==(const FileIdentity&) const = default;
};

struct IndexedFile {
  std::string path;
  FileIdentity identity;
  FontFileContent content;
};

class IndexStore {
 public:
  // Throws StoreError if no database can be created. `report` gets a line if a damaged one was renamed.
  IndexStore(const std::string& path, const std::function<void(const std::string&)>& report);

  std::vector<IndexedFile> Load();
  void Put(const IndexedFile& file);  // replaces the entry of the path
  void Remove(const std::string& path);

 private:
  void Open();
  std::string path_;
  std::unique_ptr<Database> database_;
};

}  // namespace agent
