#include "Readers/Document/ReadableDocument.h"

#include "Readers/CommonFunctionality.h"
#include "Readers/XMPFontMetadata.h"

using namespace std::string_view_literals;

struct ReadableDocument::KindRow {
  size_t offset;
  std::string_view bytes;
  EDocumentKind kind;
  const char* name;
};

namespace {

// PDF readers accept a header that is not at the beginning of the file.
constexpr size_t kPDFHeaderRange = 1024;

// True if the first line of a PostScript file says that it can be placed into a document.
bool SaysEPS(DocumentBytes& bytes) {
  constexpr size_t kLine = 64;
  const std::string line = bytes.Copy(0, kLine);
  return line.substr(0, line.find_first_of("\r\n")).find("EPSF") != std::string::npos;
}

}  // namespace

const std::error_code& ReadableDocument::Open() {
  if (!mIsTried) mError = mBytes.Open(mPath);
  mIsTried = true;
  return mError;
}

const ReadableDocument::KindRow* ReadableDocument::FindKind() {
  static constexpr KindRow kUnknownKind = {0, "", EDocumentKind::kUnknown, ""};
  static constexpr KindRow kPDFKind = {0, "%PDF-", EDocumentKind::kPDF, "pdf"};
  static constexpr KindRow kIllustratorKind = {0, "%PDF-", EDocumentKind::kIllustrator, "ai"};
  static constexpr KindRow kEPSKind = {0, "%!", EDocumentKind::kEPS, "eps"};
  static constexpr KindRow kKinds[] = {
      {0, "8BPS\0\1"sv, EDocumentKind::kPhotoshop, "psd"}, {0, "8BPS\0\2"sv, EDocumentKind::kPhotoshop, "psb"},
      {8, "Egg!", EDocumentKind::kAfterEffects, "aep"},    {0, "\xC5\xD0\xD3\xC6", EDocumentKind::kEPS, "eps"},
      {0, "%!", EDocumentKind::kPostScript, "ps"},         {0, "\xFF\xD8\xFF", EDocumentKind::kImage, "jpeg"},
      {0, "II*\0"sv, EDocumentKind::kImage, "tiff"},       {0, "MM\0*"sv, EDocumentKind::kImage, "tiff"},
      {0, "\x89PNG", EDocumentKind::kImage, "png"},
  };
  if (Open()) return &kUnknownKind;
  for (const KindRow& row : kKinds) {
    if (!mBytes.Holds(row.offset, row.bytes)) continue;
    return row.kind == EDocumentKind::kPostScript && SaysEPS(mBytes) ? &kEPSKind : &row;
  }
  size_t at = 0;
  if (!mBytes.Find(0, kPDFHeaderRange, kPDFKind.bytes, 0, at)) return &kUnknownKind;
  return HasIllustratorExtension() ? &kIllustratorKind : &kPDFKind;
}

bool ReadableDocument::HasIllustratorExtension() const {
  return CommonFunctionality::FileExtensionIs(mPath, "ai") || CommonFunctionality::FileExtensionIs(mPath, "ait");
}

EDocumentKind ReadableDocument::Kind() {
  KindName();
  return mKind->kind;
}

const char* ReadableDocument::KindName() {
  if (!mKind) mKind = FindKind();
  return mKind->name;
}

const FontMetadata& ReadableDocument::Metadata() {
  if (!mMetadata) {
    mMetadata.emplace();
    mMetadata->code = ReadAllXMPFontDataFromFile(mPath, mMetadata->slug, mMetadata->adobe);
  }
  return *mMetadata;
}
