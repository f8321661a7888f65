#include "Readers/Document/ScribusFonts.h"

#include <map>
#include <set>

#include "Readers/Document/MarkupReader.h"

namespace {

using Event = MarkupReader::Event;

struct Style {
  std::string font, parent, characterStyle;
};

class SLAFontReader {
 public:
  SLAFontReader(ByteStream& stream, StyledFonts& fonts) : mMarkup(stream), mFonts(fonts) {}

  std::string Read() {
    for (Event event = mMarkup.Next(); event != Event::kDone; event = mMarkup.Next()) {
      if (event == Event::kStart) Start(mMarkup.Name());
      if (event == Event::kEnd && mMarkup.Name() == "StoryText") EndStory();
    }
    EndStory();
    return mMarkup.Problem();
  }

 private:
  // Text is in attributes. Paragraph styles come after the text of their paragraphs.
  void Start(std::string_view name) {
    if (name == "DOCUMENT") mDocumentFont = mMarkup.Attribute("DFONT");
    if (name == "CHARSTYLE") {
      const std::string style = mMarkup.Attribute("CNAME");
      mCharacterStyles[style] = {mMarkup.Attribute("FONT"), mMarkup.Attribute("CPARENT"), ""};
      if (mMarkup.Attribute("DefaultStyle") == "1") mDefaultCharacters = style;
    }
    if (name == "STYLE") {
      const std::string style = mMarkup.Attribute("NAME");
      mParagraphStyles[style] = {mMarkup.Attribute("FONT"), mMarkup.Attribute("PARENT"), mMarkup.Attribute("CPARENT")};
      if (mMarkup.Attribute("DefaultStyle") == "1") mDefaultParagraph = style;
    }
    if (name == "DefaultStyle" || name == "para" || name == "trail") {
      mStoryStyles.insert(mMarkup.Attribute("PARENT"));
      Add(mMarkup.Attribute("FONT"), name == "DefaultStyle");
    }
    if (name == "ITEXT" && HasCharacters(mMarkup.Attribute("CH"))) {
      const std::string font = mMarkup.Attribute("FONT");
      const std::string style = mMarkup.Attribute("CPARENT");
      mHasPlainText = mHasPlainText || (font.empty() && style.empty());
      Add(font.empty() ? FontOfCharacters(style) : font, false);
    }
  }

  void Add(const std::string& font, bool isForStory) {
    if (font.empty()) return;
    if (isForStory) {
      mStoryFont = font;
    } else {
      mFonts.Add(StyleOfName(font));
    }
  }

  // Text without a font of its own has that of its paragraph's style, or of the story.
  void EndStory() {
    if (mHasPlainText) {
      for (const std::string& style : mStoryStyles) {
        const std::string font = FontOfParagraph(style);
        mFonts.Add(StyleOfName(!font.empty() ? font : !mStoryFont.empty() ? mStoryFont : DefaultFont()));
      }
      if (mStoryStyles.empty()) mFonts.Add(StyleOfName(!mStoryFont.empty() ? mStoryFont : DefaultFont()));
    }
    mStoryStyles.clear();
    mStoryFont.clear();
    mHasPlainText = false;
  }

  static constexpr int kMostParents = 100;

  std::string FontOfCharacters(const std::string& name) const {
    auto found = mCharacterStyles.find(name);
    for (int i = 0; i < kMostParents && found != mCharacterStyles.end(); ++i) {
      if (!found->second.font.empty()) return found->second.font;
      found = mCharacterStyles.find(found->second.parent);
    }
    return {};
  }

  std::string FontOfParagraph(const std::string& name) const {
    auto found = mParagraphStyles.find(name.empty() ? mDefaultParagraph : name);
    for (int i = 0; i < kMostParents && found != mParagraphStyles.end(); ++i) {
      if (!found->second.font.empty()) return found->second.font;
      std::string font = FontOfCharacters(found->second.characterStyle);
      if (!font.empty()) return font;
      found = mParagraphStyles.find(found->second.parent);
    }
    return {};
  }

  std::string DefaultFont() const {
    const std::string font = FontOfCharacters(mDefaultCharacters);
    return font.empty() ? mDocumentFont : font;
  }

  MarkupReader mMarkup;
  StyledFonts& mFonts;
  std::map<std::string, Style> mCharacterStyles, mParagraphStyles;
  std::string mDefaultCharacters, mDefaultParagraph, mDocumentFont;
  std::set<std::string> mStoryStyles;
  std::string mStoryFont;
  bool mHasPlainText = false;  // in this story: without a font of its own
};

}  // namespace

std::string ReadFontsOfSLA(ByteStream& stream, StyledFonts& fonts) { return SLAFontReader(stream, fonts).Read(); }
