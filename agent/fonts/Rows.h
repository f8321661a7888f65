// The rows of a table, in blocks, so that they stay where they are and take hardly more than their size. A removed
// row's place is used again.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace agent {

// Row{} is what an unused place has.
template <class Row>
class Rows {
 public:
  // Returns the number of the row.
  uint32_t Add(const Row& row) {
    if (free_.empty()) {
      if (end_ == kOfBlock * blocks_.size()) blocks_.push_back(std::make_unique<Row[]>(kOfBlock));
      free_.push_back(end_++);
    }
    const uint32_t number = free_.back();
    free_.pop_back();
    (*this)[number] = row;
    return number;
  }
  void Remove(uint32_t number) {
    (*this)[number] = Row{};
    free_.push_back(number);
  }
  Row& operator[](uint32_t number) { return blocks_[number / kOfBlock][number % kOfBlock]; }
  const Row& operator[](uint32_t number) const { return blocks_[number / kOfBlock][number % kOfBlock]; }

  size_t Count() const { return end_ - free_.size(); }
  // All places that were ever used, also those that are unused now.
  uint32_t End() const { return end_; }

 private:
  static constexpr uint32_t kOfBlock = 256;
  std::vector<std::unique_ptr<Row[]>> blocks_;
  std::vector<uint32_t> free_;
  uint32_t end_ = 0;
};

}  // namespace agent
