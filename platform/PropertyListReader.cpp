// Reads property lists. The property-list library's own reader accepts truncated lists and malformed numbers, so the
// XML library parses here and this checks the result against the format.
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <charconv>
#include <climits>
#include <memory>
#include <optional>
#include <vector>

#include "platform/Base64.h"
#include "platform/PropertyList.h"
#include "platform/TextEncoding.h"

namespace platform {

namespace {

struct ContextFree {
  void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
};
struct DocumentFree {
  void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};

constexpr std::string_view kWhitespace = " \t\r\n";

std::string_view Trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(kWhitespace);
  if (first == std::string_view::npos) return "";
  return text.substr(first, text.find_last_not_of(kWhitespace) - first + 1);
}

std::string_view NameOf(const xmlNode* node) { return reinterpret_cast<const char*>(node->name); }

std::optional<int64_t> ParseInteger(std::string_view text) {
  const bool isNegative = text.starts_with('-');
  if (isNegative || text.starts_with('+')) text.remove_prefix(1);
  const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (isHexadecimal) text.remove_prefix(2);
  uint64_t magnitude = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), magnitude, isHexadecimal ? 16 : 10);
  const uint64_t most = static_cast<uint64_t>(INT64_MAX) + (isNegative ? 1 : 0);
  if (text.empty() || error != std::errc() || end != text.data() + text.size() || magnitude > most) return std::nullopt;
  return static_cast<int64_t>(isNegative ? 0 - magnitude : magnitude);
}

std::optional<double> ParseReal(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

// A text for an error line.
std::string Quoted(std::string_view text) {
  constexpr size_t kLongest = 40;
  std::string shown(text.substr(0, kLongest));
  while (!IsValidUTF8(shown)) shown.pop_back();  // cut off within a character
  for (char& c : shown) {
    if (static_cast<unsigned char>(c) < ' ') c = ' ';
  }
  return "'" + shown + (text.size() > kLongest ? "...'" : "'");
}

// Walks the elements of a list. The first fault ends the walk.
class Reader {
 public:
  Value ReadDocument(const xmlNode* root) {
    if (NameOf(root) != "plist") return ReadValue(root, 0);
    Value value;
    for (const xmlNode* child = root->children; child; child = child->next) {
      if (!IsElement(child)) continue;
      if (value) Fail(child, "a second value");
      value = ReadValue(child, 0);
    }
    if (!value) Fail(root, "no value");
    return value;
  }
  const std::string& Fault() const { return fault_; }

 private:
  Value ReadValue(const xmlNode* node, int depth) {
    if (!fault_.empty()) return Value();
    if (depth > kDeepestPropertyList) return Fail(node, "nested too deep");
    const std::string_view name = NameOf(node);
    if (name == "dict") return ReadDictionary(node, depth);
    if (name == "array") return ReadArray(node, depth);
    const std::string text = TextOf(node);
    if (name == "string") return String::FromUTF8(text);
    if (name == "integer") {
      const auto integer = ParseInteger(Trimmed(text));
      return integer ? Value(Number::FromInteger(*integer)) : Fail(node, Quoted(text) + " for an integer of 64 bits");
    }
    if (name == "real") {
      const auto real = ParseReal(Trimmed(text));
      return real ? Value(Number::FromReal(*real)) : Fail(node, Quoted(text) + " for a number");
    }
    if (name == "data") {
      const auto bytes = DecodeBase64(text);
      return bytes ? Value(Data::From(std::as_bytes(std::span(*bytes)))) : Fail(node, "data that is not Base64");
    }
    if (name == "true" || name == "false") {
      return text.empty() ? Value(Boolean::From(name == "true")) : Fail(node, "text in a boolean");
    }
    return Fail(node, "an element " + Quoted(name));
  }

  Value ReadArray(const xmlNode* node, int depth) {
    Array array = Array::Create();
    for (const xmlNode* child = node->children; child && fault_.empty(); child = child->next) {
      if (IsElement(child)) array.Append(ReadValue(child, depth + 1));
    }
    return array;
  }

  Value ReadDictionary(const xmlNode* node, int depth) {
    Dictionary dictionary = Dictionary::Create();
    std::optional<std::string> key;
    for (const xmlNode* child = node->children; child && fault_.empty(); child = child->next) {
      if (!IsElement(child)) continue;
      if ((NameOf(child) == "key") == key.has_value())
        return Fail(child, key ? "a key without a value" : "a value without a key");
      if (key) {
        dictionary.Set(*key, ReadValue(child, depth + 1));
        key.reset();
      } else {
        key = TextOf(child);
      }
    }
    return key ? Fail(node, "a key without a value") : Value(dictionary);
  }

  // The text of a leaf.
  std::string TextOf(const xmlNode* node) {
    std::string text;
    for (const xmlNode* child = node->children; child; child = child->next) {
      if (child->type == XML_TEXT_NODE || child->type == XML_CDATA_SECTION_NODE) {
        text += reinterpret_cast<const char*>(child->content);
      } else if (child->type != XML_COMMENT_NODE && child->type != XML_PI_NODE) {
        Fail(child, "an element in a text");
      }
    }
    return text;
  }

  // Only white space and comments are allowed between elements.
  bool IsElement(const xmlNode* node) {
    if (node->type == XML_ELEMENT_NODE) return true;
    const bool isText = node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE;
    if (isText && !Trimmed(reinterpret_cast<const char*>(node->content)).empty()) Fail(node, "text between values");
    if (node->type == XML_ENTITY_REF_NODE) Fail(node, "an entity between values");
    return false;
  }

  Value Fail(const xmlNode* node, const std::string& what) {
    if (fault_.empty())
      fault_ = "the property list holds " + what + " (line " + std::to_string(xmlGetLineNo(node)) + ")";
    return Value();
  }

  std::string fault_;
};

std::string DescribeSyntaxError(xmlParserCtxt* context) {
  const xmlError* error = xmlCtxtGetLastError(context);
  if (!error || !error->message) return "the property list is no XML";
  std::string message = error->message;
  while (!message.empty() && (message.back() == '\n' || message.back() == ' ')) message.pop_back();
  for (char& c : message) {
    if (c == '\n') c = ' ';
  }
  return "the property list is no XML: " + message + " (line " + std::to_string(error->line) + ")";
}

// Returns why the parser must not get this text; empty if it may.
std::string Objection(std::string_view xml) {
  if (xml.empty()) return "the property list is empty";
  if (xml.size() > INT_MAX) return "the property list is too long";
  if (!IsValidUTF8(xml)) return "the property list is not valid UTF-8";
  if (xml.find("<!ENTITY") != std::string_view::npos) return "the property list declares entities";
  return "";
}

}  // namespace

PropertyListResult ParseXMLPropertyList(std::string_view xml) {
  if (std::string objection = Objection(xml); !objection.empty()) return {Value(), std::move(objection)};
  const std::unique_ptr<xmlParserCtxt, ContextFree> context(xmlNewParserCtxt());
  if (!context) return {Value(), "no memory for reading the property list"};
  constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
  const std::unique_ptr<xmlDoc, DocumentFree> document(
      xmlCtxtReadMemory(context.get(), xml.data(), static_cast<int>(xml.size()), nullptr, "UTF-8", kOptions));
  const xmlNode* root = document ? xmlDocGetRootElement(document.get()) : nullptr;
  if (!root) return {Value(), DescribeSyntaxError(context.get())};
  Reader reader;
  Value value = reader.ReadDocument(root);
  if (!reader.Fault().empty()) return {Value(), reader.Fault()};
  return {value, ""};
}

}  // namespace platform
