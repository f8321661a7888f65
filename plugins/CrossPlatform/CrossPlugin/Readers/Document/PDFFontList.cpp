#include "Readers/Document/PDFFontList.h"

#include "Identification/FontKeys.h"
#include "Readers/Document/DocumentFontKeys.h"
#include "Readers/Document/FontLook.h"
#include "Readers/Document/QPDFFontWalk.h"
#include "platform/TextEncoding.h"

using platform::Dictionary;

namespace {

// A name whose bytes are not UTF-8 gets the escapes with which a PDF can write them.
std::string AsText(const std::string& name) {
  if (platform::IsValidUTF8(name)) return name;
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      text += c;
    } else {
      text += {'#', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return text;
}

FontLook LookOf(const ListedPDFFont& font) {
  FontLook look;
  if (font.isSerif) look.design = platform::FontDesign::kSerif;
  if (font.isScript) look.design = platform::FontDesign::kScript;
  if (font.isMonospaced) look.isMonospaced = true;
  if (font.isItalic) look.isItalic = true;
  look.weight = font.weight;
  look.letterWidths = font.letterWidths;
  return look;
}

}  // namespace

void ListFontsOfPDF(ReadableDocument& document, platform::Array records, std::vector<std::string>& problems) {
  const auto take = [&records](const ListedPDFFont& font) {
    Dictionary record = Dictionary::Create();
    record.Set(GlyphsureSupport::kGS_PostScriptNameKey, AsText(font.name));
    record.Set(kDocumentFont_EmbeddedKey, font.isEmbedded ? "1" : "0");
    record.Set(kDocumentFont_TypeKey, AsText(font.type));
    if (!font.subsetTag.empty()) record.Set(kDocumentFont_SubsetTagKey, font.subsetTag);
    SetLook(record, LookOf(font));
    records.Append(record);
  };
  WalkFontsOfPDF(document.Bytes().Source(), take, problems);
}
