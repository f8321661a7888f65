#include "platform/Value.h"

#include <cmath>
#include <limits>

#include "platform/TextEncoding.h"
#include "platform/ValueObject.h"

namespace platform {

namespace {

template <class T>
const T* ContentsOf(ValueRef object) noexcept {
  return object ? std::get_if<T>(&object->contents) : nullptr;
}

template <class T>
T* ChangeableContentsOf(ValueRef object) noexcept {
  return object ? std::get_if<T>(&object->contents) : nullptr;
}

bool EqualContents(const Value& a, const Value& b, int depth);

bool EqualArrays(const ArrayContents& a, const ArrayContents& b, int depth) {
  if (a.entries.size() != b.entries.size()) return false;
  for (size_t i = 0; i < a.entries.size(); ++i) {
    if (!EqualContents(a.entries[i], b.entries[i], depth)) return false;
  }
  return true;
}

bool EqualDictionaries(const DictionaryContents& a, const DictionaryContents& b, int depth) {
  if (a.Entries().size() != b.Entries().size()) return false;
  for (const auto& [key, value] : a.Entries()) {
    const size_t at = b.Find(key);
    if (at == DictionaryContents::kAbsent || !EqualContents(value, b.Entries()[at].second, depth)) return false;
  }
  return true;
}

// Values nested deeper count as different; no readable property list nests so deep.
constexpr int kDeepestComparison = 1000;

bool EqualContents(const Value& a, const Value& b, int depth) {
  if (a == b) return true;
  if (!a || !b || a.Type() != b.Type() || depth > kDeepestComparison) return false;
  const auto& left = a.Ref()->contents;
  const auto& right = b.Ref()->contents;
  if (const auto* array = std::get_if<ArrayContents>(&left)) {
    return EqualArrays(*array, std::get<ArrayContents>(right), depth + 1);
  }
  if (const auto* dictionary = std::get_if<DictionaryContents>(&left)) {
    return EqualDictionaries(*dictionary, std::get<DictionaryContents>(right), depth + 1);
  }
  if (const auto* text = std::get_if<std::string>(&left)) return *text == std::get<std::string>(right);
  if (const auto* integer = std::get_if<int64_t>(&left)) return *integer == std::get<int64_t>(right);
  if (const auto* real = std::get_if<double>(&left)) return *real == std::get<double>(right);
  if (const auto* boolean = std::get_if<bool>(&left)) return *boolean == std::get<bool>(right);
  return std::get<std::vector<std::byte>>(left) == std::get<std::vector<std::byte>>(right);
}

Value Make(ValueObject::Contents contents) { return Value::Adopt(new ValueObject(std::move(contents))); }

}  // namespace

Value::Value(const Value& other) noexcept : object_(other.object_) {
  if (object_) object_->Retain();
}

Value::Value(Value&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}

Value& Value::operator=(const Value& other) noexcept {
  Value shared(other);
  std::swap(object_, shared.object_);
  return *this;
}

Value& Value::operator=(Value&& other) noexcept {
  if (this == &other) return *this;
  const ValueRef former = std::exchange(object_, std::exchange(other.object_, nullptr));
  if (former) former->Release();
  return *this;
}

Value::~Value() {
  if (object_) object_->Release();
}

Value Value::Retain(ValueRef borrowed) noexcept {
  if (borrowed) borrowed->Retain();
  return Value(borrowed);
}

Value Value::Adopt(ValueRef owned) noexcept { return Value(owned); }

ValueRef Value::Release() noexcept { return std::exchange(object_, nullptr); }

ValueType Value::Type() const noexcept { return object_ ? object_->Type() : ValueType::kNull; }

bool Value::Equals(const Value& other) const { return EqualContents(*this, other, 0); }

String::String(const Value& value) noexcept : Value(value.Is(ValueType::kString) ? value : Value()) {}

String String::FromUTF8(std::string_view text) {
  if (!IsValidUTF8(text)) return String();
  return String(Make(std::string(text)));
}

String String::FromUTF16(std::u16string_view text) {
  const auto utf8 = UTF16ToUTF8(text);
  return utf8 ? String(Make(*utf8)) : String();
}

std::string_view String::View() const noexcept {
  const auto* text = ContentsOf<std::string>(object_);
  return text ? std::string_view(*text) : std::string_view();
}

const char* String::CString() const noexcept {
  const auto* text = ContentsOf<std::string>(object_);
  return text ? text->c_str() : "";
}

size_t String::Length() const {
  size_t units = 0;
  for (const char c : View()) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0) != 0x80) units += byte >= 0xF0 ? 2 : 1;
  }
  return units;
}

