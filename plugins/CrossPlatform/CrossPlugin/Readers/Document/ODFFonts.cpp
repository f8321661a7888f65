#include "Readers/Document/ODFFonts.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <optional>
#include <vector>

#include "Readers/Document/CSSFonts.h"
#include "Readers/Document/MarkupReader.h"
#include "Readers/Document/TextScripts.h"

namespace {

// A style has a font for each group of scripts.
constexpr const char* kSuffixes[kScriptGroups] = {"", "-asian", "-complex"};

struct Properties {
  struct Font {
    std::optional<std::string> family;
    std::optional<int> weight;
    std::optional<bool> isItalic;
  };
  std::array<Font, kScriptGroups> fonts;

  // Fills in what is missing here.
  void Inherit(const Properties& other) {
    for (size_t i = 0; i < fonts.size(); ++i) {
      if (!fonts[i].family) fonts[i].family = other.fonts[i].family;
      if (!fonts[i].weight) fonts[i].weight = other.fonts[i].weight;
      if (!fonts[i].isItalic) fonts[i].isItalic = other.fonts[i].isItalic;
    }
  }
};

struct Style {
  Properties properties;
  std::string parent;  // key in the map of styles
};

// "text" of the family "paragraph" and "text" of the family "text" are two styles.
std::string KeyOf(const std::string& family, const std::string& name) { return family + "\n" + name; }

class ODFFontReader {
 public:
  explicit ODFFontReader(StyledFonts& fonts) : mFonts(fonts) {}

  std::string Read(ByteStream& stream) {
    MarkupReader markup(stream);
    mMarkup = &markup;
    mOpen.assign(1, {});
    mDepth = mBodyDepth = mStyleDepth = 0;
    for (;;) {
      switch (markup.Next()) {
        case MarkupReader::Event::kStart: Start(); break;
        case MarkupReader::Event::kEnd: End(); break;
        case MarkupReader::Event::kText: TakeText(); break;
        case MarkupReader::Event::kDone: return markup.Problem();
      }
    }
  }

 private:
  void Start() {
    ++mDepth;
    const std::string name(mMarkup->Name());
    // Headers and footers are in the master pages.
    if (mBodyDepth == 0 && (name == "body" || name == "master-styles")) mBodyDepth = mDepth;
    if (mBodyDepth != 0) {
      StartCell(name);
      mOpen.push_back(PropertiesOf(name));
    } else {
      StartDefinition(name);
    }
  }

  void End() {
    if (mBodyDepth != 0) mOpen.pop_back();
    if (mDepth == mBodyDepth) mBodyDepth = 0;
    if (mDepth == mStyleDepth) mStyleDepth = 0;
    --mDepth;
  }

  void StartDefinition(const std::string& name) {
    if (name == "font-face") {
      mFace = mMarkup->Attribute("name");
      FontStyle face;
      ApplyCSSProperty("font-family", mMarkup->Attribute("font-family"), face);
      mFamilies[mFace] = face.family;
      mFonts.Describe(face.family, LookOf(mMarkup->Attribute("font-family-generic"), mMarkup->Attribute("font-pitch"),
                                          mMarkup->Attribute("panose-1")));
    } else if (name == "font-face-uri") {
      mFonts.Embed(mFamilies[mFace]);
    } else if (name == "style" || name == "default-style") {
      const std::string family = mMarkup->Attribute("family");
      const std::string parent = mMarkup->Attribute("parent-style-name");
      mStyle = KeyOf(family, mMarkup->Attribute("name", "style"));
      mStyleDepth = mDepth;
      mStyles[mStyle] = {{}, parent.empty() ? "" : KeyOf(family, parent)};
    } else if (name == "text-properties" && mStyleDepth != 0) {  // not of bullets and numbers
      mStyles[mStyle].properties = DirectProperties();
    }
  }

  // Notes the column of a cell, and the styles of columns and rows for cells without their own.
  void StartCell(const std::string& name) {
    const auto repeated = std::strtoull(mMarkup->Attribute("number-columns-repeated").c_str(), nullptr, 10);
    const uint64_t columns = std::clamp<uint64_t>(repeated, 1, kMostColumns);
    const std::string style = mMarkup->Attribute("default-cell-style-name");
    if (name == "table") mColumnStyles.clear();
    if (name == "table-column") {
      const uint64_t first = mColumnStyles.empty() ? 0 : mColumnStyles.rbegin()->first;
      mColumnStyles[first + columns] = style;
    }
    if (name == "table-row") {
      mRowStyle = style;
      mNextColumn = 0;
    }
    if (name != "table-cell" && name != "covered-table-cell") return;
    const auto column = mColumnStyles.upper_bound(mNextColumn);
    mCellStyle = !mRowStyle.empty() || column == mColumnStyles.end() ? mRowStyle : column->second;
    mNextColumn += columns;
  }

