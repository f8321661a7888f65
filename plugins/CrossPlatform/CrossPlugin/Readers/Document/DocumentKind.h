// What a document is, told from its content.
#pragma once

#include "Readers/DocumentBytes.h"

enum class EDocumentKind {
  kUnknown,
  kPhotoshop,     // .psd, .psb
  kIllustrator,   // .ai, .ait in PDF form
  kAfterEffects,  // .aep
  kPDF,
  kPostScript,  // also Illustrator's older documents
  kEPS,         // with or without the binary header
  kImage,       // JPEG, TIFF, PNG, which may contain metadata
  kSVG,         // plain or compressed, like the next one
  kScribus,
  kXCF,           // of GIMP
  kOpenDocument,  // the rest are ZIP archives
  kWordDocument,
  kWorkbook,
  kSlides,
  kKrita,
  kIDML,  // of InDesign
};

struct DocumentKindRow {
  EDocumentKind kind;
  const char* name;  // for people and reports: "psd", "odt" ...; empty for an unknown kind
};

// A PDF with the extension of an Illustrator document is one.
DocumentKindRow FindDocumentKind(DocumentBytes& bytes, bool hasIllustratorExtension);

// True if the bytes are packed as gzip does it.
bool IsGzip(DocumentBytes& bytes);