Number::Number(const Value& value) noexcept
    : Value(value.Is(ValueType::kInteger) || value.Is(ValueType::kReal) ? value : Value()) {}
Number Number::FromInteger(int64_t value) { return Number(Make(value)); }
Number Number::FromReal(double value) { return Number(Make(value)); }

int64_t Number::Integer() const noexcept {
  if (const auto* integer = ContentsOf<int64_t>(object_)) return *integer;
  const auto* real = ContentsOf<double>(object_);
  if (!real || std::isnan(*real)) return 0;
  if (*real >= 9223372036854775808.0) return std::numeric_limits<int64_t>::max();
  if (*real < -9223372036854775808.0) return std::numeric_limits<int64_t>::min();
  return static_cast<int64_t>(*real);
}

double Number::Real() const noexcept {
  if (const auto* real = ContentsOf<double>(object_)) return *real;
  const auto* integer = ContentsOf<int64_t>(object_);
  return integer ? static_cast<double>(*integer) : 0.0;
}

Boolean::Boolean(const Value& value) noexcept : Value(value.Is(ValueType::kBoolean) ? value : Value()) {}
Boolean Boolean::From(bool value) { return Boolean(Make(value)); }
bool Boolean::IsTrue() const noexcept {
  const auto* boolean = ContentsOf<bool>(object_);
  return boolean && *boolean;
}

Data::Data(const Value& value) noexcept : Value(value.Is(ValueType::kData) ? value : Value()) {}
Data Data::From(std::span<const std::byte> bytes) {
  return Data(Make(std::vector<std::byte>(bytes.begin(), bytes.end())));
}
std::span<const std::byte> Data::Bytes() const noexcept {
  const auto* bytes = ContentsOf<std::vector<std::byte>>(object_);
  return bytes ? std::span<const std::byte>(*bytes) : std::span<const std::byte>();
}

Array::Array(const Value& value) noexcept : Value(value.Is(ValueType::kArray) ? value : Value()) {}
Array Array::Create() { return Array(Make(ArrayContents{})); }

size_t Array::Count() const noexcept {
  const auto* array = ContentsOf<ArrayContents>(object_);
  return array ? array->entries.size() : 0;
}

Value Array::At(size_t index) const noexcept {
  const auto* array = ContentsOf<ArrayContents>(object_);
  return array && index < array->entries.size() ? array->entries[index] : Value();
}

void Array::Append(const Value& entry) {
  if (auto* array = ChangeableContentsOf<ArrayContents>(object_)) array->entries.push_back(entry);
}

void Array::Set(size_t index, const Value& entry) {
  auto* array = ChangeableContentsOf<ArrayContents>(object_);
  if (array && index < array->entries.size()) const Value former = std::exchange(array->entries[index], entry);
}

void Array::Insert(size_t index, const Value& entry) {
  auto* array = ChangeableContentsOf<ArrayContents>(object_);
  if (array && index <= array->entries.size()) {
    array->entries.insert(array->entries.begin() + static_cast<std::ptrdiff_t>(index), entry);
  }
}

void Array::RemoveAt(size_t index) {
  auto* array = ChangeableContentsOf<ArrayContents>(object_);
  if (!array || index >= array->entries.size()) return;
  const Value former = std::move(array->entries[index]);
  array->entries.erase(array->entries.begin() + static_cast<std::ptrdiff_t>(index));
}

void Array::Clear() {
  if (auto* array = ChangeableContentsOf<ArrayContents>(object_)) {
    const std::vector<Value> former = std::exchange(array->entries, {});
  }
}

Array Array::Copy() const {
  const auto* array = ContentsOf<ArrayContents>(object_);
  return array ? Array(Make(*array)) : Array();
}

}  // namespace platform
