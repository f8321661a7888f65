// Creates font records from the fonts of a PDF, and reads and formats identification data in font dictionaries.
#include <algorithm>
#include <cstdio>

#include "Identification/FontNameIndex.h"
#include "Identification/FontNames.h"
#include "Identification/FontRecords.h"
#include "Readers/FontParserPDF.h"
#include "Services/DiagnosticLog.h"
#include "XCore/ECFExtensions/TextConversion.h"
#include "platform/PlainText.h"

using namespace GlyphsureSupport;
using platform::Array;
using platform::Dictionary;
using platform::String;

namespace {

constexpr std::string_view kFontIdentifier = "/FontIdentifier";
constexpr std::string_view kLineEnd = "\r\n";

struct SlugKey {
  std::string_view recordKey, pdfKey;
  bool isText;
};
// In the order in which they are read.
constexpr SlugKey kSlugKeys[] = {
    {kGS_FoundryKey, "/Foundry", true},
    {kGS_VersionKey, "/Version", true},
    {kGS_KerningChecksumKey, "/Kerning", false},
    {kGS_OutlineFileSizeKey, "/OutlineFileSize", false},
    {kGS_KindKey, "/Kind", true},
    {kGS_ChecksumKey, "/Checksum", false},
    {kGS_Glyphsure_1_2_Key, "/Glyphsure_1_2_Checksum", false},
    {kGS_FamilyKey, "/Family", true},
};

bool IsNumberText(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// The fonts in an array, and those added to it.
class FontCollector {
 public:
  explicit FontCollector(const Array& fonts) : mFonts(fonts), mIndex(fonts) {}
  void Add(const Dictionary& record) {
    const String name = record.GetString(kGS_PostScriptNameKey);
    if (name && mIndex.Find(name.View())) return;
    mFonts.Append(record);
    mIndex.Added(mFonts.Count() - 1, name);
  }

 private:
  Array mFonts;
  FontNameIndex mIndex;
};

}  // namespace

void FontParserPDF::GetObsoleteGlyphsureData(bool wantGlyphsure, Array* outFontArray) {
  if (!outFontArray || !*outFontArray) return;
  FontCollector fonts(*outFontArray);
  for (const PDFFontRecord& font : m_vFontRecords) {
    Dictionary record;
    ConvertPDFFontToFontRecord(font, &record, wantGlyphsure);
    PostProcessSingleFontForSlug(record);
    fonts.Add(record);
  }
  for (size_t i = 0; i < m_IllustratorFonts.Count(); ++i) fonts.Add(Dictionary(m_IllustratorFonts.At(i)));
}

void FontParserPDF::ConvertPDFFontToFontRecord(const PDFFontRecord& font, Dictionary* outRecord, bool wantGlyphsure) {
  if (!outRecord) return;
  // Producers write names in the encoding of their system.
  *outRecord = CreateGlyphsureDictionary(CFStringCreateWithUncertainEncoding(font.name.c_str()));
  ResolveDictionaryMMFontName(*outRecord);
  const std::string& text = font.sGlyphsureDictionary;
  if (!wantGlyphsure || text.find(kFontIdentifier) == std::string::npos) return;
  for (const SlugKey& key : kSlugKeys) AddKeyValueToFontRecord(text, key.pdfKey, key.recordKey, *outRecord);
}

bool FontParserPDF::ParseKeyFromGlyphsureBuffer(std::string_view dictionaryText, std::string_view pdfKey,
                                                std::string& outValue) {
  const size_t key = dictionaryText.find(pdfKey);
  if (key == std::string_view::npos) return false;
  size_t begin = dictionaryText.find_first_not_of(" \t", key + pdfKey.size());
  if (begin == std::string_view::npos) return false;
  size_t end = 0;
  if (dictionaryText[begin] == '(') {
    ++begin;
    end = dictionaryText.find(')', begin);
    // Parentheses within the value may be nested once.
    if (end != std::string_view::npos && dictionaryText.find('(', begin) < end) end = dictionaryText.find(')', end + 1);
    if (end == std::string_view::npos) return false;
  } else {
    end = std::min(dictionaryText.find_first_of(" \t\r\n\f/>", begin), dictionaryText.size());
  }
  if (end == begin) return false;
  outValue = dictionaryText.substr(begin, end - begin);
  return true;
}

void FontParserPDF::AddKeyValueToFontRecord(std::string_view dictionaryText, std::string_view pdfKey,
                                            std::string_view recordKey, Dictionary record) {
  std::string value;
  if (!ParseKeyFromGlyphsureBuffer(dictionaryText, pdfKey, value)) return;
  const String text = String::FromUTF8(value);
  if (!text) return;
  record.Set(recordKey, text);
  OutputIndentedAndFormattedString(0, "AddKeyValueToFontRecord adding '%s'='%s'", std::string(recordKey).c_str(),
                                   value.c_str());
}

bool FontParserPDF::PDFKeyForGlyphsureKey(std::string_view key, bool& outIsText, std::string& outPdfKey) {
  const auto* found = std::find_if(std::begin(kSlugKeys), std::end(kSlugKeys),
                                   [&](const SlugKey& slugKey) { return slugKey.recordKey == key; });
  if (found == std::end(kSlugKeys)) return false;
  outIsText = found->isText;
  outPdfKey = found->pdfKey;
  return true;
}

void FontParserPDF::ConvertFontRecordToPDFFont(const Dictionary& record, PDFFontRecord* font) {
  constexpr size_t kLeastKeys = 2, kLeastText = 3, kLongestValue = 255;
  if (record.Count() < kLeastKeys || !font) return;
  std::string& text = font->sGlyphsureDictionary;
  if (text.size() < kLeastText || !text.starts_with("<<")) {
    OutputIndentedAndFormattedString(
        0,
        "ERROR:  FontParserPDF::ConvertFontRecordToPDFFont wants to append Glyphsure data to a PDF_BASEFONT dict that is valid except for the closing PDF_ENDDICT");
    return;
  }
  const auto addLine = [&](std::string_view a, std::string_view b = {}, std::string_view c = {},
                           std::string_view d = {}) { text.append(a).append(b).append(c).append(d).append(kLineEnd); };
  addLine(kFontIdentifier);
  addLine("<<");
  addLine("/Type", " ", "/Glyphsure");
  for (size_t i = 0; i < record.Count(); ++i) {
    bool isText = false;
    std::string key;
    const String held(record.ValueAt(i));
    if (!held || !PDFKeyForGlyphsureKey(record.KeyAt(i), isText, key)) continue;
    const std::string_view value = platform::ValidStart(held.View().substr(0, kLongestValue));
    if (isText) {
      addLine(key, " (", value, ")");
    } else if (IsNumberText(value)) {
      addLine(key, " ", value);
    }
  }
  addLine(">>");
}

std::string FontParserPDF::CreateXRefEntry(int32_t offset, int32_t generation) {
  char line[32];
  const int length = std::snprintf(line, sizeof line, "%010d %05d n\r\n", offset, generation);
  return {line, static_cast<size_t>(length)};
}

size_t FontParserPDF::CalculateSubsection(size_t firstIndex, int32_t& outFirstObject) const {
  if (firstIndex >= m_vFontRecords.size()) return 0;
  outFirstObject = m_vFontRecords[firstIndex].object.nObjectNumber;
  size_t count = 1;
  while (firstIndex + count < m_vFontRecords.size() &&
         m_vFontRecords[firstIndex + count].object.nObjectNumber == outFirstObject + static_cast<int64_t>(count)) {
    ++count;
  }
  return count;
}
