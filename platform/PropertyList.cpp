#include "platform/PropertyList.h"

#include <plist/plist.h>

#include <cstdlib>
#include <memory>

#include "platform/TextEncoding.h"

namespace platform {

namespace {

// Deeper nesting is refused before the parser, which recurses, sees it.
constexpr int kDeepestNesting = 256;

struct NodeFree {
  void operator()(void* node) const { plist_free(node); }
};
using Node = std::unique_ptr<void, NodeFree>;

struct MemoryFree {
  void operator()(char* memory) const { std::free(memory); }
};
using Memory = std::unique_ptr<char, MemoryFree>;

plist_t MakeNode(const Value& value, int depth);

plist_t MakeArray(const Array& array, int depth) {
  Node node(plist_new_array());
  for (size_t i = 0; i < array.Count(); ++i) {
    const plist_t child = MakeNode(array.At(i), depth + 1);
    if (!child) return nullptr;
    plist_array_append_item(node.get(), child);
  }
  return node.release();
}

plist_t MakeDictionary(const Dictionary& dictionary, int depth) {
  Node node(plist_new_dict());
  for (size_t i = 0; i < dictionary.Count(); ++i) {
    const plist_t child = MakeNode(dictionary.ValueAt(i), depth + 1);
    if (!child) return nullptr;
    plist_dict_set_item(node.get(), std::string(dictionary.KeyAt(i)).c_str(), child);
  }
  return node.release();
}

plist_t MakeNode(const Value& value, int depth) {
  if (depth > kDeepestNesting) return nullptr;
  switch (value.Type()) {
    case ValueType::kString: return plist_new_string(String(value).CString());
    case ValueType::kInteger: {
      const int64_t integer = Number(value).Integer();
      return plist_new_uint(static_cast<uint64_t>(integer));
    }
    case ValueType::kReal: return plist_new_real(Number(value).Real());
    case ValueType::kBoolean: return plist_new_bool(Boolean(value).IsTrue() ? 1 : 0);
    case ValueType::kData: {
      const auto bytes = Data(value).Bytes();
      return plist_new_data(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    }
    case ValueType::kArray: return MakeArray(Array(value), depth);
    case ValueType::kDictionary: return MakeDictionary(Dictionary(value), depth);
    case ValueType::kNull: return nullptr;
  }
  return nullptr;
}

Value ReadNode(plist_t node);

Value ReadArray(plist_t node) {
  Array array = Array::Create();
  const uint32_t count = plist_array_get_size(node);
  for (uint32_t i = 0; i < count; ++i) array.Append(ReadNode(plist_array_get_item(node, i)));
  return array;
}

Value ReadDictionary(plist_t node) {
  Dictionary dictionary = Dictionary::Create();
  plist_dict_iter position = nullptr;
  plist_dict_new_iter(node, &position);
  const std::unique_ptr<void, decltype(&std::free)> iterator(position, &std::free);
  for (;;) {
    char* key = nullptr;
    plist_t child = nullptr;
    plist_dict_next_item(node, iterator.get(), &key, &child);
    const Memory owned(key);
    if (!key || !child) break;
    dictionary.Set(key, ReadNode(child));
  }
  return dictionary;
}

Value ReadData(plist_t node) {
  uint64_t size = 0;
  const char* bytes = plist_get_data_ptr(node, &size);
  return Data::From({reinterpret_cast<const std::byte*>(bytes), static_cast<size_t>(size)});
}

Value ReadNode(plist_t node) {
  switch (plist_get_node_type(node)) {
    case PLIST_STRING: {
      uint64_t size = 0;
      const char* text = plist_get_string_ptr(node, &size);
      return text ? Value(String::FromUTF8({text, static_cast<size_t>(size)})) : Value(String::FromUTF8(""));
    }
    case PLIST_UINT: {
      uint64_t value = 0;
      plist_get_uint_val(node, &value);
      return Number::FromInteger(static_cast<int64_t>(value));
    }
    case PLIST_REAL: {
      double value = 0;
      plist_get_real_val(node, &value);
      return Number::FromReal(value);
    }
    case PLIST_BOOLEAN: {
      uint8_t value = 0;
      plist_get_bool_val(node, &value);
      return Boolean::From(value != 0);
    }
    case PLIST_DATA: return ReadData(node);
    case PLIST_ARRAY: return ReadArray(node);
    case PLIST_DICT: return ReadDictionary(node);
    default: return Value();
  }
}

// What must not reach the parser; empty if nothing stands against it.
std::string Objection(std::string_view xml) {
  if (xml.empty()) return "the property list is empty";
  if (!IsValidUTF8(xml)) return "the property list is not valid UTF-8";
  if (xml.find("<!ENTITY") != std::string_view::npos) return "the property list declares entities";
  int depth = 0;
  for (size_t at = xml.find('<'); at != std::string_view::npos; at = xml.find('<', at + 1)) {
    const std::string_view rest = xml.substr(at + 1, 5);
    if (rest.starts_with("array") || rest.starts_with("dict")) {
      if (++depth > kDeepestNesting) return "the property list is nested too deep";
    } else if (rest.starts_with("/arra") || rest.starts_with("/dict")) {
      --depth;
    }
  }
  const size_t start = xml.find_first_not_of(" \t\r\n\xEF\xBB\xBF");
  if (start == std::string_view::npos || xml[start] != '<') return "the property list is no XML";
  return "";
}

}  // namespace

std::string CreateXMLPropertyList(const Value& value) {
  const Node node(MakeNode(value, 0));
  if (!node) return "";
  char* text = nullptr;
  uint32_t size = 0;
  plist_to_xml(node.get(), &text, &size);
  const Memory owned(text);
  return text ? std::string(text, size) : std::string();
}

PropertyListResult ParseXMLPropertyList(std::string_view xml) {
  if (std::string objection = Objection(xml); !objection.empty()) return {Value(), std::move(objection)};
  if (xml.size() > UINT32_MAX) return {Value(), "the property list is too long"};
  plist_t parsed = nullptr;
  plist_from_xml(xml.data(), static_cast<uint32_t>(xml.size()), &parsed);
  const Node node(parsed);
  if (!node) return {Value(), "the property list is malformed"};
  const Value value = ReadNode(node.get());
  if (!value) return {Value(), "the property list holds a kind of value that is not known"};
  return {value, ""};
}

}  // namespace platform
