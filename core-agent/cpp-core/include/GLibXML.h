// The core library's way into libxml2.
#pragma once

#include <cstddef>

#include "GLibXMLDoc.h"

class GLibXML {
 public:
  static constexpr TModuleErrorCode kParseFailed = 0x0100100F;

  // kParseFailed, reported under "LibXML", for text that is not well-formed, beyond 2 GB, nested deeper than 256
  // elements, or with a document type: what could declare entities is refused before it is read. `doc` is written on
  // success. Nothing is fetched, and nothing is printed.
  static TModuleErrorCode ParseBuffer(const char* buffer, size_t length, GLibXMLDoc& doc);
};
