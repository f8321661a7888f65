#include "Readers/Document/OOXMLFonts.h"

#include <set>
#include <vector>

#include "Readers/Document/MarkupReader.h"
#include "Readers/Document/OOXMLTheme.h"

namespace {

using Event = MarkupReader::Event;

// The fonts of a workbook, and which of them each cell format uses.
struct CellFonts {
  std::vector<FontStyle> fonts;
  std::vector<size_t> formats;
};

std::string ReadCellFonts(const ZipDocument& archive, CellFonts& cells, StyledFonts& fonts) {
  const auto stream = archive.Open("xl/styles.xml");
  if (!stream) return "";
  MarkupReader markup(*stream);
  bool isInFonts = false, isInFormats = false;
  for (Event event = markup.Next(); event != Event::kDone; event = markup.Next()) {
    if (event == Event::kText) continue;
    const std::string_view name = markup.Name();
    if (name == "fonts") isInFonts = event == Event::kStart;
    if (name == "cellXfs") isInFormats = event == Event::kStart;
    if (event == Event::kEnd) continue;
    if (isInFormats && name == "xf") cells.formats.push_back(NumberOf(markup, "fontId"));
    if (!isInFonts) continue;
    if (name == "font") cells.fonts.emplace_back();
    if (cells.fonts.empty()) continue;
    FontStyle& font = cells.fonts.back();
    if (name == "name") font.family = markup.Attribute("val");
    if (name == "family") fonts.Describe(font.family, LookOf(GenericFamilyOf(NumberOf(markup, "val")), "", ""));
    if (name == "b" && IsSwitchedOn(markup.Attribute("val"))) font.weight = FontStyle::kBoldWeight;
    if (name == "i" && IsSwitchedOn(markup.Attribute("val"))) font.isItalic = true;
  }
  return markup.Problem();
}

// Finds the formats of the cells that show something.
std::string ReadUsedFormats(ByteStream& stream, std::set<size_t>& used) {
  MarkupReader markup(stream);
  size_t format = 0;
  for (Event event = markup.Next(); event != Event::kDone; event = markup.Next()) {
    if (event != Event::kStart) continue;
    if (markup.Name() == "c") format = NumberOf(markup, "s");
    if (markup.Name() == "v" || markup.Name() == "is") used.insert(format);
  }
  return markup.Problem();
}

bool IsIn(const std::string& name, const char* folder) { return name.starts_with(folder) && name.ends_with(".xml"); }

}  // namespace

std::string ReadFontsOfXLSX(const ZipDocument& archive, StyledFonts& fonts) {
  CellFonts cells;
  std::string problem = ReadCellFonts(archive, cells, fonts);
  std::set<size_t> used;
  for (const std::string& name : archive.Names()) {
    if (!problem.empty()) break;
    if (!IsIn(name, "xl/worksheets/sheet")) continue;
    if (const auto stream = archive.Open(name)) problem = ReadUsedFormats(*stream, used);
  }
  for (const size_t format : used) {
    const size_t font = format < cells.formats.size() ? cells.formats[format] : cells.fonts.size();
    if (font < cells.fonts.size()) fonts.Add(cells.fonts[font]);
  }
  return problem;
}
