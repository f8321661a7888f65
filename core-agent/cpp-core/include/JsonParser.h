// Owns one JSON tree that was parsed from text. A new Parser has an empty object, to build a message.
//
// root, exists, empty and find throw std::runtime_error with "No JSON loaded in parser" after a failed load. A path is
// one key, or several from the outermost on. Nodes must not outlive the Parser.
#pragma once

#include <yajl/yajl_tree.h>

#include <memory>
#include <string>
#include <vector>

#include "JsonNode.h"

namespace restful_mapper::Json {

class Parser {
 public:
  Parser();  // loads "{}"
  explicit Parser(const std::string& text);
  Parser(const Parser&) = delete;
  Parser& operator=(const Parser&) = delete;

  // Frees the old tree, then parses the text up to its first NUL. Throws std::runtime_error with "JSON parse error:\n"
  // and the reason for malformed JSON, malformed UTF-8, and values nested deeper than kDeepest. The UTF-8 check is
  // incomplete: an encoded surrogate passes here and throws when it is read.
  void load(const std::string& text);
  bool is_loaded() const { return root_ != nullptr; }

  Node root() const;
  bool exists(const std::string& path) const;
  bool exists(const std::vector<std::string>& path) const;
  bool empty(const std::string& path) const;  // missing or null
  bool empty(const std::vector<std::string>& path) const;
  Node find(const std::string& path) const;  // throws if there is none
  Node find(const std::vector<std::string>& path) const;

  static constexpr size_t kDeepest = 1024;

 private:
  struct FreeTree {
    void operator()(yajl_val value) const { yajl_tree_free(value); }
  };

  yajl_val Find(const std::vector<std::string>& path) const;
  void RequireTree() const;

  std::unique_ptr<yajl_val_s, FreeTree> root_;
};

}  // namespace restful_mapper::Json
