// Any bytes as a document of another program whose fonts are listed: each has a name and a style.
#include "Check.h"
#include "Identification/FontKeys.h"
#include "Input.h"
#include "Readers/Document/DocumentFontKeys.h"
#include "Readers/Document/ForeignFonts.h"
#include "support/TempFolder.h"

namespace {

using Read = void (*)(ReadableDocument&, platform::Array, std::vector<std::string>&);

Read ReaderOf(EDocumentKind kind) {
  switch (kind) {
    case EDocumentKind::kSVG: return ListFontsOfSVG;
    case EDocumentKind::kScribus: return ListFontsOfSLA;
    case EDocumentKind::kXCF: return ListFontsOfXCF;
    default: return kind >= EDocumentKind::kOpenDocument ? ListFontsOfArchive : nullptr;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const test_support::TempFolder sFolder;
  ReadableDocument document(sFolder.Write("document", BytesOf(data, size)));
  CHECK(!document.Open());
  const Read read = ReaderOf(document.Kind());
  if (!read) return 0;
  const platform::Array records = platform::Array::Create();
  std::vector<std::string> problems;
  read(document, records, problems);
  for (size_t i = 0; i < records.Count(); ++i) {
    const platform::Dictionary font(records.At(i));
    const bool hasStyle = static_cast<bool>(font.GetString(kDocumentFont_FamilyKey));
    CHECK(hasStyle != static_cast<bool>(font.GetString(GlyphsureSupport::kGS_PostScriptNameKey)));
    CHECK(!hasStyle || font.GetString(kDocumentFont_StretchKey));
  }
  for (const std::string& problem : problems) CHECK(!problem.empty());
  return 0;
}
