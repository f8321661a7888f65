#include "GLibXMLDoc.h"

#include <libxml/tree.h>

#include "FailedCheck.h"

void GLibXMLDoc::FreeDoc::operator()(_xmlDoc* doc) const { xmlFreeDoc(doc); }

TModuleErrorCode GLibXMLDoc::GetRootElement(GLibXMLNode& root) const {
  RETURN_IF("LibXML", !mDoc, kNullObject);
  root = GLibXMLNode(xmlDocGetRootElement(mDoc.get()));
  return CoreErrorCodes::kSuccess;
}
