// Property-list values: strings, integers, reals, booleans, data, arrays and dictionaries.
//
// A Value is a handle of pointer size. Copying a handle shares the value: a change made through one
// handle shows through all. A default-made handle is null; every read through a null handle gives
// the neutral answer (empty, 0, false, null) and every write through one does nothing.
// Counting is atomic, contents are not guarded: a value is used by one thread at a time.
//
// ValueRef is the plain pointer by which values cross a library boundary. The rule there is the
// platform's: what a function named Create or Copy returns, or puts into an out parameter, belongs to
// the caller (Value::Adopt takes it); every other ValueRef is borrowed (Value::Retain shares it).
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Export.h"

namespace platform {

class ValueObject;
using ValueRef = ValueObject*;

enum class ValueType : uint8_t { kNull, kString, kInteger, kReal, kBoolean, kData, kArray, kDictionary };

class PLATFORM_API Value {
 public:
  Value() noexcept = default;
  Value(const Value& other) noexcept;
  Value(Value&& other) noexcept;
  Value& operator=(const Value& other) noexcept;
  Value& operator=(Value&& other) noexcept;
  ~Value();

  // Shares a borrowed reference; null gives a null handle.
  static Value Retain(ValueRef borrowed) noexcept;
  // Takes over a reference that the caller owns; null gives a null handle.
  static Value Adopt(ValueRef owned) noexcept;

  // The borrowed reference, valid as long as a handle holds the value.
  ValueRef Ref() const noexcept { return object_; }
  // Gives the handle's reference to the caller and leaves the handle null.
  ValueRef Release() noexcept;

  ValueType Type() const noexcept;
  explicit operator bool() const noexcept { return object_ != nullptr; }
  bool Is(ValueType type) const noexcept { return Type() == type; }

  // Whether both handles share one value.
  friend bool operator==(const Value& a, const Value& b) noexcept { return a.object_ == b.object_; }
  // Whether the contents are equal: same type, same text, number or bytes, same entries in arrays, same
  // keys with equal values in dictionaries whatever their order. Two null handles are equal.
  bool Equals(const Value& other) const;

 protected:
  explicit Value(ValueRef owned) noexcept : object_(owned) {}
  ValueRef object_ = nullptr;
};

// Each typed handle can be made from any Value; it is null if the value is of another type.

class PLATFORM_API String : public Value {
 public:
  String() noexcept = default;
  explicit String(const Value& value) noexcept;
  // From valid UTF-8; malformed text gives a null handle.
  static String FromUTF8(std::string_view text);
  // From UTF-16 units; a lone surrogate gives a null handle.
  static String FromUTF16(std::u16string_view text);

  // The text as UTF-8, valid as long as the value is unchanged and held; empty for null.
  std::string_view View() const noexcept;
  std::string Text() const { return std::string(View()); }
  // Text and a terminating zero, never null.
  const char* CString() const noexcept;
  bool IsEmpty() const noexcept { return View().empty(); }
  // Length in UTF-16 units, as the platform counts characters.
  size_t Length() const;
};

class PLATFORM_API Number : public Value {
 public:
  Number() noexcept = default;
  explicit Number(const Value& value) noexcept;  // integer or real; a boolean is no number
  static Number FromInteger(int64_t value);
  static Number FromReal(double value);
  int64_t Integer() const noexcept;  // a real is cut towards zero and clamped to the range
  double Real() const noexcept;
};

class PLATFORM_API Boolean : public Value {
 public:
  Boolean() noexcept = default;
  explicit Boolean(const Value& value) noexcept;
  static Boolean From(bool value);
  bool IsTrue() const noexcept;
};

class PLATFORM_API Data : public Value {
 public:
  Data() noexcept = default;
  explicit Data(const Value& value) noexcept;
  static Data From(std::span<const std::byte> bytes);
  std::span<const std::byte> Bytes() const noexcept;
};

class PLATFORM_API Array : public Value {
 public:
  Array() noexcept = default;
  explicit Array(const Value& value) noexcept;
  static Array Create();

  size_t Count() const noexcept;
  Value At(size_t index) const noexcept;  // null beyond the end; an entry may itself be null
  void Append(const Value& entry);
  void Set(size_t index, const Value& entry);     // beyond the end: nothing
  void Insert(size_t index, const Value& entry);  // index up to Count()
  void RemoveAt(size_t index);
  void Clear();
  // A new array that shares the entries.
  Array Copy() const;
};

class PLATFORM_API Dictionary : public Value {
 public:
  Dictionary() noexcept = default;
  explicit Dictionary(const Value& value) noexcept;
  static Dictionary Create();

  size_t Count() const noexcept;
  bool Contains(std::string_view key) const noexcept;
  Value Get(std::string_view key) const noexcept;  // null if absent
  // Replaces or adds; a null value removes the key. An existing key keeps its place in the order.
  void Set(std::string_view key, const Value& value);
  void Set(std::string_view key, std::string_view text);  // as a string; malformed UTF-8 does nothing
  bool Remove(std::string_view key);

  // Entries in the order of insertion; index below Count().
  std::string_view KeyAt(size_t index) const noexcept;
  Value ValueAt(size_t index) const noexcept;
  std::vector<std::string> Keys() const;

  // Typed reads: a null handle, or the given default, if the key is absent or of another type.
  String GetString(std::string_view key) const noexcept;
  Array GetArray(std::string_view key) const noexcept;
  Dictionary GetDictionary(std::string_view key) const noexcept;
  int64_t GetInteger(std::string_view key, int64_t otherwise = 0) const noexcept;
  bool GetBoolean(std::string_view key, bool otherwise = false) const noexcept;

  // A new dictionary that shares the values.
  Dictionary Copy() const;
};

static_assert(sizeof(Value) == sizeof(void*));

}  // namespace platform
