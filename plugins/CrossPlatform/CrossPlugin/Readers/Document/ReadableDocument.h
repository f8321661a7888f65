// A document file as the readers see it: its path, its bytes and what its first bytes say that it is. It is only read. Not
// thread-safe.
#pragma once

#include <string>
#include <system_error>

#include "Readers/DocumentBytes.h"

enum class EDocumentKind {
  kUnknown,
  kPhotoshop,     // .psd, .psb
  kIllustrator,   // .ai, .ait that are PDF
  kAfterEffects,  // .aep
  kPDF,
  kPostScript,  // also Illustrator's older documents
  kEPS,         // with or without the binary header
  kImage,       // JPEG, TIFF, PNG, which may hold metadata
};

class ReadableDocument {
 public:
  explicit ReadableDocument(std::string path) : mPath(std::move(path)) {}

  const std::string& Path() const { return mPath; }
  // Opens the file at the first call, whose error later calls return too.
  const std::error_code& Open();
  // All empty and unknown without a successful Open.
  DocumentBytes& Bytes() { return mBytes; }
  EDocumentKind Kind();
  // "psd", "psb", "ai", "aep", "pdf", "ps", "eps", "jpeg", "tiff", "png"; for an unknown kind empty.
  const char* KindName();
  // ".ai" or ".ait", in whatever case.
  bool HasIllustratorExtension() const;

 private:
  struct KindRow;
  const KindRow* FindKind();

  std::string mPath;
  DocumentBytes mBytes;
  bool mIsTried = false;
  std::error_code mError;
  const KindRow* mKind = nullptr;
};
