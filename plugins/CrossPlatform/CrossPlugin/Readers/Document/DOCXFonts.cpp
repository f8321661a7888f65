#include <map>

#include "Readers/Document/MarkupReader.h"
#include "Readers/Document/OOXMLFonts.h"
#include "Readers/Document/OOXMLRun.h"
#include "Readers/Document/OOXMLTheme.h"

namespace {

using Event = MarkupReader::Event;

struct Style {
  RunProperties properties;
  std::string parent;
};

class DOCXFontReader {
 public:
  DOCXFontReader(const ZipDocument& archive, StyledFonts& fonts)
      : mArchive(archive), mFonts(fonts), mTheme(ReadOOXMLTheme(archive, "word/theme/theme1.xml", fonts)) {}

  std::string Read() {
    std::string problem = ReadFile("word/fontTable.xml", &DOCXFontReader::TakeFontTable);
    if (problem.empty()) problem = ReadFile("word/styles.xml", &DOCXFontReader::TakeStyles);
    for (const std::string& name : mArchive.Names()) {
      if (problem.empty() && HasText(name)) problem = ReadFile(name, &DOCXFontReader::TakeContent);
    }
    return problem;
  }

 private:
  using Take = void (DOCXFontReader::*)(Event);

  static bool HasText(const std::string& name) {
    for (const char* start : {"word/document", "word/header", "word/footer", "word/footnotes", "word/endnotes"}) {
      if (name.starts_with(start) && name.ends_with(".xml")) return true;
    }
    return false;
  }

  std::string ReadFile(const std::string& name, Take take) {
    const auto stream = mArchive.Open(name);
    if (!stream) return "";
    MarkupReader markup(*stream);
    mMarkup = &markup;
    for (Event event = markup.Next(); event != Event::kDone; event = markup.Next()) (this->*take)(event);
    mMarkup = nullptr;
    return markup.Problem();
  }

  void TakeFontTable(Event event) {
    if (event != Event::kStart) return;
    const std::string_view name = mMarkup->Name();
    if (name == "font") {
      mName = mMarkup->Attribute("name");
      mGenericFamily.clear();
      mPitch.clear();
      mPanose.clear();
    }
    if (name.starts_with("embed")) mFonts.Embed(mName);
    if (name == "family") mGenericFamily = mMarkup->Attribute("val");
    if (name == "pitch") mPitch = mMarkup->Attribute("val");
    if (name == "panose1") mPanose = mMarkup->Attribute("val");
    mFonts.Describe(mName, LookOf(mGenericFamily, mPitch, mPanose));
  }

  void TakeStyles(Event event) {
    if (event != Event::kStart) return;
    const std::string_view name = mMarkup->Name();
    if (name == "docDefaults") {
      mName.clear();  // the style of this name is the last parent of all
    } else if (name == "style") {
      mName = mMarkup->Attribute("styleId");
      const bool isDefault = IsSwitchedOn(mMarkup->Attribute("default")) && !mMarkup->Attribute("default").empty();
      if (isDefault && mMarkup->Attribute("type") == "paragraph") mDefaultParagraph = mName;
    } else if (name == "basedOn") {
      mStyles[mName].parent = mMarkup->Attribute("val");
    } else {
      TakeRunProperty(name, mStyles[mName].properties);
    }
  }

  void TakeRunProperty(std::string_view name, RunProperties& properties) const {
    if (name == "b") properties.isBold = IsSwitchedOn(mMarkup->Attribute("val"));
    if (name == "i") properties.isItalic = IsSwitchedOn(mMarkup->Attribute("val"));
    if (name != "rFonts") return;
    constexpr const char* kNames[] = {"ascii", "eastAsia", "cs"};
    constexpr const char* kThemeNames[] = {"asciiTheme", "eastAsiaTheme", "cstheme"};
    for (size_t i = 0; i < kScriptGroups; ++i) {
      std::string family = mTheme.FamilyOf(mMarkup->Attribute(kThemeNames[i]));
      if (family.empty()) family = mMarkup->Attribute(kNames[i]);
      if (!family.empty()) properties.families[i] = family;
    }
  }

  void TakeContent(Event event) {
    if (event == Event::kText) {
      if (mIsInText) TakeText();
      return;
    }
    const std::string_view name = mMarkup->Name();
    if (name == "t") mIsInText = event == Event::kStart;
    if (name == "pPr") mIsInParagraphProperties = event == Event::kStart;
    if (event == Event::kEnd) return;
    if (name == "p") mParagraphStyle = mDefaultParagraph;
    if (name == "pStyle") mParagraphStyle = mMarkup->Attribute("val");
    // Those of a paragraph are for its mark.
    if (mIsInParagraphProperties) return;
    if (name == "r") {
      mRun = {};
      mRunStyle.clear();
    }
    if (name == "rStyle") mRunStyle = mMarkup->Attribute("val");
    TakeRunProperty(name, mRun);
  }

  void InheritFromStyle(const std::string& name, RunProperties& properties) const {
    constexpr int kMostParents = 100;
    auto found = mStyles.find(name);
    for (int i = 0; i < kMostParents && found != mStyles.end() && !found->first.empty(); ++i) {
      properties.Inherit(found->second.properties);
      found = mStyles.find(found->second.parent);
    }
  }

  void TakeText() {
    if (!HasCharacters(mMarkup->Text())) return;
    RunProperties run = mRun;
    InheritFromStyle(mRunStyle, run);
    InheritFromStyle(mParagraphStyle, run);
    if (const auto defaults = mStyles.find(""); defaults != mStyles.end()) run.Inherit(defaults->second.properties);
    run.AddFontsOf(mMarkup->Text(), mFonts);
  }

  const ZipDocument& mArchive;
  StyledFonts& mFonts;
  const OOXMLTheme mTheme;
  MarkupReader* mMarkup = nullptr;  // of the file that is read now
  std::map<std::string, Style> mStyles;
  std::string mName;                            // of the style or font that is read now
  std::string mGenericFamily, mPitch, mPanose;  // of the font that is read now
  std::string mDefaultParagraph, mParagraphStyle, mRunStyle;
  RunProperties mRun;
  bool mIsInText = false, mIsInParagraphProperties = false;
};

}  // namespace

std::string ReadFontsOfDOCX(const ZipDocument& archive, StyledFonts& fonts) {
  return DOCXFontReader(archive, fonts).Read();
}
