// Any bytes as a PostScript document; see Document.h.
#include "Document.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace std::string_view_literals;
  return document_fuzzing::CheckAs("%!PS-Adobe-"sv, data, size);
}
