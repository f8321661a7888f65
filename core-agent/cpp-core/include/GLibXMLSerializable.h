// What the classes with an XML form share: the codes of their refusals, and the checks of structure.
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

  // Refusals are reported under the identifier.
  // The node must be an element of this name, whatever its prefix: kWrongNodeType, kWrongElementName.
  static TModuleErrorCode CheckElement(const std::string& identifier, const GLibXMLNode& node, const char* name);
  // A child that stands where only elements may, blank nodes aside: kInvalidTextContent, kInvalidCDATASection,
  // kInvalidChildNode.
  static TModuleErrorCode CheckChild(const std::string& identifier, const GLibXMLNode& child);
  // kMissingRequiredAttribute if the attribute is missing or empty; `value` is written on success.
  static TModuleErrorCode GetRequiredAttribute(const std::string& identifier, const GLibXMLNode& node, const char* name,
                                               std::string& value);
};
