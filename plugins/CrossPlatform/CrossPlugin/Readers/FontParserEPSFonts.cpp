// The fonts of an EPS file, and creating them from the text of comments.
#include <sstream>

#include "Identification/FontKeys.h"
#include "Identification/FontNames.h"
#include "Identification/FontRecords.h"
#include "Readers/FontParserEPS.h"
#include "Services/DiagnosticLog.h"
#include "XCore/ECFExtensions/TextConversion.h"

using namespace GlyphsureSupport;
using platform::Array;
using platform::Dictionary;
using platform::String;

namespace {

constexpr const char* kEPS_Glyphsure_PostScriptName = "NAME";
constexpr const char* kEPS_Glyphsure_Kind = "KIND";
constexpr const char* kEPS_Glyphsure_Foundry = "FOUNDRY";
constexpr const char* kEPS_Glyphsure_Version = "VERSION";
constexpr const char* kEPS_Glyphsure_KerningChecksum = "KERNINGCHECKSUM";
constexpr const char* kEPS_Glyphsure_OutlineFileSize = "OUTLINEFILESIZE";
constexpr const char* kEPS_Glyphsure_Checksum = "CHECKSUM";
constexpr const char* kEPS_Glyphsure_Family = "FAMILY";

struct Attribute {
  const char* name;
  std::string_view key;
};
// The newer checksum has no attribute: readers of such files know only the older one.
constexpr Attribute kAttributes[] = {
    {kEPS_Glyphsure_PostScriptName, kGS_PostScriptNameKey},
    {kEPS_Glyphsure_Kind, kGS_KindKey},
    {kEPS_Glyphsure_Foundry, kGS_FoundryKey},
    {kEPS_Glyphsure_Version, kGS_VersionKey},
    {kEPS_Glyphsure_KerningChecksum, kGS_KerningChecksumKey},
    {kEPS_Glyphsure_OutlineFileSize, kGS_OutlineFileSizeKey},
    {kEPS_Glyphsure_Checksum, kGS_ChecksumKey},
    {kEPS_Glyphsure_Family, kGS_FamilyKey},
};

// Reads the next NAME="VALUE". Returns false if there is none, for example at "/>".
bool ReadGlyphsureAttribute(std::istream& stream, std::string& outName, std::string& outValue) {
  while (stream.peek() == ' ') stream.ignore();
  if (!std::getline(stream, outName, '=') || stream.eof()) return false;
  stream.ignore();  // the opening quotation mark
  return std::getline(stream, outValue, '"') && !stream.eof();
}

}  // namespace

const char* FontParserEPS::GetKeyForAttributeName(std::string_view name) {
  for (const Attribute& attribute : kAttributes) {
    if (attribute.name == name) return attribute.key.data();
  }
  return nullptr;
}

bool FontParserEPS::OutputKeyForGlyphsureKey(std::string_view key, std::string& outName) {
  for (const Attribute& attribute : kAttributes) {
    if (attribute.key != key) continue;
    outName = attribute.name;
    return true;
  }
  return false;
}

void FontParserEPS::Append(const Dictionary& record) {
  mFonts.Append(record);
  mIndex.Added(mFonts.Count() - 1, record.GetString(kGS_PostScriptNameKey));
}

void FontParserEPS::RegisterFont(const std::string& name) {
  // Producers write names in the encoding of their system.
  const String text = CFStringCreateWithUncertainEncoding(name.c_str());
  if (text.View().empty()) return;
  // A subset tag and additions of an application stay in the name, because data were stored under that name.
  const Dictionary record = CreateGlyphsureDictionary(text);
  ResolveDictionaryMMFontName(record);
  if (!mIndex.Find(record.GetString(kGS_PostScriptNameKey).View())) Append(record);
}

void FontParserEPS::RemoveFontWithPostScriptName(const std::string& name) {
  while (const std::optional<size_t> at = mIndex.Find(name)) {
    const String found = Dictionary(mFonts.At(*at)).GetString(kGS_PostScriptNameKey);
    if (found.View() != name) return;
    mIndex.Replaced(*at, found, String());
    mFonts.Set(*at, platform::Value());
  }
}

void FontParserEPS::RegisterFontWithGlyphsure(const std::string& fontSpecText) {
  std::istringstream stream(fontSpecText);
  std::string word, name, value;
  if (stream.get() != '<' || !(stream >> word) || word != "FONTSPEC") return;
  Dictionary record = Dictionary::Create();
  while (ReadGlyphsureAttribute(stream, name, value)) {
    const char* const key = GetKeyForAttributeName(name);
    if (const String text = String::FromUTF8(value); key && text) record.Set(key, text);
  }
  const String fontName = record.GetString(kGS_PostScriptNameKey);
  if (!fontName) return;
  if (fontName.View().find(' ') != std::string_view::npos) {
    OutputIndentedAndFormattedString(0, "Discarding bogus postscript name:  '%s'", fontName.CString());
  } else {
    ResolveDictionaryMMFontName(record);
    RemoveFontWithPostScriptName(record.GetString(kGS_PostScriptNameKey).Text());
    Append(record);
  }
  PostProcessSingleFontForSlug(record);
}

Array FontParserEPS::Fonts() const {
  Array fonts = Array::Create();
  for (size_t i = 0; i < mFonts.Count(); ++i) {
    if (const Dictionary record(mFonts.At(i)); record) fonts.Append(record);
  }
  return fonts;
}

void FontParserEPS::GetObsoleteGlyphsureData(bool wantGlyphsure, Array* outFontArray) {
  if (!outFontArray) return;
  *outFontArray = Fonts();
  if (wantGlyphsure) return;
  for (size_t i = 0; i < outFontArray->Count(); ++i) {
    const Dictionary record(outFontArray->At(i));
    outFontArray->Set(i, CreateGlyphsureDictionary(record.GetString(kGS_PostScriptNameKey)));
  }
}
