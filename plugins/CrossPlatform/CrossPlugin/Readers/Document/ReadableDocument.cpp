#include "Readers/Document/ReadableDocument.h"

#include "Readers/CommonFunctionality.h"
#include "Readers/XMPFontMetadata.h"

const std::error_code& ReadableDocument::Open() {
  if (!mIsTried) mError = mBytes.Open(mPath);
  mIsTried = true;
  return mError;
}

const DocumentKindRow& ReadableDocument::FindKind() {
  if (!mKind)
    mKind = Open() ? DocumentKindRow{EDocumentKind::kUnknown, ""} : FindDocumentKind(mBytes, HasIllustratorExtension());
  return *mKind;
}

bool ReadableDocument::HasIllustratorExtension() const {
  return CommonFunctionality::FileExtensionIs(mPath, "ai") || CommonFunctionality::FileExtensionIs(mPath, "ait");
}

EDocumentKind ReadableDocument::Kind() { return FindKind().kind; }

const char* ReadableDocument::KindName() { return FindKind().name; }

const FontMetadata& ReadableDocument::Metadata() {
  if (!mMetadata) {
    mMetadata.emplace();
    mMetadata->code = ReadAllXMPFontDataFromFile(mPath, mMetadata->slug, mMetadata->adobe);
  }
  return *mMetadata;
}
