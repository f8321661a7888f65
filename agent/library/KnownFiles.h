// The files of the last scan, without their fonts, which are in the table of fonts. Takes some 60 bytes a file besides
// its path.
#pragma once

#include <cstdint>
#include <string_view>

#include "agent/fonts/FontFile.h"
#include "agent/fonts/RowIndex.h"
#include "agent/fonts/Rows.h"
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
    for (uint32_t row = 0; row < rows_.End(); ++row) {
      if (!rows_[row].path.empty()) visit(rows_[row]);
    }
  }

 private:
  Rows<KnownFile> rows_;  // unused ones have no path
  RowIndex byPath_;
};

}  // namespace agent