  Properties DirectProperties() const {
    Properties properties;
    mMarkup->ForEachAttribute([&](std::string_view name, std::string_view value) {
      for (size_t i = kScriptGroups; i-- > 0;) {
        if (!name.ends_with(kSuffixes[i])) continue;
        SetProperty(name.substr(0, name.size() - std::string_view(kSuffixes[i]).size()), value, properties.fonts[i]);
        return;
      }
    });
    return properties;
  }

  void SetProperty(std::string_view name, std::string_view value, Properties::Font& font) const {
    FontStyle style;
    ApplyCSSProperty(name, value, style);
    if (name == "font-name") {
      const auto declared = mFamilies.find(std::string(value));
      font.family = declared == mFamilies.end() ? std::string(value) : declared->second;
    } else if (name == "font-family" && !font.family) {
      font.family = style.family;
    } else if (name == "font-weight") {
      font.weight = style.weight;
    } else if (name == "font-style") {
      font.isItalic = style.isItalic;
    }
  }

  // The style of a paragraph, a span, a shape or a cell, over that of the elements around it.
  Properties PropertiesOf(const std::string& element) const {
    const char* family = element == "span" || element == "a" ? "text"
                         : element == "table-cell"           ? "table-cell"
                         : element == "p" || element == "h"  ? "paragraph"
                                                             : "graphic";
    Properties properties;
    mMarkup->ForEachAttribute([&](std::string_view name, std::string_view value) {
      if (name != "style-name" && name != "text-style-name") return;
      for (const char* kind : {name == "text-style-name" ? "paragraph" : family, "presentation"}) {
        properties.Inherit(Resolved(KeyOf(kind, std::string(value))));
      }
    });
    if (element == "table-cell") properties.Inherit(Resolved(KeyOf("table-cell", mCellStyle)));
    properties.Inherit(mOpen.back());
    return properties;
  }

  // A style with its parents.
  Properties Resolved(const std::string& key) const {
    constexpr int kMostParents = 100;
    Properties properties;
    auto found = mStyles.find(key);
    for (int i = 0; i < kMostParents && found != mStyles.end(); ++i) {
      properties.Inherit(found->second.properties);
      found = mStyles.find(found->second.parent);
    }
    return properties;
  }

  void TakeText() {
    if (mBodyDepth == 0 || !HasCharacters(mMarkup->Text())) return;
    Properties properties = mOpen.back();
    for (const char* family : {"paragraph", "graphic", "table-cell"}) properties.Inherit(Resolved(KeyOf(family, "")));
    const ScriptSet scripts = ScriptGroupsOf(mMarkup->Text());
    for (size_t i = 0; i < kScriptGroups; ++i) {
      const Properties::Font& font = properties.fonts[i];
      if (!scripts[i] || !font.family) continue;
      mFonts.Add({*font.family, font.weight.value_or(FontStyle::kNormalWeight), font.isItalic.value_or(false)});
    }
  }

  StyledFonts& mFonts;
  MarkupReader* mMarkup = nullptr;               // of the file that is read now
  std::map<std::string, std::string> mFamilies;  // by the name of the declaration
  std::map<std::string, Style> mStyles;
  std::string mFace, mStyle;  // the declarations that are read now
  int mStyleDepth = 0;        // of the style that is read now; 0 if there is none
  static constexpr uint64_t kMostColumns = 1 << 20;
  std::map<uint64_t, std::string> mColumnStyles;  // by the column behind those with the style
  std::string mRowStyle, mCellStyle;
  uint64_t mNextColumn = 0;
  int mDepth = 0, mBodyDepth = 0;  // of the element with text that is open; 0 if there is none
  std::vector<Properties> mOpen;   // of the elements with text; never empty
};

}  // namespace

std::string ReadFontsOfODF(const ZipDocument& archive, StyledFonts& fonts) {
  ODFFontReader reader(fonts);
  // Named styles first, because the content refers to them.
  for (const char* name : {"styles.xml", "content.xml"}) {
    const auto stream = archive.Open(name);
    if (!stream) continue;
    if (std::string problem = reader.Read(*stream); !problem.empty()) return problem;
  }
  return "";
}
