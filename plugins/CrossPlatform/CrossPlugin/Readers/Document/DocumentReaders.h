// The table of what can find fonts in a document. Each reader is a row: whether a document is one for it, and what it finds.
// The flows of the plug-in call what is below two of the rows, the metadata and the scan, by their own names. Main thread
// only.
#pragma once

#include <span>

#include "Readers/Document/DocumentFonts.h"
#include "Readers/Document/ReadableDocument.h"

struct DocumentReader {
  bool (*sniff)(ReadableDocument& document);
  // Appends to the arrays and to the problems.
  void (*read)(ReadableDocument& document, DocumentFonts& fonts);
};

std::span<const DocumentReader> DocumentReaders();
