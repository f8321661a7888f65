#include "platform/ValueObject.h"

namespace platform {

namespace {

// Destroyed containers move their children here, so that deep nesting is destroyed in a loop instead of by recursion.
thread_local std::vector<Value>* sOrphans = nullptr;

void GiveUpChildren(ValueObject& object, std::vector<Value>& orphans) {
  if (auto* array = std::get_if<ArrayContents>(&object.contents)) {
    for (Value& entry : array->entries) orphans.push_back(std::move(entry));
    array->entries.clear();
  } else if (auto* dictionary = std::get_if<DictionaryContents>(&object.contents)) {
    for (auto& entry : dictionary->Entries()) orphans.push_back(std::move(entry.second));
  }
}

}  // namespace

void ValueObject::Destroy(ValueObject* object) noexcept {
  const ValueType type = object->Type();
  if (type != ValueType::kArray && type != ValueType::kDictionary) {
    delete object;
    return;
  }
  if (sOrphans) {
    GiveUpChildren(*object, *sOrphans);
    delete object;
    return;
  }
  std::vector<Value> orphans;
  sOrphans = &orphans;
  GiveUpChildren(*object, orphans);
  delete object;
  while (!orphans.empty()) {
    Value last = std::move(orphans.back());
    orphans.pop_back();
  }
  sOrphans = nullptr;
}

size_t DictionaryContents::Find(std::string_view key) const noexcept {
  if (index_) {
    const auto found = index_->find(key);
    return found == index_->end() ? kAbsent : found->second;
  }
  for (size_t i = 0; i < entries_.size(); ++i) {
    if (entries_[i].first == key) return i;
  }
  return kAbsent;
}

void DictionaryContents::Set(std::string_view key, const Value& value) {
  const size_t at = Find(key);
  if (at != kAbsent) {
    // Destroy the former value last: it may own the text of `key`.
    const Value former = std::exchange(entries_[at].second, value);
    return;
  }
  if (entries_.size() == 1) entries_.reserve(kUsualCount);
  entries_.emplace_back(std::string(key), value);
  if (index_) {
    index_->emplace(entries_.back().first, entries_.size() - 1);
  } else if (entries_.size() >= kIndexFrom) {
    Reindex();
  }
}

bool DictionaryContents::Remove(std::string_view key) {
  const size_t at = Find(key);
  if (at == kAbsent) return false;
  const Entry former = std::move(entries_[at]);
  entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(at));
  if (index_) Reindex();
  return true;
}

void DictionaryContents::Reindex() {
  index_ = nullptr;
  if (entries_.size() < kIndexFrom) return;
  index_ = std::make_unique<Index>();
  for (size_t i = 0; i < entries_.size(); ++i) index_->emplace(entries_[i].first, i);
}

}  // namespace platform
