// The core library's access to libxml2.
#pragma once

#include <cstddef>

#include "GLibXMLDoc.h"

class GLibXML {
 public:
  static constexpr TModuleErrorCode kParseFailed = 0x0100100F;

  // Returns kParseFailed, reported under "LibXML", for text that is not well-formed, is longer than 2 GB, is nested
  // deeper than 256 elements, or has a document type (refused before it can declare entities). `doc` is set on success.
  // Never loads anything else and never prints.
  static TModuleErrorCode ParseBuffer(const char* buffer, size_t length, GLibXMLDoc& doc);
};
