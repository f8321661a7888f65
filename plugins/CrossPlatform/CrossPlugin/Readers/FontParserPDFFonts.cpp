// The fonts of a PDF file: font objects, the font list of its metadata, and whether it accepts identification data.
#include <algorithm>

#include "Identification/FontNames.h"
#include "Readers/FontParserPDF.h"
#include "Services/DiagnosticLog.h"

namespace {

constexpr const char* kNewFont = "Adding '%s' to m_vFontRecords";

void SetType(const std::string& subtype, PDFFontType& type) {
  if (subtype == "/Type1" || subtype == "/Type1C" || subtype == "/Type2") type = PDFFontType::kType1;
  if (subtype == "/TrueType") type = PDFFontType::kTrueType;
  if (subtype == "/Type3") type = PDFFontType::kType3;
  if (subtype == "/Type0") type = PDFFontType::kComposite;
  if (subtype == "/MMType1") type = PDFFontType::kMultipleMaster;
}

PDFFontEncoding EncodingOf(const std::string& name) {
  if (name == "/MacRomanEncoding") return PDFFontEncoding::kMacRoman;
  if (name == "/MacExpertEncoding") return PDFFontEncoding::kMacExpert;
  if (name == "/WinAnsiEncoding") return PDFFontEncoding::kWinAnsi;
  return PDFFontEncoding::kOther;
}

}  // namespace

void FontParserPDF::StripPDFLabel(std::string& name) {
  if (name.starts_with('/')) name.erase(0, 1);
}

void FontParserPDF::StripPDFFontName(std::string& name) {
  constexpr std::string_view kIdentifierPrefix = "AdobeCorpID-";
  StripPDFLabel(name);
  if (const size_t tag = name.rfind('+'); tag != std::string::npos) name.erase(0, tag + 1);
  std::replace(name.begin(), name.end(), ',', '-');
  if (name.starts_with(kIdentifierPrefix)) name.erase(0, kIdentifierPrefix.size());
}

void FontParserPDF::ProcessFonts() {
  Visited visited;
  for (const PDFObject& object : m_vFonts) {
    if (mError != 0) return;
    if (!visited.insert({object.nObjectNumber, object.nGeneration}).second) continue;
    OutputIndentedAndFormattedString(0, " processing font %d ...", object.nObjectNumber);
    // A font that cannot be found ends the list. The font list of a damaged document depends on it.
    if (!OpenObject(object, "font", __func__)) return;
    PDFFontRecord font;
    font.object = object;
    ReadFont(font);
    GlyphsureSupport::ResolveMMFontString(font.name);
    OutputIndentedAndFormattedString(0, kNewFont, font.name.c_str());
    m_vFontRecords.push_back(std::move(font));
  }
}

void FontParserPDF::ReadFont(PDFFontRecord& font) {
  int depth = 0;
  std::streamoff begin = 0;
  while (mError == 0) {
    const std::string& key = mInput.ProcessToken();
    if (key == "endobj") return;
    if (key == "<<") {
      if (depth++ == 0) begin = mInput.GetCurrentPosition() - static_cast<std::streamoff>(key.size());
    } else if (key == ">>") {
      const std::streamoff end = mInput.GetCurrentPosition() - static_cast<std::streamoff>(key.size());
      if (--depth == 0) font.sGlyphsureDictionary = mInput.ReadRange(begin, end);
    } else {
      ProcessFontKey(key, font);
    }
  }
}

void FontParserPDF::ProcessFontKey(const std::string& key, PDFFontRecord& font) {
  if (key == "/Type") {
    std::string type = mInput.ProcessToken();
    StripPDFLabel(type);
    if (type == "CMap") font.type = PDFFontType::kComposite;
  } else if (key == "/Subtype") {
    SetType(mInput.ProcessToken(), font.type);
  } else if (key == "/BaseFont" || key == "/FontName") {
    font.name = ReadFontName();
    StripPDFFontName(font.name);
  } else if (key == "/CharSet" || key == "/FontFile" || key == "/FontFile2" || key == "/FontFile3") {
    // The format assigns these types differently. Code that reads the records expects them this way.
    if (key != "/CharSet") font.type = key == "/FontFile" ? PDFFontType::kTrueType : PDFFontType::kType1;
    font.embedded = true;
    mInput.ProcessLine();
  } else if (key == "/Encoding") {
    // ReadFont counts the brackets of a dictionary.
    mInput.SkipWhitespace();
    font.encoding = mInput.PeekCharacter() == '<' ? PDFFontEncoding::kOther : EncodingOf(mInput.ProcessToken());
  } else if (key == "/FirstChar" || key == "/LastChar") {
    mInput.ProcessToken();
  } else if (key == "/Widths") {
    SkipWidths();
  }
}

