#include "docfonts/FontCollector.h"

#include <algorithm>
#include <cstdlib>
#include <unordered_map>

#include "Identification/FontKeys.h"
#include "Identification/FontRecords.h"
#include "Readers/Document/DocumentFontKeys.h"
#include "Readers/Document/DocumentReaders.h"
#include "platform/Files.h"

namespace docfonts {

namespace {

using platform::Array;
using platform::Dictionary;
using platform::String;
using namespace GlyphsureSupport;

// A style behind a comma or a hyphen: readers differ in which they give of a name. To one reader they are two names.
std::string LooseKeyOf(std::string name) {
  std::replace(name.begin(), name.end(), ',', '-');
  return name;
}

class Merger {
 public:
  explicit Merger(Report& report) : mReport(report) {}

  void Take(const char* source, const Array& records) {
    for (size_t i = 0; i < records.Count(); ++i) {
      const Dictionary record(records.At(i));
      const std::optional<FontStyle> style = StyleOf(record);
      const std::string name = style ? NameOf(*style) : record.GetString(kGS_PostScriptNameKey).Text();
      if (name.empty()) continue;
      TakeRecord(source, name, record).style = style;
    }
  }

 private:
  Font& TakeRecord(const char* source, const std::string& name, const Dictionary& record) {
    Font& font = mReport.fonts[PlaceOf(source, name)];
    if (font.found.empty() || font.found.back() != source) font.found.push_back(source);
    if (const String embedded = record.GetString(kDocumentFont_EmbeddedKey)) font.embedded = embedded.View() == "1";
    font.look.Add(LookOfRecord(record));
    Fill(font.subset, record, kDocumentFont_SubsetTagKey);
    Fill(font.type, record, kDocumentFont_TypeKey);
    Fill(font.type, record, kAdobeXMPFontData_TypeKey);
    // A record of the name alone identifies nothing.
    for (size_t i = 0; i < record.Count(); ++i) {
      const std::string key(record.KeyAt(i));
      if (key == kGS_PostScriptNameKey || !IsSluggableKey(key)) continue;
      if (const String value{record.ValueAt(i)}) font.slug.emplace(key, value.Text());
    }
    return font;
  }
  size_t PlaceOf(const char* source, const std::string& name) {
    const size_t next = mReport.fonts.size();
    const auto [exact, isNew] = mPlaces.emplace(name, next);
    if (!isNew) return exact->second;
    const auto [loose, isNewToAll] = mLoosePlaces.emplace(LooseKeyOf(name), next);
    if (isNewToAll || mReport.fonts[loose->second].found.back() == source) {
      mReport.fonts.push_back({.name = name});
    } else {
      exact->second = loose->second;
    }
    return exact->second;
  }
  // What the record names instead of a PostScript name.
  static std::optional<FontStyle> StyleOf(const Dictionary& record) {
    const auto number = [&](std::string_view key) { return std::atoi(record.GetString(key).Text().c_str()); };
    const String family = record.GetString(kDocumentFont_FamilyKey);
    if (!family) return std::nullopt;
    return FontStyle{family.Text(), number(kDocumentFont_WeightKey), number(kDocumentFont_ItalicKey) != 0,
                     number(kDocumentFont_StretchKey)};
  }
  static void Fill(std::string& field, const Dictionary& record, std::string_view key) {
    if (field.empty()) field = record.GetString(key).Text();
  }

  Report& mReport;
  std::unordered_map<std::string, size_t> mPlaces, mLoosePlaces;
};

}  // namespace

Report CollectFonts(const std::string& path) {
  Report report{.file = path};
  ReadableDocument document(path);
  if (const std::error_code error = document.Open()) {
    report.problems.push_back(platform::DescribeError(error));
    return report;
  }
  report.kind = document.KindName();
  Merger merger(report);
  for (const DocumentReader& reader : DocumentReaders()) {
    if (!reader.sniff(document)) continue;
    const Array records = Array::Create();
    reader.read(document, records, report.problems);
    merger.Take(reader.name, records);
  }
  if (document.Bytes().HasFailed()) report.problems.push_back(platform::DescribeError(document.Bytes().Error()));
  return report;
}

}  // namespace docfonts
