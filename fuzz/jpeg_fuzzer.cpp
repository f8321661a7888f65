// Any bytes as a picture in JPEG; see Document.h.
#include "Document.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace std::string_view_literals;
  return document_fuzzing::CheckAs("\xFF\xD8\xFF"sv, data, size);
}
