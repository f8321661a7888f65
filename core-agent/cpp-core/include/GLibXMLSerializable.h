// Shared by the classes with an XML form: error codes and checks of structure.
#pragma once

#include <string>

#include "ErrorCodes.h"

class GLibXMLNode;

class GLibXMLSerializable {
 public:
  static constexpr TModuleErrorCode kWrongNodeType = 0x01001008;
  static constexpr TModuleErrorCode kWrongElementName = 0x02001008;
  static constexpr TModuleErrorCode kInvalidTextContent = 0x03001008;
  static constexpr TModuleErrorCode kInvalidAttribute = 0x04001008;
  static constexpr TModuleErrorCode kInvalidChildElement = 0x05001008;
  static constexpr TModuleErrorCode kInvalidCDATASection = 0x06001008;
  static constexpr TModuleErrorCode kInvalidChildNode = 0x07001008;
  static constexpr TModuleErrorCode kMissingRequiredAttribute = 0x08001008;
  static constexpr TModuleErrorCode kMissingRequiredChildElement = 0x09001008;
  static constexpr TModuleErrorCode kInvalidAttributeContent = 0x0A001008;
  static constexpr TModuleErrorCode kRequiredTextIsBlank = 0x0B001008;

  // Errors are reported under the identifier.
  // Checks that the node is an element with this name, whatever its prefix: kWrongNodeType, kWrongElementName.
  static TModuleErrorCode CheckElement(const std::string& identifier, const GLibXMLNode& node, const char* name);
  // For a child where only elements and blank nodes are allowed: kInvalidTextContent, kInvalidCDATASection,
  // kInvalidChildNode.
  static TModuleErrorCode CheckChild(const std::string& identifier, const GLibXMLNode& child);
  // Returns kMissingRequiredAttribute if the attribute is missing or empty. `value` is set on success.
  static TModuleErrorCode GetRequiredAttribute(const std::string& identifier, const GLibXMLNode& node, const char* name,
                                               std::string& value);
};
