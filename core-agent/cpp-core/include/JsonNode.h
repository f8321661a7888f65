// A named value of a JSON tree: typed reads that throw on misuse, search, and adding.
//
// A node is a live view: the value belongs to the tree of the Parser that made it, and whatever is added through one
// node shows through all. A node must not outlive its Parser. Nodes of one tree are used by one thread at a time.
//
// A node's name serves error messages: "root", the key, or a path such as name[3] or name["key"]. A read of the wrong
// kind and an addition to a value of the wrong kind throw std::runtime_error with
//   Expected JSON node "NAME" to be KIND, found ACTUAL
#pragma once

#include <yajl/yajl_tree.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace restful_mapper::Json {

class Node {
 public:
  Node() = default;  // no value: every test is false
  // Throws std::runtime_error for a null value. The value is not owned.
  Node(const std::string& name, yajl_val value);

  const std::string& name() const { return name_; }
  yajl_val value() const { return value_; }

  bool is_null() const;
  bool is_string() const;
  bool is_int() const;     // a number that fits into 64 bits; such a number passes is_double too
  bool is_double() const;  // a number that fits into a double
  bool is_bool() const;
  bool is_array() const;
  bool is_map() const;

  // In the local character set; throws if the text is not well-formed UTF-8.
  std::string to_string() const;
  int to_int() const;  // the low 32 bits
  int64_t to_int64() const;
  double to_double() const;
  bool to_bool() const;
  std::vector<Node> to_array() const;
  std::map<std::string, Node> to_map() const;  // of a repeated key the first, as find gives it
  std::vector<std::string> to_string_array() const;
  std::vector<int> to_int_array() const;
  std::vector<double> to_double_array() const;
  std::vector<bool> to_bool_array() const;
  std::map<std::string, std::string> to_string_map() const;
  std::map<std::string, int> to_int_map() const;
  std::map<std::string, double> to_double_map() const;
  std::map<std::string, bool> to_bool_map() const;

  // One step into an object. Without such a key, or in another kind of value, false with `out` untouched.
  bool exists(const std::string& key) const;
  bool find(const std::string& key, Node& out) const;

  // Add to the end of an object. The bytes of a text are taken as they are, without the conversion that to_string does.
  // A key is not looked for, so a second add of one writes it twice. False, with nothing changed, if memory runs out.
  bool add_string(const std::string& key, const std::string& value, Node& out) const;
  bool add_int(const std::string& key, int value, Node& out) const;
  bool add_int64(const std::string& key, int64_t value, Node& out) const;
  bool add_double(const std::string& key, double value, Node& out) const;
  bool add_bool(const std::string& key, bool value, Node& out) const;
  bool add_array(const std::string& key, Node& out) const;
  bool add_map(const std::string& key, Node& out) const;
  // Add to the end of an array; the new node's name is empty.
  bool add_string(const std::string& value, Node& out) const;
  bool add_int(int value, Node& out) const;
  bool add_int64(int64_t value, Node& out) const;
  bool add_double(double value, Node& out) const;
  bool add_bool(bool value, Node& out) const;
  bool add_array(Node& out) const;
  bool add_map(Node& out) const;

  // The value's text, compact; throws what the Emitter throws.
  std::string dump() const;
  std::vector<std::string> dump_array() const;
  std::map<std::string, std::string> dump_map() const;

 private:
  void Require(bool isKind, const char* kind) const;

  std::string name_;
  yajl_val value_ = nullptr;
};

}  // namespace restful_mapper::Json
