// A non-owning node of an XML document, valid as long as its GLibXMLDoc. A node of a null pointer is allowed; it has no
// kind, name, attributes or neighbours.
#pragma once

#include <string>

#include "ErrorCodes.h"

struct _xmlNode;

class GLibXMLNode {
 public:
  static constexpr TModuleErrorCode kNullObject = 0x01001011;
  static constexpr TModuleErrorCode kWrongNodeType = 0x02001011;
  static constexpr TModuleErrorCode kUnexpectedNodes = 0x03001011;

  explicit GLibXMLNode(const _xmlNode* node = nullptr) : mNode(node) {}

  bool IsNull() const { return mNode == nullptr; }
  bool IsElement() const;
  bool IsText() const;
  bool IsCDATASection() const;
  bool IsBlank() const;         // white space between elements, or a comment
  std::string GetName() const;  // an element's name without its prefix
  GLibXMLNode GetFirstChild() const;
  GLibXMLNode GetNext() const;

  // Returns false, with `value` unchanged, if there is no such attribute. Reports kNullObject or kWrongNodeType for a
  // node that cannot have attributes.
  bool GetAttribute(const char* name, std::string& value) const;
  // Returns the text and CDATA sections of an element; kUnexpectedNodes if it contains anything else except comments.
  TModuleErrorCode GetText(std::string& text) const;

 private:
  const _xmlNode* mNode;
};
