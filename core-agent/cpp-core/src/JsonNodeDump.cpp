// The text output of Node. Separate from the reads, because the emitter depends on them.
#include "JsonEmitter.h"
#include "JsonNode.h"

namespace restful_mapper::Json {

std::string Node::dump() const {
  Emitter emitter;
  emitter.emit_tree(value_);
  return emitter.dump();
}

std::vector<std::string> Node::dump_array() const {
  std::vector<std::string> texts;
  for (const Node& element : to_array()) texts.push_back(element.dump());
  return texts;
}

std::map<std::string, std::string> Node::dump_map() const {
  std::map<std::string, std::string> texts;
  for (const auto& [key, member] : to_map()) texts.emplace(key, member.dump());
  return texts;
}

}  // namespace restful_mapper::Json
