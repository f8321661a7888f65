// The table of readers: each row can find fonts in some documents. docfonts runs all rows that fit a document. Main
// thread only.
//
// The plug-in does not use the table. It asks for the metadata and the raw scan of every document, whatever its kind,
// in an order of its own, and its process must not load libqpdf. So it calls the functions below these rows by their
// names, in Documents/DocumentFontData.cpp.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "Readers/Document/ReadableDocument.h"
#include "platform/Value.h"

struct DocumentReader {
  // The word by which docfonts names what this reader finds. Rows may share it.
  const char* name;
  bool (*sniff)(ReadableDocument& document);
  // Appends a record for each font to `records`, and one line for a person to `problems` for each reason why fonts may
  // be missing.
  void (*read)(ReadableDocument& document, platform::Array records, std::vector<std::string>& problems);
};

// In the order in which docfonts lists what they find.
std::span<const DocumentReader> DocumentReaders();
