// Any bytes as a document of any kind with metadata; see Document.h.
#include "Document.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  return document_fuzzing::Check(BytesOf(data, size));
}
