// Any bytes as the XML form of a tree: gives a tree or a code. A tree is written and reads back equal, and has a JSON
// form unless a single value lacks its element.
#include <nlohmann/json.hpp>
#include <sstream>

#include "Check.h"
#include "GKVTree.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  GKVTree tree;
  if (tree.SetFromXMLBuffer(reinterpret_cast<const char*>(data), size) != CoreErrorCodes::kSuccess) {
    CHECK(tree.IsEmpty());
    return 0;
  }
  nlohmann::json json;
  const TModuleErrorCode converted = tree.ConvertToJSON(json);
  CHECK(converted == CoreErrorCodes::kSuccess || converted == GValue::kEmptyValueBytes);
  if (converted == CoreErrorCodes::kSuccess) json.dump();

  std::ostringstream stream;
  const TModuleErrorCode written = tree.WriteToXMLStream(stream, "p", size % 2 == 0);
  CHECK(written == CoreErrorCodes::kSuccess || written == CoreErrorCodes::kNotSupported);
  const std::string xml = stream.str();
  if (xml.empty()) return 0;  // without entries, or nested too deep
  GKVTree again;
  CHECK(again.SetFromXMLBuffer(xml.data(), xml.size()) == CoreErrorCodes::kSuccess);
  CHECK(again.GetKeys() == tree.GetKeys());
  return 0;
}
