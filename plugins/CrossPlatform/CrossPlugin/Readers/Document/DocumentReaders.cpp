#include "Readers/Document/DocumentReaders.h"

#include "Identification/FontMerging.h"
#include "Readers/Document/PDFFontList.h"
#include "Readers/FontParser.h"
#include "Readers/RawFontScan.h"
#include "Readers/XMPFontMetadata.h"

using namespace GlyphsureSupport;

namespace {

void ReadMetadata(ReadableDocument& document, DocumentFonts& fonts) {
  // Not found is a file without metadata.
  if (ReadAllXMPFontDataFromFile(document.Path(), fonts.slug, fonts.list) == CoreErrorCodes::kUnknownError) {
    fonts.problems.push_back("its XMP metadata can't be read");
  }
}

void Parse(ReadableDocument& document, DocumentFonts& fonts) {
  const auto parser =
      FontParser::CreateParserWithFile(document.Path(), true, FontParser::GetDefaultSystemPathStyle());
  if (!parser) return;
  parser->Parse();
  parser->GetObsoleteGlyphsureData(true, &fonts.parser);
}

void Scan(ReadableDocument& document, DocumentFonts& fonts) {
  std::vector<std::string> names;
  ScanForFontNames(document.Bytes(), document.Path(), names);
  MergeFontsIntoFontsArray(CreateFontArrayFromVectorOfPostscriptNames(names), fonts.scan);
}

// Any file may hold metadata, whatever its kind.
bool IsAny(ReadableDocument&) { return true; }

// Text that looks like a font's name in a PDF or in PostScript need not be one; those have readers that understand them.
bool IsScanned(ReadableDocument& document) {
  const EDocumentKind kind = document.Kind();
  return kind != EDocumentKind::kPDF && kind != EDocumentKind::kPostScript && kind != EDocumentKind::kEPS;
}

bool IsPDF(ReadableDocument& document) {
  return document.Kind() == EDocumentKind::kPDF || document.Kind() == EDocumentKind::kIllustrator;
}

constexpr DocumentReader kDocumentReaders[] = {
    {IsPDF, ListFontsOfPDF},
    {IsPDF, Parse},
    {IsScanned, Scan},
    {IsAny, ReadMetadata},
};

}  // namespace

std::span<const DocumentReader> DocumentReaders() { return kDocumentReaders; }