// Some producers write the name as an object of its own.
std::string FontParserPDF::ReadFontName() {
  std::string name = mInput.ProcessToken();
  int32_t number = 0;
  if (name.empty() || !PDFInput::IsNumber(name, number)) return name;
  const std::streamoff position = mInput.GetCurrentPosition();
  const PDFObject object = ReadReferenceOf(number);
  if (object.bIsReference) name = OpenObject(object, "font name", __func__) ? mInput.ProcessToken() : "";
  mInput.SeekAndReadBlock(position);
  return name;
}

void FontParserPDF::SkipWidths() {
  if (mInput.ProcessToken() == "[") {
    mInput.SkipTo("]");
  } else {
    mInput.ProcessToken();
    mInput.ProcessToken();
  }
}

// Reads the list as PDF tokens, not as XML, so a compressed stream adds no fonts. The tokens are walked in pairs, and a
// tag is seen only where its "<" is the second of a pair. Which fonts the metadata of a document add depends on it.
void FontParserPDF::ProcessFontMetadata() {
  if (FindObject(m_Metadata)) {
    if (mInput.ProcessToken() == "obj") {
      std::set<std::string> names;
      for (const PDFFontRecord& font : m_vFontRecords) names.insert(font.name);
      while (mError == 0 && mInput.ProcessToken() != "endobj" && mInput.ProcessToken() != "endobj") {
        if (mInput.LastToken() == "<" && mInput.ProcessToken() == "xmpTPg:Fonts") ReadMetadataFonts(names);
      }
    } else {
      OutputIndentedAndFormattedString(0, "Unexpected token at start of XMP font metadata; exiting %s", __func__);
    }
  }
  mError = 0;
}

void FontParserPDF::ReadMetadataFonts(std::set<std::string>& names) {
  OutputIndentedAndFormattedString(0, "Found beginning of XMP font metadata");
  bool isFirstRead = false;
  while (mError == 0) {
    if (!isFirstRead) mInput.ProcessToken();
    isFirstRead = false;
    if (mInput.ProcessToken() != "<") continue;
    const std::string& tag = mInput.ProcessToken();
    if (tag == "/xmpTPg:Fonts") break;
    if (tag != "rdf:li") continue;
    OutputIndentedAndFormattedString(0, "Found beginning of one font record");
    AddMetadataFont(ReadMetadataFont(), names);
    // The ">" of its end.
    isFirstRead = true;
  }
  mInput.SkipTo(">");
}

void FontParserPDF::AddMetadataFont(const std::string& name, std::set<std::string>& names) {
  if (name.empty() || !names.insert(name).second) {
    OutputIndentedAndFormattedString(0, "Found '%s' but it's already in m_vFontRecords.  Ignoring it.", name.c_str());
    return;
  }
  OutputIndentedAndFormattedString(0, kNewFont, name.c_str());
  PDFFontRecord font;
  font.object = m_Metadata;
  font.name = name;
  m_vFontRecords.push_back(std::move(font));
}

std::string FontParserPDF::ReadMetadataFont() {
  std::string name;
  bool isTag = false;
  while (mError == 0) {
    const std::string& token = mInput.ProcessToken();
    if (isTag && token == "/rdf:li") break;
    isTag = token == "<";
    if (token != "stFnt:fontName") continue;
    mInput.SkipTo(">");
    name = mInput.ProcessToken();
  }
  mInput.SkipTo(">");
  return name;
}

bool FontParserPDF::IsUnsluggableDocument() {
  if (m_Encryption.IsKnown()) {
    OutputIndentedAndFormattedString(0, "Document cannot be slugged because it is encrypted");
    return true;
  }
  if (!HoldsPDFXMark()) return false;
  OutputIndentedAndFormattedString(0, "Document cannot be slugged because it is PDFX");
  return true;
}

bool FontParserPDF::HoldsPDFXMark() {
  bool found = false;
  // An error from Parse would end the search after one block.
  mError = 0;
  if (!FindFile() || !mInput.Open(mStream.Path())) return found;
  // A mark that crosses the border of two blocks is missed. Documents keep or lose their identification data by this
  // answer, so it must not change.
  do {
    mInput.ReadBlock();
    found = mInput.Block().find("GTS_PDFX") != std::string_view::npos;
  } while (!found && mError == 0);
  mInput.Close();
  mError = 0;
  return found;
}
