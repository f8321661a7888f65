#include "platform/ValueObject.h"

namespace platform {

namespace {

DictionaryContents* ContentsOf(ValueRef object) noexcept {
  return object ? std::get_if<DictionaryContents>(&object->contents) : nullptr;
}

}  // namespace

Dictionary::Dictionary(const Value& value) noexcept : Value(value.Is(ValueType::kDictionary) ? value : Value()) {}

Dictionary Dictionary::Create() { return Dictionary(Value::Adopt(new ValueObject(DictionaryContents()))); }

size_t Dictionary::Count() const noexcept {
  const auto* contents = ContentsOf(object_);
  return contents ? contents->Entries().size() : 0;
}

bool Dictionary::Contains(std::string_view key) const noexcept {
  const auto* contents = ContentsOf(object_);
  return contents && contents->Find(key) != DictionaryContents::kAbsent;
}

Value Dictionary::Get(std::string_view key) const noexcept {
  const auto* contents = ContentsOf(object_);
  if (!contents) return Value();
  const size_t at = contents->Find(key);
  return at == DictionaryContents::kAbsent ? Value() : contents->Entries()[at].second;
}

void Dictionary::Set(std::string_view key, const Value& value) {
  auto* contents = ContentsOf(object_);
  if (!contents) return;
  if (value) {
    contents->Set(key, value);
  } else {
    contents->Remove(key);
  }
}

void Dictionary::Set(std::string_view key, std::string_view text) {
  const String value = String::FromUTF8(text);
  if (value) Set(key, Value(value));
}

bool Dictionary::Remove(std::string_view key) {
  auto* contents = ContentsOf(object_);
  return contents && contents->Remove(key);
}

std::string_view Dictionary::KeyAt(size_t index) const noexcept {
  const auto* contents = ContentsOf(object_);
  return contents && index < contents->Entries().size() ? std::string_view(contents->Entries()[index].first)
                                                        : std::string_view();
}

Value Dictionary::ValueAt(size_t index) const noexcept {
  const auto* contents = ContentsOf(object_);
  return contents && index < contents->Entries().size() ? contents->Entries()[index].second : Value();
}

std::vector<std::string> Dictionary::Keys() const {
  std::vector<std::string> keys;
  if (const auto* contents = ContentsOf(object_)) {
    for (const auto& entry : contents->Entries()) keys.push_back(entry.first);
  }
  return keys;
}

String Dictionary::GetString(std::string_view key) const noexcept { return String(Get(key)); }
Array Dictionary::GetArray(std::string_view key) const noexcept { return Array(Get(key)); }
Dictionary Dictionary::GetDictionary(std::string_view key) const noexcept { return Dictionary(Get(key)); }

int64_t Dictionary::GetInteger(std::string_view key, int64_t otherwise) const noexcept {
  const Number number(Get(key));
  return number ? number.Integer() : otherwise;
}

bool Dictionary::GetBoolean(std::string_view key, bool otherwise) const noexcept {
  const Boolean boolean(Get(key));
  return boolean ? boolean.IsTrue() : otherwise;
}

Dictionary Dictionary::Copy() const {
  const auto* contents = ContentsOf(object_);
  return contents ? Dictionary(Value::Adopt(new ValueObject(*contents))) : Dictionary();
}

}  // namespace platform
