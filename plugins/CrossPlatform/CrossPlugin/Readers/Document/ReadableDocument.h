// A document file as the readers see it: its path, its bytes, what its first bytes say that it is, and the fonts in its
// metadata. It is only read. Main thread only.
#pragma once

#include <optional>
#include <string>
#include <system_error>

#include "ErrorCodes.h"
#include "Readers/Document/DocumentKind.h"
#include "Readers/DocumentBytes.h"
#include "platform/Value.h"

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
  // The name of DocumentKind.h.
  const char* KindName();
  // Of kinds that may be plain text or packed.
  bool IsCompressed() { return !Open() && IsGzip(mBytes); }
  // ".ai" or ".ait", in upper or lower case.
  bool HasIllustratorExtension() const;
  // Reads it at the first call. Needs InitializeGlyphsureXMP.
  const FontMetadata& Metadata();

 private:
  const DocumentKindRow& FindKind();

  std::string mPath;
  DocumentBytes mBytes;
  bool mIsTried = false;
  std::error_code mError;
  std::optional<DocumentKindRow> mKind;
  std::optional<FontMetadata> mMetadata;
};
