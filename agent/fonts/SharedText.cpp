#include "agent/fonts/SharedText.h"

#include <array>
#include <atomic>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <vector>

namespace agent {

namespace {

// The texts lie one after the other in blocks, each after its length: one byte, or 255 and four bytes. The number of a
// text is its block and its place there. A text that is longer than a block has a block of its own.
class TextPool {
 public:
  static TextPool& Shared() {
    static TextPool sPool;
    return sPool;
  }

  uint32_t NumberOf(std::string_view text) {
    const std::lock_guard lock(mutex_);
    const uint32_t known = Look(text);
    if (known != 0) return known;
    if (8 * (count_ + 1) > 7 * slots_.size()) Grow();
    const uint32_t number = Append(text);
    Insert(number);
    return number;
  }

  uint32_t Find(std::string_view text) const {
    const std::lock_guard lock(mutex_);
    return Look(text);
  }

  // Needs no lock: a text does not change, and its number has come from a thread that has stored it.
  std::string_view View(uint32_t number) const {
    const char* at = blocks_[number / kBlockSize].load(std::memory_order_acquire) + number % kBlockSize;
    const auto first = static_cast<uint8_t>(*at++);
    if (first != kLong) return {at, first};
    uint32_t length = 0;
    std::memcpy(&length, at, sizeof length);
    return {at + sizeof length, length};
  }

 private:
  static constexpr uint32_t kBlockSize = 1 << 16, kBlocks = 1 << 16;
  static constexpr uint8_t kLong = 255;

  size_t FirstSlot(std::string_view text) const { return std::hash<std::string_view>()(text) % slots_.size(); }
  size_t SlotAfter(size_t slot) const { return slot + 1 == slots_.size() ? 0 : slot + 1; }

  // Returns 0 for an unknown text.
  uint32_t Look(std::string_view text) const {
    if (slots_.empty()) return 0;
    for (size_t slot = FirstSlot(text); slots_[slot] != 0; slot = SlotAfter(slot)) {
      if (View(slots_[slot]) == text) return slots_[slot];
    }
    return 0;
  }

  void Insert(uint32_t number) {
    size_t slot = FirstSlot(View(number));
    while (slots_[slot] != 0) slot = SlotAfter(slot);
    slots_[slot] = number;
    ++count_;
  }

  void Grow() {
    constexpr size_t kFirst = 1024;
    const std::vector<uint32_t> old = std::move(slots_);
    slots_.assign(old.empty() ? kFirst : old.size() * 3 / 2, 0);
    count_ = 0;
    for (const uint32_t number : old) {
      if (number != 0) Insert(number);
    }
  }

  uint32_t Append(std::string_view text) {
    const size_t size = text.size() + (text.size() < kLong ? 1 : 1 + sizeof(uint32_t));
    if (text.size() > UINT32_MAX) throw std::bad_alloc();
    if (used_ + size > kBlockSize) {
      if (++block_ == kBlocks) throw std::bad_alloc();
      storage_.push_back(std::make_unique_for_overwrite<char[]>(std::max<size_t>(size, kBlockSize)));
      blocks_[block_].store(storage_.back().get(), std::memory_order_release);
      used_ = 0;
    }
    char* at = storage_.back().get() + used_;
    const uint32_t number = block_ * kBlockSize + static_cast<uint32_t>(used_);
    if (text.size() < kLong) {
      *at++ = static_cast<char>(text.size());
    } else {
      *at++ = static_cast<char>(kLong);
      const auto length = static_cast<uint32_t>(text.size());
      std::memcpy(at, &length, sizeof length);
      at += sizeof length;
    }
    std::memcpy(at, text.data(), text.size());
    used_ += size;
    return number;
  }

  mutable std::mutex mutex_;
  std::vector<std::unique_ptr<char[]>> storage_;
  std::array<std::atomic<const char*>, kBlocks> blocks_{};
  uint32_t block_ = 0;           // block 0 has no texts, because the number 0 is the empty text
  size_t used_ = kBlockSize;     // of the last block
  std::vector<uint32_t> slots_;  // a hash table of numbers; 0 is a free place
  size_t count_ = 0;
};

}  // namespace

SharedText::SharedText(std::string_view text) : number_(text.empty() ? 0 : TextPool::Shared().NumberOf(text)) {}

std::optional<SharedText> SharedText::Find(std::string_view text) {
  SharedText found;
  if (!text.empty() && (found.number_ = TextPool::Shared().Find(text)) == 0) return std::nullopt;
  return found;
}

std::string_view SharedText::View() const {
  return number_ == 0 ? std::string_view() : TextPool::Shared().View(number_);
}

}  // namespace agent
