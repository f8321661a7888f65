#include "platform/PropertyList.h"

#include <plist/plist.h>

#include <cstdlib>
#include <memory>

#include "platform/TextEncoding.h"

namespace platform {

namespace {

// XML allows no control characters except tab and line ends, and neither U+FFFE nor U+FFFF.
bool IsForXML(std::string_view text) {
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 && c != '\t' && c != '\n' && c != '\r') return false;
  }
  return text.find("\xEF\xBF\xBE") == std::string_view::npos && text.find("\xEF\xBF\xBF") == std::string_view::npos;
}

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
    const std::string_view key = dictionary.KeyAt(i);
    const plist_t child = IsForXML(key) && IsValidUTF8(key) ? MakeNode(dictionary.ValueAt(i), depth + 1) : nullptr;
    if (!child) return nullptr;
    plist_dict_set_item(node.get(), std::string(key).c_str(), child);
  }
  return node.release();
}

plist_t MakeNode(const Value& value, int depth) {
  if (depth > kDeepestPropertyList) return nullptr;
  switch (value.Type()) {
    case ValueType::kString:
      return IsForXML(String(value).View()) ? plist_new_string(String(value).CString()) : nullptr;
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

}  // namespace

std::string CreateXMLPropertyList(const Value& value) {
  const Node node(MakeNode(value, 0));
  if (!node) return "";
  char* text = nullptr;
  uint32_t size = 0;
  plist_to_xml(node.get(), &text, &size);
  const Memory owned(text);
  std::string xml(text ? text : "", text ? size : 0);
  // A reader would change a bare carriage return to a line feed.
  for (size_t at = xml.find('\r'); at != std::string::npos; at = xml.find('\r', at)) xml.replace(at, 1, "&#13;");
  return xml;
}

}  // namespace platform
