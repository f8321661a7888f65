// A document file as the readers see it: its path, its bytes, what its first bytes say that it is, and the fonts in its
// metadata. It is only read. Main thread only.
#pragma once

#include <optional>
#include <string>
#include <system_error>

#include "ErrorCodes.h"
#include "Readers/DocumentBytes.h"
#include "platform/Value.h"

enum class EDocumentKind {
  kUnknown,
  kPhotoshop,     // .psd, .psb
  kIllustrator,   // .ai, .ait in PDF form
  kAfterEffects,  // .aep
  kPDF,
  kPostScript,  // also Illustrator's older documents
  kEPS,         // with or without the binary header
  kImage,       // JPEG, TIFF, PNG, which may contain metadata
};

struct FontMetadata {
  platform::Array slug = platform::Array::Create();   // records of the plug-in
  platform::Array adobe = platform::Array::Create();  // records of Adobe's list
  TModuleErrorCode code = 0;                          // of ReadAllXMPFontDataFromFile
};

class ReadableDocument {
 public:
  explicit ReadableDocument(std::string path) : mPath(std::move(path)) {}

  const std::string& Path() const { return mPath; }
  // Opens the file at the first call. Later calls return the same error.
  const std::error_code& Open();
  // All empty and unknown without a successful Open.
  DocumentBytes& Bytes() { return mBytes; }
  EDocumentKind Kind();
  // "psd", "psb", "ai", "aep", "pdf", "ps", "eps", "jpeg", "tiff", "png"; for an unknown kind empty.
  const char* KindName();
  // ".ai" or ".ait", in upper or lower case.
  bool HasIllustratorExtension() const;
  // Reads it at the first call. Needs InitializeGlyphsureXMP.
  const FontMetadata& Metadata();

 private:
  struct KindRow;
  const KindRow* FindKind();

  std::string mPath;
  DocumentBytes mBytes;
  bool mIsTried = false;
  std::error_code mError;
  const KindRow* mKind = nullptr;
  std::optional<FontMetadata> mMetadata;
};
