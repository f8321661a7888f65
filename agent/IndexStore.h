// index.db: what a scan found in each file, so that an unchanged file is not read again. Everything here can be found
// again by another scan; the file may be deleted at any time, and a damaged one is moved aside and made anew.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "agent/Database.h"
#include "agent/FontFile.h"

namespace agent {

// Equal identities mean that a file's content was not touched.
struct FileIdentity {
  uint64_t device = 0;
  uint64_t inode = 0;
  uint64_t size = 0;
  int64_t modified = 0;  // nanoseconds since the epoch

  // Of what the path leads to; false with a line in problem.
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
  // Throws StoreError if no database can be made. If a damaged one was moved aside, report gets a line.
  IndexStore(const std::string& path, const std::function<void(const std::string&)>& report);

  std::vector<IndexedFile> Load();
  void Put(const IndexedFile& file);  // in place of what was known of the path
  void Remove(const std::string& path);

 private:
  void Open();
  std::string path_;
  std::unique_ptr<Database> database_;
};

}  // namespace agent
