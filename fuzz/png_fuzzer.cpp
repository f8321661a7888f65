// Any bytes as a picture in PNG; see Document.h.
#include "Document.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace std::string_view_literals;
  return document_fuzzing::CheckAs("\x89PNG\r\n\x1A\n"sv, data, size);
}
