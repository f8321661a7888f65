// Any bytes as a PDF file: reading its fonts takes time in proportion to the file, and twice gives the same.
// Identification data of a font read back from its dictionary.
#include "Check.h"
#include "Identification/FontKeys.h"
#include "Input.h"
#include "Readers/FontParserPDF.h"
#include "support/TempFolder.h"

namespace {

using platform::Array;
using platform::Dictionary;

Array Read(const std::string& path, size_t size, std::vector<PDFFontRecord>& outFonts) {
  FontParserPDF parser(platform::FileURL::FromFileSystemRepresentation(path), path);
  parser.Parse();
  CHECK(parser.GetBytesRead() <= 16 * size + 65536);
  Array records = Array::Create();
  parser.GetObsoleteGlyphsureData(true, &records);
  outFonts = parser.GetFontRecords();
  CHECK(outFonts.size() <= size);
  parser.IsUnsluggableDocument();
  return records;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const test_support::TempFolder sFolder;
  const std::string path = sFolder.Write("document", BytesOf(data, size));
  std::vector<PDFFontRecord> fonts;
  const Array records = Read(path, size, fonts);
  CHECK(records.Equals(Read(path, size, fonts)));

  Dictionary slug = Dictionary::Create();
  slug.Set(GlyphsureSupport::kGS_KerningChecksumKey, "4711");
  slug.Set(GlyphsureSupport::kGS_FamilyKey, "Family");
  for (PDFFontRecord& font : fonts) {
    const size_t before = font.sGlyphsureDictionary.size();
    FontParserPDF::ConvertFontRecordToPDFFont(slug, &font);
    if (before < 3) continue;
    std::string value;
    CHECK(FontParserPDF::ParseKeyFromGlyphsureBuffer(std::string_view(font.sGlyphsureDictionary).substr(before),
                                                     "/Family", value));
    CHECK(value == "Family");
  }
  return 0;
}
