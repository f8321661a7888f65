// Lists the fonts of a PDF with libqpdf, whichever way it stores its objects: also in compressed object streams, and in
// a file that is encrypted with an empty user password.
#pragma once

#include <string>
#include <vector>

#include "Readers/Document/ReadableDocument.h"
#include "platform/Value.h"

// Appends a record for each name: the fonts that the pages use, with their forms, patterns and annotations. A damaged
// file gives the fonts that can be found, and a problem. A hostile file costs time and memory in proportion to what it
// says it holds, also in compressed form, so the caller's process needs limits.
void ListFontsOfPDF(ReadableDocument& document, platform::Array records, std::vector<std::string>& problems);
