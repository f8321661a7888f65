// The fonts of a PDF in whatever way it stores its objects, with libqpdf: also in compressed object streams, and in a file
// that is encrypted with an empty user password.
#pragma once

#include "Readers/Document/DocumentFonts.h"
#include "Readers/Document/ReadableDocument.h"

// Appends a record for each name to those from "pdf": the fonts that the pages use, with their forms, patterns and annotations.
// Of a damaged file the fonts that can be found, and a problem. A hostile file costs time and memory in proportion to what
// it says it holds, compressed as well; who reads such files limits the process.
void ListFontsOfPDF(ReadableDocument& document, DocumentFonts& fonts);
