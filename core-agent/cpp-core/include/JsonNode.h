// A named value of a JSON tree: typed reads that throw on misuse, search, and additions.
//
// A node is a live view: the value belongs to the tree of its Parser, and additions through one node are visible
// through all. A node must not outlive its Parser. Use the nodes of a tree on one thread at a time.
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
  Node() = default;  // no value: every test returns false
  // Throws std::runtime_error for a null value. Does not own the value.
  Node(const std::string& name, yajl_val value);

  const std::string& name() const { return name_; }
  yajl_val value() const { return value_; }

  bool is_null() const;
  bool is_string() const;
  bool is_int() const;     // a number that fits into 64 bits; is_double is true, too
  bool is_double() const;  // a number that fits into a double
  bool is_bool() const;
  bool is_array() const;
  bool is_map() const;

  // Converts to the local character set; throws if the text is not well-formed UTF-8.
  std::string to_string() const;
  int to_int() const;  // the low 32 bits
  int64_t to_int64() const;
  double to_double() const;
  bool to_bool() const;
  std::vector<Node> to_array() const;
  std::map<std::string, Node> to_map() const;  // the first of a repeated key, like find
  std::vector<std::string> to_string_array() const;
  std::vector<int> to_int_array() const;
  std::vector<double> to_double_array() const;
  std::vector<bool> to_bool_array() const;
  std::map<std::string, std::string> to_string_map() const;
  std::map<std::string, int> to_int_map() const;
  std::map<std::string, double> to_double_map() const;
  std::map<std::string, bool> to_bool_map() const;

  // Search one level of an object. Return false, with `out` unchanged, if there is no such key or the value is not an
  // object.
  bool exists(const std::string& key) const;
  bool find(const std::string& key, Node& out) const;

  // Append to an object. The bytes of a text are stored unchanged, without the conversion of to_string. An existing key
  // is not replaced: adding it again writes it twice. Return false, with nothing changed, if there is no memory.
  bool add_string(const std::string& key, const std::string& value, Node& out) const;
  bool add_int(const std::string& key, int value, Node& out) const;
  bool add_int64(const std::string& key, int64_t value, Node& out) const;
  bool add_double(const std::string& key, double value, Node& out) const;
  bool add_bool(const std::string& key, bool value, Node& out) const;
  bool add_array(const std::string& key, Node& out) const;
  bool add_map(const std::string& key, Node& out) const;
  // Append to an array. The new node has an empty name.
  bool add_string(const std::string& value, Node& out) const;
  bool add_int(int value, Node& out) const;
  bool add_int64(int64_t value, Node& out) const;
  bool add_double(double value, Node& out) const;
  bool add_bool(bool value, Node& out) const;
  bool add_array(Node& out) const;
  bool add_map(Node& out) const;

  // Returns compact JSON text; throws like Emitter.
  std::string dump() const;
  std::vector<std::string> dump_array() const;
  std::map<std::string, std::string> dump_map() const;

 private:
  void Require(bool isKind, const char* kind) const;

  std::string name_;
  yajl_val value_ = nullptr;
};

}  // namespace restful_mapper::Json
