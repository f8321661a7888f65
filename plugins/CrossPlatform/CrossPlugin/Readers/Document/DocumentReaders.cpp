#include "Readers/Document/DocumentReaders.h"

#include "Identification/FontMerging.h"
#include "Readers/Document/ForeignFonts.h"
#include "Readers/Document/PDFFontList.h"
#include "Readers/FontParserEPS.h"
#include "Readers/FontParserPDF.h"
#include "Readers/RawFontScan.h"

using namespace GlyphsureSupport;

namespace {

using Problems = std::vector<std::string>;

void Append(const platform::Array& found, platform::Array records) {
  for (size_t i = 0; i < found.Count(); ++i) records.Append(found.At(i));
}

void TakeAdobeList(ReadableDocument& document, platform::Array records, Problems& problems) {
  Append(document.Metadata().adobe, records);
  // Once for the list and the slug. A file without metadata is not a problem.
  if (document.Metadata().code == CoreErrorCodes::kUnknownError) problems.push_back("its XMP metadata cannot be read");
}

void TakeSlug(ReadableDocument& document, platform::Array records, Problems&) {
  Append(document.Metadata().slug, records);
}

template <class Parser>
void Parse(ReadableDocument& document, platform::Array records, Problems&) {
  // Chosen by the document's kind, because CreateParserWithFile knows fewer kinds.
  Parser parser(platform::FileURL::FromFileSystemRepresentation(document.Path()), document.Path());
  parser.Parse();
  // Some parsers append to the array and others replace it.
  platform::Array found = platform::Array::Create();
  parser.GetObsoleteGlyphsureData(true, &found);
  Append(found, records);
}

void Scan(ReadableDocument& document, platform::Array records, Problems&) {
  std::vector<std::string> names;
  ScanForFontNames(document.Bytes(), document.Path(), names);
  Append(CreateFontArrayFromVectorOfPostscriptNames(names), records);
}

bool IsPostScript(ReadableDocument& document) {
  return document.Kind() == EDocumentKind::kPostScript || document.Kind() == EDocumentKind::kEPS;
}

// Files of any kind may contain metadata.
bool IsAny(ReadableDocument&) { return true; }

template <EDocumentKind kKind>
bool Is(ReadableDocument& document) {
  return document.Kind() == kKind;
}

bool IsArchive(ReadableDocument& document) { return document.Kind() >= EDocumentKind::kOpenDocument; }

// Documents of these kinds have a reader that understands them, and text in them that looks like a font's name may be
// something else. Documents of Illustrator are scanned in either form.
bool IsScanned(ReadableDocument& document) {
  const bool isUnderstood = document.Kind() == EDocumentKind::kPDF || document.Kind() >= EDocumentKind::kSVG;
  return document.HasIllustratorExtension() || (!isUnderstood && !IsPostScript(document));
}

bool IsPDF(ReadableDocument& document) {
  return document.Kind() == EDocumentKind::kPDF || document.Kind() == EDocumentKind::kIllustrator;
}

constexpr DocumentReader kDocumentReaders[] = {
    {"pdf", IsPDF, ListFontsOfPDF},
    {"parser", IsPDF, Parse<FontParserPDF>},
    {"parser", IsPostScript, Parse<FontParserEPS>},
    {"text", Is<EDocumentKind::kSVG>, ListFontsOfSVG},
    {"text", Is<EDocumentKind::kScribus>, ListFontsOfSLA},
    {"text", Is<EDocumentKind::kXCF>, ListFontsOfXCF},
    {"text", IsArchive, ListFontsOfArchive},
    {"scan", IsScanned, Scan},
    {"list", IsAny, TakeAdobeList},
    {"slug", IsAny, TakeSlug},
};

}  // namespace

std::span<const DocumentReader> DocumentReaders() { return kDocumentReaders; }
