// The object behind a Value handle. Internal to the platform library.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include "platform/Value.h"

namespace platform {

struct ArrayContents {
  std::vector<Value> entries;
};

// Searches few keys linearly; from kIndexFrom on keeps an index. A dictionary with one key reserves one entry; the
// second key reserves the entries of a record.
class DictionaryContents {
 public:
  static constexpr size_t kIndexFrom = 40;
  static constexpr size_t kUsualCount = 12;
  static constexpr size_t kAbsent = static_cast<size_t>(-1);
  using Entry = std::pair<std::string, Value>;

  DictionaryContents() = default;
  DictionaryContents(const DictionaryContents& other) : entries_(other.entries_) { Reindex(); }
  DictionaryContents(DictionaryContents&&) = default;
  DictionaryContents& operator=(const DictionaryContents&) = delete;
  DictionaryContents& operator=(DictionaryContents&&) = delete;
  ~DictionaryContents() = default;

  size_t Find(std::string_view key) const noexcept;
  void Set(std::string_view key, const Value& value);
  bool Remove(std::string_view key);
  const std::vector<Entry>& Entries() const { return entries_; }
  std::vector<Entry>& Entries() { return entries_; }

 private:
  struct Hash {
    using is_transparent = void;
    size_t operator()(std::string_view key) const noexcept { return std::hash<std::string_view>()(key); }
  };
  using Index = std::unordered_map<std::string, size_t, Hash, std::equal_to<>>;
  void Reindex();

  std::vector<Entry> entries_;
  std::unique_ptr<Index> index_;  // null while there are few keys
};

class ValueObject {
 public:
  using Contents =
      std::variant<std::string, int64_t, double, bool, std::vector<std::byte>, ArrayContents, DictionaryContents>;

  explicit ValueObject(Contents contents) : contents(std::move(contents)) {}

  void Retain() noexcept { count_.fetch_add(1, std::memory_order_relaxed); }
  void Release() noexcept {
    if (count_.fetch_sub(1, std::memory_order_acq_rel) == 1) Destroy(this);
  }
  ValueType Type() const noexcept { return static_cast<ValueType>(contents.index() + 1); }

  Contents contents;

 private:
  static void Destroy(ValueObject* object) noexcept;
  std::atomic<uint32_t> count_{1};
};

}  // namespace platform
