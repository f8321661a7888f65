// The files of the last scan, without their fonts, which are in the table of fonts. Takes some 60 bytes a file besides its
// path.
#pragma once

#include <cstdint>
#include <deque>
#include <string_view>
#include <vector>

#include "agent/fonts/FontFile.h"
#include "agent/fonts/RowIndex.h"
#include "agent/fonts/SharedText.h"
#include "agent/store/IndexStore.h"

namespace agent {

struct KnownFile {
  SharedText path;
  SharedText problem;  // one line; empty if there is none
  FileIdentity identity;
  uint32_t workgroupID = 0;
  FontVerdict verdict = FontVerdict::kNotAFont;
  bool isSeen = false;  // by the current or last scan
};

// Use on one thread only.
class KnownFiles {
 public:
  // Null if unknown. The pointer is valid until the file is removed.
  KnownFile* Find(std::string_view path);
  void Put(const KnownFile& file);  // replaces that of the path
  void Remove(SharedText path);
  // Calls visit(KnownFile&) for each file, in no order. It must not put or remove files.
  template <class Visit>
  void ForEach(const Visit& visit) {
    for (KnownFile& file : rows_) {
      if (!file.path.empty()) visit(file);
    }
  }

 private:
  std::deque<KnownFile> rows_;  // without a path: free
  std::vector<uint32_t> free_;
  RowIndex byPath_;
};

}  // namespace agent
