// Finds the rows of a table by a number that several rows may have in common. Takes six to eight bytes a row; the owner
// keeps the rows and tells their keys.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace agent {

class RowIndex {
 public:
  // keyOf(row) returns the key of a row that is in the index.
  template <class KeyOf>
  void Insert(uint32_t row, const KeyOf& keyOf) {
    if (next_.size() <= row) next_.resize(row + 1);
    if (count_ == kRowsOfList * heads_.size()) Grow(keyOf);
    Link(row, keyOf(row));
    ++count_;
  }

  void Erase(uint32_t row, uint32_t key) {
    for (uint32_t* at = &heads_[PlaceOf(key)]; *at != 0; at = &next_[*at - 1]) {
      if (*at != row + 1) continue;
      *at = next_[row];
      --count_;
      return;
    }
  }

  // Calls visit(row) for the rows with this key, in no order. It must not change the index.
  template <class KeyOf, class Visit>
  void ForEach(uint32_t key, const KeyOf& keyOf, const Visit& visit) const {
    if (heads_.empty()) return;
    for (uint32_t at = heads_[PlaceOf(key)]; at != 0; at = next_[at - 1]) {
      if (keyOf(at - 1) == key) visit(at - 1);
    }
  }

 private:
  static constexpr size_t kRowsOfList = 2;  // at most, on average

  size_t PlaceOf(uint32_t key) const {
    constexpr uint32_t kSpread = 2654435769u;  // spreads keys that follow each other, and those with equal low bits
    const uint32_t spread = key * kSpread;
    return (spread ^ spread >> 15) & (heads_.size() - 1);
  }
  void Link(uint32_t row, uint32_t key) {
    uint32_t& head = heads_[PlaceOf(key)];
    next_[row] = head;
    head = row + 1;
  }
  template <class KeyOf>
  void Grow(const KeyOf& keyOf) {
    constexpr size_t kFirst = 64;
    const std::vector<uint32_t> old = heads_, oldNext = next_;
    heads_.assign(old.empty() ? kFirst : 2 * old.size(), 0);
    for (const uint32_t head : old) {
      for (uint32_t at = head; at != 0; at = oldNext[at - 1]) Link(at - 1, keyOf(at - 1));
    }
  }

  std::vector<uint32_t> heads_;  // the first row of each list, plus 1; the size is a power of two
  std::vector<uint32_t> next_;   // by row: the next one in its list, plus 1
  size_t count_ = 0;
};

}  // namespace agent
