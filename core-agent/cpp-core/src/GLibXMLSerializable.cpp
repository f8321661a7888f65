#include "GLibXMLSerializable.h"

#include "FailedCheck.h"
#include "GLibXMLNode.h"

TModuleErrorCode GLibXMLSerializable::CheckElement(const std::string& identifier, const GLibXMLNode& node,
                                                   const char* name) {
  RETURN_IF(identifier, !node.IsElement(), kWrongNodeType);
  RETURN_IF(identifier, node.GetName() != name, kWrongElementName);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GLibXMLSerializable::CheckChild(const std::string& identifier, const GLibXMLNode& child) {
  RETURN_IF(identifier, child.IsText(), kInvalidTextContent);
  RETURN_IF(identifier, child.IsCDATASection(), kInvalidCDATASection);
  RETURN_IF(identifier, !child.IsElement(), kInvalidChildNode);
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GLibXMLSerializable::GetRequiredAttribute(const std::string& identifier, const GLibXMLNode& node,
                                                           const char* name, std::string& value) {
  std::string read;
  RETURN_IF(identifier, !node.GetAttribute(name, read) || read.empty(), kMissingRequiredAttribute);
  value.swap(read);
  return CoreErrorCodes::kSuccess;
}
