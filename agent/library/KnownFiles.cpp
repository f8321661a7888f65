#include "agent/library/KnownFiles.h"

#include <vector>

namespace agent {

KnownFile* KnownFiles::Find(std::string_view path) {
  const std::optional<SharedText> known = SharedText::Find(path);
  KnownFile* found = nullptr;
  if (!known) return found;
  const auto keyOf = [this](uint32_t row) { return rows_[row].path.Number(); };
  byPath_.ForEach(known->Number(), keyOf, [&](uint32_t row) { found = &rows_[row]; });
  return found;
}

void KnownFiles::Put(const KnownFile& file) {
  if (KnownFile* known = Find(file.path)) {
    *known = file;
    return;
  }
  byPath_.Insert(rows_.Add(file), [this](uint32_t other) { return rows_[other].path.Number(); });
}

void KnownFiles::Remove(SharedText path) {
  std::vector<uint32_t> rows;
  const auto keyOf = [this](uint32_t row) { return rows_[row].path.Number(); };
  byPath_.ForEach(path.Number(), keyOf, [&](uint32_t row) { rows.push_back(row); });
  for (const uint32_t row : rows) {
    byPath_.Erase(row, path.Number());
    rows_.Remove(row);
  }
}

}  // namespace agent
