// One node of an XML document, not owned: it is good as long as its GLibXMLDoc. A node of a null pointer is a valid
// object that is of no kind, and has no name, no attributes and no neighbours.
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
  std::string GetName() const;  // of an element, without its prefix
  GLibXMLNode GetFirstChild() const;
  GLibXMLNode GetNext() const;

  // False if there is no such attribute; `value` is then untouched. kNullObject and kWrongNodeType are reported for a
  // node that can't have one.
  bool GetAttribute(const char* name, std::string& value) const;
  // The text and the CDATA sections of an element; kUnexpectedNodes if it holds anything else but comments.
  TModuleErrorCode GetText(std::string& text) const;

 private:
  const _xmlNode* mNode;
};
