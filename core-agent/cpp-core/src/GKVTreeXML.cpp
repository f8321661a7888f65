// The XML form of GKVTree.
#include "FailedCheck.h"
#include "GKVTree.h"
#include "GLibXML.h"
#include "GLibXMLSerializable.h"
#include "XMLElementWriter.h"

namespace {

constexpr const char* kLogIdentifier = "KVTree";
using Codes = GLibXMLSerializable;

// A nested tree takes three levels of elements, and the parser allows 256.
constexpr unsigned kDeepestTree = 80;

}  // namespace

TModuleErrorCode GKVTree::SetFromXMLBuffer(const char* buffer, size_t length) {
  GLibXMLDoc doc;
  GLibXMLNode root;
  PASS_ON_ERROR(GLibXML::ParseBuffer(buffer, length, doc));
  PASS_ON_ERROR(doc.GetRootElement(root));
  return SetFromXMLNode(root);
}

TModuleErrorCode GKVTree::SetFromXMLNode(const GLibXMLNode& node) {
  PASS_ON_ERROR(Codes::CheckElement(kLogIdentifier, node, kXMLElementName_kvtree));
  GKVTree read;
  for (GLibXMLNode child = node.GetFirstChild(); !child.IsNull(); child = child.GetNext()) {
    if (!child.IsBlank()) PASS_ON_ERROR(read.ProcessKVXMLNode(child));
  }
  mValues.swap(read.mValues);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GKVTree::ProcessKVXMLNode(const GLibXMLNode& node) {
  PASS_ON_ERROR(Codes::CheckChild(kLogIdentifier, node));
  PASS_ON_ERROR(Codes::CheckElement(kLogIdentifier, node, kXMLElementName_kv));
  std::string key;
  PASS_ON_ERROR(Codes::GetRequiredAttribute(kLogIdentifier, node, kXMLElementAttr_key, key));
  GValue value;
  bool hasValue = false;
  for (GLibXMLNode child = node.GetFirstChild(); !child.IsNull(); child = child.GetNext()) {
    if (child.IsBlank()) continue;
    PASS_ON_ERROR(Codes::CheckChild(kLogIdentifier, child));
    RETURN_IF(kLogIdentifier, hasValue, Codes::kInvalidChildElement);
    PASS_ON_ERROR(value.SetFromXMLNode(child));
    hasValue = true;
  }
  RETURN_IF(kLogIdentifier, !hasValue, Codes::kMissingRequiredChildElement);
  const bool isNew = mValues.emplace(key, value).second;
  RETURN_IF(kLogIdentifier, !isNew, CoreErrorCodes::kItemAlreadyExists);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GKVTree::CheckForXML(unsigned depth) const {
  RETURN_IF(kLogIdentifier, depth > kDeepestTree, CoreErrorCodes::kNotSupported);
  for (const auto& [key, value] : mValues) {
    // Readers refuse an empty key.
    RETURN_IF(kLogIdentifier, key.empty(), Codes::kMissingRequiredAttribute);
    RETURN_IF(kLogIdentifier, !XMLElementWriter::CanHold(key), Codes::kInvalidAttributeContent);
    PASS_ON_ERROR(value.CheckForXML(depth));
  }
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GKVTree::WriteToXMLStream(std::ostream& stream, const std::string& prefix, bool pretty,
                                           unsigned indent) const {
  PASS_ON_ERROR(CheckForXML(0));
  XMLElementWriter writer(stream, prefix, pretty);
  WriteXML(writer, indent);
  return CoreErrorCodes::kSuccess;
}

void GKVTree::WriteXML(XMLElementWriter& writer, unsigned indent) const {
  if (mValues.empty()) return;
  writer.Open(kXMLElementName_kvtree, {}, indent);
  for (const auto& [key, value] : mValues) {
    writer.Open(kXMLElementName_kv, {{kXMLElementAttr_key, key}}, indent + 1);
    value.WriteXML(writer, indent + 2);
    writer.Close(kXMLElementName_kv, indent + 1);
  }
  writer.Close(kXMLElementName_kvtree, indent);
}
