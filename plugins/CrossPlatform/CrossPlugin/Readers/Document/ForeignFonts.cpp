#include "Readers/Document/ForeignFonts.h"

#include "Identification/FontKeys.h"
#include "Readers/Document/DocumentFontKeys.h"
#include "Readers/Document/FontStyle.h"
#include "Readers/Document/MarkupReader.h"
#include "Readers/Document/ODFFonts.h"
#include "Readers/Document/OOXMLFonts.h"
#include "Readers/Document/SVGFonts.h"
#include "Readers/Document/ScribusFonts.h"
#include "Readers/Document/XCFFonts.h"
#include "Readers/Document/ZipDocument.h"

namespace {

using Problems = std::vector<std::string>;

void Take(const StyledFonts& fonts, std::string problem, platform::Array records, Problems& problems) {
  fonts.AppendTo(records);
  if (!problem.empty()) problems.push_back(std::move(problem));
}

std::unique_ptr<ByteStream> PlainStreamOf(ReadableDocument& document) {
  platform::ByteSource& source = document.Bytes().Source();
  return document.IsCompressed() ? UnpackedStreamOf(source) : StreamOf(source);
}

// Each layer of shapes is an image.
std::string ReadFontsOfKrita(const ZipDocument& archive, StyledFonts& fonts) {
  std::string problem;
  for (const std::string& name : archive.Names()) {
    if (!problem.empty()) break;
    if (!name.ends_with(".shapelayer/content.svg")) continue;
    if (const auto stream = archive.Open(name)) problem = ReadFontsOfSVG(*stream, fonts);
  }
  return problem;
}

// Lists PostScript names, so it does not go through StyledFonts.
std::string ReadFontsOfIDML(const ZipDocument& archive, platform::Array records) {
  const auto stream = archive.Open("Resources/Fonts.xml");
  if (!stream) return "its list of fonts is missing";
  MarkupReader markup(*stream);
  for (auto event = markup.Next(); event != MarkupReader::Event::kDone; event = markup.Next()) {
    if (event != MarkupReader::Event::kStart || markup.Name() != "Font") continue;
    const std::string name = markup.Attribute("PostScriptName");
    if (name.empty()) continue;
    platform::Dictionary record = platform::Dictionary::Create();
    record.Set(GlyphsureSupport::kGS_PostScriptNameKey, name);
    record.Set(kDocumentFont_TypeKey, markup.Attribute("FontType"));
    records.Append(record);
  }
  return markup.Problem();
}

}  // namespace

void ListFontsOfSVG(ReadableDocument& document, platform::Array records, Problems& problems) {
  StyledFonts fonts;
  Take(fonts, ReadFontsOfSVG(*PlainStreamOf(document), fonts), records, problems);
}

void ListFontsOfSLA(ReadableDocument& document, platform::Array records, Problems& problems) {
  StyledFonts fonts;
  Take(fonts, ReadFontsOfSLA(*PlainStreamOf(document), fonts), records, problems);
}

void ListFontsOfXCF(ReadableDocument& document, platform::Array records, Problems& problems) {
  StyledFonts fonts;
  Take(fonts, ReadFontsOfXCF(document.Bytes().Source(), fonts), records, problems);
}

void ListFontsOfArchive(ReadableDocument& document, platform::Array records, Problems& problems) {
  const ZipDocument archive(document.Path());
  if (!archive.Problem().empty()) {
    problems.push_back(archive.Problem());
    return;
  }
  StyledFonts fonts;
  std::string problem;
  switch (document.Kind()) {
    case EDocumentKind::kOpenDocument: problem = ReadFontsOfODF(archive, fonts); break;
    case EDocumentKind::kWordDocument: problem = ReadFontsOfDOCX(archive, fonts); break;
    case EDocumentKind::kWorkbook: problem = ReadFontsOfXLSX(archive, fonts); break;
    case EDocumentKind::kSlides: problem = ReadFontsOfPPTX(archive, fonts); break;
    case EDocumentKind::kKrita: problem = ReadFontsOfKrita(archive, fonts); break;
    case EDocumentKind::kIDML: problem = ReadFontsOfIDML(archive, records); break;
    default: break;
  }
  Take(fonts, std::move(problem), records, problems);
}
