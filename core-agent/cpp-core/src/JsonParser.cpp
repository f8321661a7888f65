#include "JsonParser.h"

#include <stdexcept>

namespace restful_mapper::Json {

namespace {

[[noreturn]] void ThrowParseError(const std::string& reason) {
  throw std::runtime_error("JSON parse error:\n" + reason);
}

// Returns the end of the string or comment that begins at i. The parser accepts both kinds of comment.
size_t SkipString(std::string_view text, size_t i) {
  for (++i; i < text.size() && text[i] != '"'; ++i) {
    if (text[i] == '\\') ++i;
  }
  return i;
}

size_t SkipComment(std::string_view text, size_t i) {
  const bool isLine = text.compare(i, 2, "//") == 0, isBlock = text.compare(i, 2, "/*") == 0;
  if (!isLine && !isBlock) return i;
  const size_t end = isLine ? text.find('\n', i) : text.find("*/", i + 2);
  return end == std::string_view::npos ? text.size() : end;
}

bool IsDeeperThan(std::string_view text, size_t limit) {
  size_t depth = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    switch (text[i]) {
      case '[':
      case '{':
        if (++depth > limit) return true;
        break;
      case ']':
      case '}':
        if (depth > 0) --depth;
        break;
      case '"': i = SkipString(text, i); break;
      case '/': i = SkipComment(text, i); break;
      default: break;
    }
  }
  return false;
}

std::string SpellPath(const std::vector<std::string>& path) {
  if (path.empty()) return "root";
  std::string name = path.front();
  for (size_t i = 1; i < path.size(); ++i) name += "[\"" + path[i] + "\"]";
  return name;
}

}  // namespace

Parser::Parser() : Parser("{}") {}
Parser::Parser(const std::string& text) { load(text); }

void Parser::load(const std::string& text) {
  root_.reset();
  // Freeing a tree recurses, so refuse a text that is too deep before it becomes a tree.
  if (text.size() > kDeepest && IsDeeperThan(text.c_str(), kDeepest)) ThrowParseError("values are nested too deep");
  char reason[1024] = "";
  root_.reset(yajl_tree_parse(text.c_str(), reason, sizeof reason));
  if (!root_) ThrowParseError(reason);
}

void Parser::RequireTree() const {
  if (!root_) throw std::runtime_error("No JSON loaded in parser");
}

yajl_val Parser::Find(const std::vector<std::string>& path) const {
  RequireTree();
  std::vector<const char*> steps;
  steps.reserve(path.size() + 1);
  for (const std::string& step : path) steps.push_back(step.c_str());
  steps.push_back(nullptr);
  return yajl_tree_get(root_.get(), steps.data(), yajl_t_any);
}

Node Parser::root() const {
  RequireTree();
  return Node("root", root_.get());
}

bool Parser::exists(const std::string& path) const { return exists(std::vector{path}); }
bool Parser::exists(const std::vector<std::string>& path) const { return Find(path) != nullptr; }

bool Parser::empty(const std::string& path) const { return empty(std::vector{path}); }
bool Parser::empty(const std::vector<std::string>& path) const {
  const yajl_val found = Find(path);
  return !found || YAJL_IS_NULL(found);
}

Node Parser::find(const std::string& path) const { return find(std::vector{path}); }
Node Parser::find(const std::vector<std::string>& path) const { return Node(SpellPath(path), Find(path)); }

}  // namespace restful_mapper::Json
