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
  // Returns kNullObject if there is no document. The node is valid as long as this document.
  TModuleErrorCode GetRootElement(GLibXMLNode& root) const;

 private:
  struct FreeDoc {
    void operator()(_xmlDoc* doc) const;
  };
  std::unique_ptr<_xmlDoc, FreeDoc> mDoc;
};
