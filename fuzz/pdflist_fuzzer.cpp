// Any bytes as a PDF whose fonts are listed: each has a name.
#include "Check.h"
#include "Identification/FontKeys.h"
#include "Input.h"
#include "Readers/Document/DocumentFontKeys.h"
#include "Readers/Document/PDFFontList.h"
#include "support/TempFolder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const test_support::TempFolder sFolder;
  ReadableDocument document(sFolder.Write("document.pdf", BytesOf(data, size)));
  CHECK(!document.Open());
  const platform::Array records = platform::Array::Create();
  std::vector<std::string> problems;
  ListFontsOfPDF(document, records, problems);
  for (size_t i = 0; i < records.Count(); ++i) {
    const platform::Dictionary font(records.At(i));
    CHECK(!font.GetString(GlyphsureSupport::kGS_PostScriptNameKey).IsEmpty());
    CHECK(font.GetString(kDocumentFont_EmbeddedKey));
  }
  for (const std::string& problem : problems) CHECK(!problem.empty());
  return 0;
}
