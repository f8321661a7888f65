// Any bytes as JSON: gives a tree, or the code for invalid text. The written tree reads back as the same text.
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "Check.h"
#include "GJSONUtils.h"
#include "Input.h"
#include "platform/TextEncoding.h"

namespace {

using namespace GJSONUtils;

// Returns the text, or nothing if the generator refuses the tree.
std::string DumpOf(const Node& node) {
  try {
    return node.dump();
  } catch (const std::runtime_error&) {
    return "";
  }
}

void ReadMembers(const Node& root) {
  if (!root.is_map()) return;
  for (const auto& [key, member] : root.to_map()) {
    std::string text;
    double real = 0;
    uint32_t integer = 0;
    bool boolean = false;
    try {
      CHECK((GetValueForKey(root, key, text) == 0) == member.is_string());
    } catch (const std::runtime_error&) {  // a surrogate
      CHECK(member.is_string() && !platform::IsValidUTF8(member.value()->u.string));
    }
    CHECK((GetValueForKey(root, key, real) == 0) == member.is_double());
    CHECK((GetValueForKey(root, key, integer) == 0) == member.is_int());
    CHECK((GetValueForKey(root, key, boolean) == 0) == member.is_bool());
    try {
      std::vector<unsigned> ids;
      CHECK((GetValueForKey(root, key, ids) == 0) == member.is_array());
    } catch (const std::runtime_error&) {  // an element that is not an integer
      CHECK(member.is_array());
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(BytesOf(data, size));
  nlohmann::json other;
  GJSONUtils::Parse(text, other);

  Parser parser;
  Node root;
  if (GJSONUtils::Parse(parser, text, root) != CoreErrorCodes::kSuccess) return 0;
  ReadMembers(root);
  const std::string dump = DumpOf(root);
  Parser again;
  Node same;
  if (!dump.empty() && GJSONUtils::Parse(again, dump, same) == CoreErrorCodes::kSuccess) CHECK(DumpOf(same) == dump);
  return 0;
}
