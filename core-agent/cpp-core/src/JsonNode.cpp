#include "JsonNode.h"

#include <sstream>
#include <stdexcept>

#include "XCore/ECFExtensions/TextConversion.h"

namespace restful_mapper::Json {

namespace {

// The text after ", found"; empty for null.
std::string DescribeValue(yajl_val value) {
  std::ostringstream text;
  if (YAJL_IS_STRING(value))
    text << " STRING: " << YAJL_GET_STRING(value);
  else if (YAJL_IS_INTEGER(value))
    text << " INTEGER: " << YAJL_GET_INTEGER(value);
  else if (YAJL_IS_DOUBLE(value))
    text << " DOUBLE: " << YAJL_GET_DOUBLE(value);
  else if (YAJL_IS_OBJECT(value))
    text << " OBJECT";
  else if (YAJL_IS_ARRAY(value))
    text << " ARRAY";
  else if (YAJL_IS_TRUE(value))
    text << " BOOLEAN: true";
  else if (YAJL_IS_FALSE(value))
    text << " BOOLEAN: false";
  return text.str();
}

template <class T>
std::vector<T> Elements(const Node& node, T (Node::*read)() const) {
  std::vector<T> values;
  for (const Node& element : node.to_array()) values.push_back((element.*read)());
  return values;
}

template <class T>
std::map<std::string, T> Members(const Node& node, T (Node::*read)() const) {
  std::map<std::string, T> values;
  for (const auto& [key, member] : node.to_map()) values.emplace(key, (member.*read)());
  return values;
}

}  // namespace

Node::Node(const std::string& name, yajl_val value) : name_(name), value_(value) {
  if (!value) throw std::runtime_error("JSON node \"" + name + "\" not found");
}

bool Node::is_null() const { return YAJL_IS_NULL(value_); }
bool Node::is_string() const { return YAJL_IS_STRING(value_); }
bool Node::is_int() const { return YAJL_IS_INTEGER(value_); }
bool Node::is_double() const { return YAJL_IS_DOUBLE(value_); }
bool Node::is_bool() const { return YAJL_IS_TRUE(value_) || YAJL_IS_FALSE(value_); }
bool Node::is_array() const { return YAJL_IS_ARRAY(value_); }
bool Node::is_map() const { return YAJL_IS_OBJECT(value_); }

void Node::Require(bool isKind, const char* kind) const {
  if (isKind) return;
  throw std::runtime_error("Expected JSON node \"" + name_ + "\" to be " + kind + ", found" + DescribeValue(value_));
}

std::string Node::to_string() const {
  Require(is_string(), "STRING");
  return utf8_to_local(YAJL_GET_STRING(value_));
}

int Node::to_int() const { return static_cast<int>(to_int64()); }

int64_t Node::to_int64() const {
  Require(is_int(), "INTEGER");
  return YAJL_GET_INTEGER(value_);
}

double Node::to_double() const {
  Require(is_double(), "DOUBLE");
  return YAJL_GET_DOUBLE(value_);
}

bool Node::to_bool() const {
  Require(is_bool(), "BOOLEAN");
  return YAJL_IS_TRUE(value_);
}

std::vector<Node> Node::to_array() const {
  Require(is_array(), "ARRAY");
  const auto& array = *YAJL_GET_ARRAY(value_);
  std::vector<Node> nodes;
  nodes.reserve(array.len);
  for (size_t i = 0; i < array.len; ++i) nodes.emplace_back(name_ + "[" + std::to_string(i) + "]", array.values[i]);
  return nodes;
}

std::map<std::string, Node> Node::to_map() const {
  Require(is_map(), "OBJECT");
  const auto& object = *YAJL_GET_OBJECT(value_);
  std::map<std::string, Node> nodes;
  for (size_t i = 0; i < object.len; ++i) {
    const std::string key = object.keys[i];
    nodes.emplace(key, Node(name_ + "[\"" + key + "\"]", object.values[i]));
  }
  return nodes;
}

std::vector<std::string> Node::to_string_array() const { return Elements(*this, &Node::to_string); }
std::vector<int> Node::to_int_array() const { return Elements(*this, &Node::to_int); }
std::vector<double> Node::to_double_array() const { return Elements(*this, &Node::to_double); }
std::vector<bool> Node::to_bool_array() const { return Elements(*this, &Node::to_bool); }
std::map<std::string, std::string> Node::to_string_map() const { return Members(*this, &Node::to_string); }
std::map<std::string, int> Node::to_int_map() const { return Members(*this, &Node::to_int); }
std::map<std::string, double> Node::to_double_map() const { return Members(*this, &Node::to_double); }
std::map<std::string, bool> Node::to_bool_map() const { return Members(*this, &Node::to_bool); }

bool Node::exists(const std::string& key) const {
  Node ignored;
  return find(key, ignored);
}

bool Node::find(const std::string& key, Node& out) const {
  const char* path[] = {key.c_str(), nullptr};
  const yajl_val found = yajl_tree_get(value_, path, yajl_t_any);
  if (!found) return false;
  out = Node(key, found);
  return true;
}

}  // namespace restful_mapper::Json
