// Any bytes as a property list, and as instructions to build one: gives a value or a line that says what is wrong. A
// list that can be written reads back equal.
#include <algorithm>
#include <bit>
#include <cstring>
#include <span>

#include "Check.h"
#include "Input.h"
#include "platform/PropertyList.h"
#include "platform/TextEncoding.h"

namespace {

using namespace platform;

// Builds a value from bytes. Each step consumes some.
class Recipe {
 public:
  explicit Recipe(std::string_view bytes) : bytes_(bytes) {}

  Value Make(int depth) {
    switch (Take(1)[0] % (depth > 4 ? 5 : 7)) {
      case 0: return String::FromUTF8(Take(Size()));
      case 1: return Number::FromInteger(std::bit_cast<int64_t>(Bits()));
      case 2: return Number::FromReal(std::bit_cast<double>(Bits()));
      case 3: return Boolean::From(Size() % 2 == 0);
      case 4: {
        const std::string bytes = Take(Size());
        return Data::From(std::as_bytes(std::span<const char>(bytes.data(), bytes.size())));
      }
      case 5: {
        Array array = Array::Create();
        for (size_t count = Size() % 8; count > 0; --count) array.Append(Make(depth + 1));
        return array;
      }
      default: {
        Dictionary dictionary = Dictionary::Create();
        for (size_t count = Size() % 8; count > 0; --count) dictionary.Set(Take(Size() % 8), Make(depth + 1));
        return dictionary;
      }
    }
  }

 private:
  std::string Take(size_t count) {
    std::string taken(bytes_.substr(0, count));
    bytes_.remove_prefix(taken.size());
    taken.resize(std::max<size_t>(taken.size(), 1));
    return taken;
  }
  size_t Size() { return static_cast<unsigned char>(Take(1)[0]); }
  uint64_t Bits() {
    uint64_t bits = 0;
    const std::string bytes = Take(sizeof bits);
    std::memcpy(&bits, bytes.data(), std::min(bytes.size(), sizeof bits));
    return bits;
  }
  std::string_view bytes_;
};

// NaN is not equal to anything, not even to itself.
bool HasNaN(const Value& value) {
  if (value.Is(ValueType::kReal)) return Number(value).Real() != Number(value).Real();
  const Array array(value);
  for (size_t i = 0; i < array.Count(); ++i) {
    if (HasNaN(array.At(i))) return true;
  }
  const Dictionary dictionary(value);
  for (size_t i = 0; i < dictionary.Count(); ++i) {
    if (HasNaN(dictionary.ValueAt(i))) return true;
  }
  return false;
}

void CheckWritten(const Value& value, bool mustBeWritable) {
  const std::string xml = CreateXMLPropertyList(value);
  CHECK(!mustBeWritable || !xml.empty());
  if (xml.empty()) return;
  const PropertyListResult again = ParseXMLPropertyList(xml);
  CHECK(again.error.empty());
  CHECK(again.value.Equals(value) || HasNaN(value));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes = BytesOf(data, size);
  const PropertyListResult read = ParseXMLPropertyList(bytes);
  CHECK(static_cast<bool>(read.value) == read.error.empty());
  CHECK(read.error.find('\n') == std::string::npos);
  if (read.value) CheckWritten(read.value, true);
  CheckWritten(Recipe(bytes).Make(0), false);
  return 0;
}
