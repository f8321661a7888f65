// index.db: what a scan found in each file, so that unchanged files are not read again. It can be created again by a
// scan, so the file may be deleted at any time. A damaged one is renamed and created anew.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "agent/fonts/FontFile.h"
#include "agent/store/Database.h"

struct stat;

namespace agent {

// If identities are equal, the file's content has not changed.
struct FileIdentity {
  uint64_t device = 0;
  uint64_t inode = 0;
  uint64_t size = 0;
  int64_t modified = 0;  // nanoseconds since the epoch

  // Reads the identity of the file at the path. Returns false with a line in `problem`.
  static bool Of(const std::string& path, FileIdentity& identity, std::string& problem);
  static FileIdentity Of(const struct stat& info);
  bool IsSameFile(const FileIdentity& other) const { return device == other.device && inode == other.inode; }
  bool operator==(const FileIdentity&) const = default;
};

// The number of a face in user.db.
struct FontNumber {
  uint32_t id = 0;
  // The ID of the older version whose file this one replaced, if any. Its sets and lasting activations are those of the
  // new ID now. Not in the index.
  uint32_t former = 0;
  int64_t added = 0;  // to the library, in seconds since 1970; 0 if unknown
  uint32_t familyID = 0;
};

struct IndexedFile {
  std::string path;
  FileIdentity identity;
  FontFileContent content;
  std::vector<FontNumber> numbers;  // of the faces
};

class IndexStore {
 public:
  // Throws StoreError if no database can be created. `report` gets a line if a damaged one was renamed.
  IndexStore(const std::string& path, const std::function<void(const std::string&)>& report);

  // Calls visit for each file. Files after a damaged place are lost, as if they had never been read.
  void Load(const std::function<void(IndexedFile&& file)>& visit);
  // Replaces the entries of these paths, and removes the others, all or none. `revision` is that of user.db, where the
  // numbers are from: a start with another revision does not use them.
  void Change(const std::vector<IndexedFile>& put, const std::vector<std::string>& removed, int64_t revision);
  void ReleaseMemory() { database_->ReleaseMemory(); }
  int64_t Revision() const { return revision_; }

 private:
  void Open();
  void OpenIn(Database::Place place);
  void Replace(const StoreError& damage);
  std::string path_;
  std::function<void(const std::string&)> report_;
  std::unique_ptr<Database> database_;
  int64_t revision_ = 0;
};

}  // namespace agent
