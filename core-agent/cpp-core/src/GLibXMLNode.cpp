#include "GLibXMLNode.h"

#include <libxml/tree.h>

#include "FailedCheck.h"

namespace {

std::string TextOf(const xmlChar* text) { return text ? reinterpret_cast<const char*>(text) : ""; }

}  // namespace

bool GLibXMLNode::IsElement() const { return mNode && mNode->type == XML_ELEMENT_NODE; }
bool GLibXMLNode::IsText() const { return mNode && mNode->type == XML_TEXT_NODE; }
bool GLibXMLNode::IsCDATASection() const { return mNode && mNode->type == XML_CDATA_SECTION_NODE; }

bool GLibXMLNode::IsBlank() const {
  if (mNode && mNode->type == XML_COMMENT_NODE) return true;
  return IsText() && xmlIsBlankNode(mNode);
}

std::string GLibXMLNode::GetName() const {
  if (!IsElement()) return "";
  const std::string name = TextOf(mNode->name);
  return name.substr(name.find(':') + 1);  // an undeclared prefix stays part of the name
}

GLibXMLNode GLibXMLNode::GetFirstChild() const { return GLibXMLNode(IsElement() ? mNode->children : nullptr); }
GLibXMLNode GLibXMLNode::GetNext() const { return GLibXMLNode(mNode ? mNode->next : nullptr); }

bool GLibXMLNode::GetAttribute(const char* name, std::string& value) const {
  if (!IsElement()) {
    const TModuleErrorCode code = IsNull() ? kNullObject : kWrongNodeType;
    ReportFailedCheck("LibXML", code, __FILE__, __LINE__, "!IsElement()");
    return false;
  }
  const xmlAttr* attribute = xmlHasProp(const_cast<xmlNode*>(mNode), reinterpret_cast<const xmlChar*>(name));
  if (!attribute) return false;
  xmlChar* text = xmlNodeListGetString(mNode->doc, attribute->children, 1);
  value = TextOf(text);
  xmlFree(text);
  return true;
}

TModuleErrorCode GLibXMLNode::GetText(std::string& text) const {
  RETURN_IF("LibXML", IsNull(), kNullObject);
  RETURN_IF("LibXML", !IsElement(), kWrongNodeType);
  std::string read;
  for (GLibXMLNode child = GetFirstChild(); !child.IsNull(); child = child.GetNext()) {
    if (child.mNode->type == XML_COMMENT_NODE) continue;
    RETURN_IF("LibXML", !child.IsText() && !child.IsCDATASection(), kUnexpectedNodes);
    read += TextOf(child.mNode->content);
  }
  text.swap(read);
  return CoreErrorCodes::kSuccess;
}
