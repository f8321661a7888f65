#include "Readers/Document/DocumentReaders.h"

#include "Identification/FontMerging.h"
#include "Readers/Document/PDFFontList.h"
#include "Readers/FontParserEPS.h"
#include "Readers/FontParserPDF.h"
#include "Readers/RawFontScan.h"
#include "Readers/XMPFontMetadata.h"

using namespace GlyphsureSupport;

namespace {

void Append(const platform::Array& found, platform::Array records) {
  for (size_t i = 0; i < found.Count(); ++i) records.Append(found.At(i));
}

void ReadMetadata(ReadableDocument& document, DocumentFonts& fonts) {
  // Not found is a file without metadata.
  const platform::Array list = fonts.From("list"), slug = fonts.From("slug");
  if (ReadAllXMPFontDataFromFile(document.Path(), slug, list) == CoreErrorCodes::kUnknownError) {
    fonts.problems.push_back("its XMP metadata can't be read");
  }
}

template <class Parser>
void Parse(ReadableDocument& document, DocumentFonts& fonts) {
  // By the kind that the document has. CreateParserWithFile knows less of them.
  Parser parser(platform::FileURL::FromFileSystemRepresentation(document.Path()), document.Path());
  parser.Parse();
  // Some parsers append to the array and others replace it.
  platform::Array found = platform::Array::Create();
  parser.GetObsoleteGlyphsureData(true, &found);
  Append(found, fonts.From("parser"));
}

void Scan(ReadableDocument& document, DocumentFonts& fonts) {
  std::vector<std::string> names;
  ScanForFontNames(document.Bytes(), document.Path(), names);
  Append(CreateFontArrayFromVectorOfPostscriptNames(names), fonts.From("scan"));
}

bool IsPostScript(ReadableDocument& document) {
  return document.Kind() == EDocumentKind::kPostScript || document.Kind() == EDocumentKind::kEPS;
}

// Any file may hold metadata, whatever its kind.
bool IsAny(ReadableDocument&) { return true; }

// Text that looks like a font's name in a PDF or in PostScript need not be one; those have readers that understand them. The
// documents of Illustrator are scanned in either form.
bool IsScanned(ReadableDocument& document) {
  return document.HasIllustratorExtension() || (document.Kind() != EDocumentKind::kPDF && !IsPostScript(document));
}

bool IsPDF(ReadableDocument& document) {
  return document.Kind() == EDocumentKind::kPDF || document.Kind() == EDocumentKind::kIllustrator;
}

constexpr DocumentReader kDocumentReaders[] = {
    {IsPDF, ListFontsOfPDF}, {IsPDF, Parse<FontParserPDF>}, {IsPostScript, Parse<FontParserEPS>},
    {IsScanned, Scan},       {IsAny, ReadMetadata},
};

}  // namespace

std::span<const DocumentReader> DocumentReaders() { return kDocumentReaders; }
