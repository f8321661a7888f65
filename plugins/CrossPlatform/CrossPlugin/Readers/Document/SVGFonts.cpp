#include "Readers/Document/SVGFonts.h"

#include <vector>

#include "Readers/Document/CSSFonts.h"
#include "Readers/Document/MarkupReader.h"

namespace {

class SVGFontReader {
 public:
  SVGFontReader(ByteStream& stream, StyledFonts& fonts) : mMarkup(stream), mFonts(fonts) {}

  std::string Read() {
    mOpen.push_back({});
    for (;;) {
      switch (mMarkup.Next()) {
        case MarkupReader::Event::kStart: Start(); break;
        case MarkupReader::Event::kEnd: End(); break;
        case MarkupReader::Event::kText: TakeText(); break;
        case MarkupReader::Event::kDone: return mMarkup.Problem();
      }
    }
  }

 private:
  struct Element {
    FontStyle style;
    bool isText = false;  // in an element whose characters are drawn
    bool isSheet = false;
  };

  void Start() {
    Element element = mOpen.back();
    const std::string name(mMarkup.Name());
    element.isSheet = name == "style";
    element.isText = element.isText || name == "text" || name == "flowRoot";
    // A title inside text is shown when the pointer is over it, by the program.
    if (name == "title" || name == "desc" || name == "metadata") element.isText = false;
    mMarkup.ForEachAttribute(
        [&](std::string_view attribute, std::string_view value) { ApplyCSSProperty(attribute, value, element.style); });
    mSheet.Apply(name, mMarkup.Attribute("class"), mMarkup.Attribute("id"), element.style);
    ApplyCSSDeclarations(mMarkup.Attribute("style"), element.style);
    mOpen.push_back(std::move(element));
  }

  void End() {
    mOpen.pop_back();
    for (const std::string& family : mSheet.Embedded()) mFonts.Embed(family);
  }

  void TakeText() {
    if (mOpen.back().isSheet) mSheet.Append(mMarkup.Text());
    if (mOpen.back().isText && HasCharacters(mMarkup.Text())) mFonts.Add(mOpen.back().style);
  }

  MarkupReader mMarkup;
  StyledFonts& mFonts;
  CSSStyleSheet mSheet;
  std::vector<Element> mOpen;  // never empty
};

}  // namespace

std::string ReadFontsOfSVG(ByteStream& stream, StyledFonts& fonts) { return SVGFontReader(stream, fonts).Read(); }
