#include "host/Pieces.h"

namespace host {

void Pieces::AddBytes(std::string_view bytes) {
  // The bytes of a piece precede its range.
  if (list_.empty() || list_.back().begin != list_.back().end) list_.emplace_back();
  list_.back().bytes += bytes;
  size_ += bytes.size();
}

void Pieces::AddRange(uint64_t begin, uint64_t end) {
  if (begin == end) return;
  if (list_.empty() || list_.back().begin != list_.back().end) list_.emplace_back();
  list_.back().begin = begin;
  list_.back().end = end;
  size_ += end - begin;
}

void Pieces::Add(const Pieces& more) {
  for (const platform::FilePiece& piece : more.list_) {
    AddBytes(piece.bytes);
    AddRange(piece.begin, piece.end);
  }
}

void Pieces::Replace(uint64_t begin, uint64_t end, std::string_view bytes) {
  for (auto piece = list_.begin(); piece != list_.end(); ++piece) {
    if (piece->begin > begin || piece->end < end) continue;
    const uint64_t rest = piece->end;
    piece->end = begin;
    list_.insert(piece + 1, {std::string(bytes), end, rest});
    size_ += bytes.size() - (end - begin);
    return;
  }
}

std::string Pieces::Join(std::string_view old) const {
  std::string joined;
  for (const platform::FilePiece& piece : list_) {
    joined += piece.bytes;
    joined += old.substr(piece.begin, piece.end - piece.begin);
  }
  return joined;
}

}  // namespace host
