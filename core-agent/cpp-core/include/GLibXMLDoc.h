// Owns a parsed XML document.
#pragma once

#include <memory>

#include "GLibXMLNode.h"

struct _xmlDoc;

class GLibXMLDoc {
 public:
  static constexpr TModuleErrorCode kNullObject = 0x01001010;

  GLibXMLDoc() = default;
  explicit GLibXMLDoc(_xmlDoc* owned) : mDoc(owned) {}

  bool IsNull() const { return !mDoc; }
  // kNullObject for an object without a document. The node is good as long as this document.
  TModuleErrorCode GetRootElement(GLibXMLNode& root) const;

 private:
  struct FreeDoc {
    void operator()(_xmlDoc* doc) const;
  };
  std::unique_ptr<_xmlDoc, FreeDoc> mDoc;
};
