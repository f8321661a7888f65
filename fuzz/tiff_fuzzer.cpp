// Any bytes as a picture in TIFF; see Document.h.
#include "Document.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace std::string_view_literals;
  return document_fuzzing::CheckAs("II*\0"sv, data, size);
}
