#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "Readers/Document/MarkupReader.h"
#include "Readers/Document/OOXMLFonts.h"
#include "Readers/Document/OOXMLRun.h"
#include "Readers/Document/OOXMLTheme.h"

namespace {

using Event = MarkupReader::Event;

// A paragraph of one level of a list: how its text looks, and its bullet.
struct Level {
  RunProperties run;
  std::optional<bool> hasBullet;
  std::optional<std::string> bulletFamily;

  void Inherit(const Level& other) {
    run.Inherit(other.run);
    if (!hasBullet) hasBullet = other.hasBullet;
    if (!bulletFamily) bulletFamily = other.bulletFamily;
  }
};

struct ListStyle {
  std::array<Level, 9> levels;

  void Inherit(const ListStyle& other) {
    for (size_t i = 0; i < levels.size(); ++i) levels[i].Inherit(other.levels[i]);
  }
};

// A place for text. That of a slide inherits from the one of its layout, and that from the one of the master.
struct Placeholder {
  std::string type, index;
};

struct Placeholders {
  std::map<std::string, ListStyle> byType, byIndex;

  void Add(const Placeholder& place, const ListStyle& style) {
    byType.emplace(place.type, style);
    if (!place.index.empty()) byIndex.emplace(place.index, style);
  }
  const ListStyle* Find(const std::map<std::string, ListStyle>& places, const std::string& key) const {
    const auto found = places.find(key);
    return found == places.end() ? nullptr : &found->second;
  }
};

// A slide, a layout or a master.
struct Part {
  OOXMLTheme theme;
  ListStyle title, body, other, usual;  // of a master; the last one of boxes
  Placeholders places;
  StyledFonts own;  // of text that its slides show, too
  std::shared_ptr<const Part> above;
  bool showsAbove = true;
};

// The kinds that have a style of their own.
std::string TypeOf(const std::string& type) {
  if (type == "title" || type == "ctrTitle") return "title";
  constexpr const char* kOthers[] = {"dt", "ftr", "hdr", "sldNum", "sldImg"};
  return std::find(std::begin(kOthers), std::end(kOthers), type) == std::end(kOthers) ? "body" : type;
}

// Reads one part of the file.
class PartReader {
 public:
  PartReader(ByteStream& stream, Part& part, StyledFonts& fonts) : mMarkup(stream), mPart(part), mFonts(fonts) {
    if (part.above) mMaster = part.above->above ? part.above->above.get() : part.above.get();
  }

  // The fonts of placeholders count only on slides.
  std::string Read(bool isSlide) {
    mIsSlide = isSlide;
    for (Event event = mMarkup.Next(); event != Event::kDone; event = mMarkup.Next()) {
      if (event == Event::kText) {
        if (mIsInText) TakeText();
      } else {
        Take(mMarkup.Name(), event == Event::kStart);
      }
    }
    return mMarkup.Problem();
  }

 private:
  void Take(std::string_view name, bool isStart) {
    if (name == "t") mIsInText = isStart;
    if (name == "sp" || name == "graphicFrame") TakeShape(name, isStart);
    TakeStyle(name, isStart);
    if (!isStart) return;
    if (name == "sld" || name == "sldLayout") mPart.showsAbove = mMarkup.Attribute("showMasterSp") != "0";
    if (name == "ph") mPlace = {TypeOf(mMarkup.Attribute("type")), mMarkup.Attribute("idx")};
    if (name == "txBody") Inherit();
    if (name == "p") {
      mParagraph = {};
      mLevel = 0;
    }
    if (name == "r" || name == "fld") mRun = {};
    if (mTarget) TakeProperty(name);
  }

  void TakeShape(std::string_view name, bool isStart) {
    if (!isStart && mPlace) mPart.places.Add(*mPlace, mOwn);
    mPlace.reset();
    mOwn = mInherited = {};
    mIsTable = isStart && name == "graphicFrame";
  }

  // Chooses what the properties that follow are for.
  void TakeStyle(std::string_view name, bool isStart) {
    const std::pair<std::string_view, ListStyle*> kStyles[] = {{"titleStyle", &mPart.title},
                                                               {"bodyStyle", &mPart.body},
                                                               {"otherStyle", &mPart.other},
                                                               {"defaultTextStyle", &mPart.usual},
                                                               {"lstStyle", &mOwn}};
    for (const auto& [word, style] : kStyles) {
      if (name == word) mStyle = isStart ? style : nullptr;
    }
    const bool isLevel = mStyle && name.size() == 7 && name.starts_with("lvl") && name.ends_with("pPr");
    if (isLevel || name == "pPr" || name == "rPr") mTarget = nullptr;
    if (!isStart) return;
    if (isLevel && name[3] >= '1' && name[3] <= '9') mTarget = &mStyle->levels[static_cast<size_t>(name[3] - '1')];
    if (name == "pPr") {
      mTarget = &mParagraph;
      mLevel = std::min(NumberOf(mMarkup, "lvl"), mOwn.levels.size() - 1);
    }
    if (name == "rPr") mTarget = &mRun;
  }

  void TakeProperty(std::string_view name) {
    if (name == "defRPr" || name == "rPr") {
      for (const auto& [attribute, flag] :
           {std::pair("b", &mTarget->run.isBold), std::pair("i", &mTarget->run.isItalic)}) {
        const std::string value = mMarkup.Attribute(attribute);
        if (!value.empty()) *flag = IsSwitchedOn(value);
      }
    }
    constexpr std::string_view kScripts[] = {"latin", "ea", "cs"};
    for (size_t i = 0; i < kScriptGroups; ++i) {
      if (name == kScripts[i]) mTarget->run.families[i] = FamilyHere();
    }
    if (name == "buFont") mTarget->bulletFamily = FamilyHere();
    if (name == "buChar" || name == "buAutoNum") mTarget->hasBullet = true;
    if (name == "buNone") mTarget->hasBullet = false;
  }

  // A reference to the theme stays one: a master has its own.
  std::string FamilyHere() {
    std::string family = mMarkup.Attribute("typeface");
    if (!family.starts_with('+')) mFonts.Describe(family, LookOfTypeface(mMarkup));
    return family;
  }

  // What the text of the shape inherits. Its own style comes behind the start of its text.
  void Inherit() {
    const Part& master = mMaster ? *mMaster : mPart;
    if (mPlace) {
      for (const Part* part = mPart.above.get(); part; part = part->above.get()) {
        const ListStyle* style = part->above ? part->places.Find(part->places.byIndex, mPlace->index) : nullptr;
        if (!style) style = part->places.Find(part->places.byType, mPlace->type);
        if (style) mInherited.Inherit(*style);
      }
      mInherited.Inherit(mPlace->type == "title" ? master.title : mPlace->type == "body" ? master.body : master.other);
    } else if (mIsTable) {
      mInherited.Inherit(master.other);
    }
    mInherited.Inherit(master.usual);
  }

  void TakeText() {
    if ((!mIsSlide && mPlace) || !HasCharacters(mMarkup.Text())) return;
    StyledFonts& fonts = mIsSlide ? mFonts : mPart.own;
    Level level = mRun;
    for (const Level& outer : {mParagraph, mOwn.levels[mLevel], mInherited.levels[mLevel]}) level.Inherit(outer);
    constexpr const char* kUsual[] = {"+mn-lt", "+mn-ea", "+mn-cs"};
    for (size_t i = 0; i < kScriptGroups; ++i) {
      level.run.families[i] = Resolved(level.run.families[i].value_or(kUsual[i]));
    }
    level.run.AddFontsOf(mMarkup.Text(), fonts);
    if (level.hasBullet.value_or(false) && level.bulletFamily) fonts.Add({Resolved(*level.bulletFamily)});
  }

  std::string Resolved(const std::string& family) const {
    const OOXMLTheme& theme = mMaster ? mMaster->theme : mPart.theme;
    return family.starts_with('+') ? theme.FamilyOf(family) : family;
  }

  MarkupReader mMarkup;
  Part& mPart;
  StyledFonts& mFonts;
  const Part* mMaster = nullptr;  // null in a master
  bool mIsSlide = false, mIsInText = false, mIsTable = false;
  std::optional<Placeholder> mPlace;  // of the shape that is read now
  ListStyle mOwn, mInherited;         // likewise
  ListStyle* mStyle = nullptr;        // that is read now; null if none is
  Level* mTarget = nullptr;           // for properties; null if they are of no interest here
  Level mParagraph, mRun;
  size_t mLevel = 0;
};

class PPTXFontReader {
 public:
  PPTXFontReader(const ZipDocument& archive, StyledFonts& fonts) : mArchive(archive), mFonts(fonts) {}

  std::string Read() {
    Part presentation;
    ReadPart("ppt/presentation.xml", presentation, false);
    mUsual = presentation.usual;
    for (const std::string& name : mArchive.Names()) {
      if (!mProblem.empty()) break;
      if (!name.starts_with("ppt/slides/slide") || !name.ends_with(".xml")) continue;
      Part slide;
      slide.above = PartOf(TargetOf(name, "slideLayout"), "slideMaster");
      ReadPart(name, slide, true);
      for (const Part* part = &slide; part->showsAbove && part->above; part = part->above.get()) {
        mFonts.Add(part->above->own);
      }
    }
    return mProblem;
  }

 private:
  // A layout, with its master as the relation `above`; or a master, with an empty one. Null if there is none.
  std::shared_ptr<const Part> PartOf(const std::string& name, const char* above) {
    if (name.empty()) return nullptr;
    const auto [known, isNew] = mParts.emplace(name, nullptr);
    if (!isNew) return known->second;
    const auto part = std::make_shared<Part>();
    if (*above) part->above = PartOf(TargetOf(name, above), "");
    if (!*above) {
      part->theme = ReadOOXMLTheme(mArchive, TargetOf(name, "theme"), mFonts);
      part->usual = mUsual;
    }
    ReadPart(name, *part, false);
    return mParts[name] = part;
  }

  void ReadPart(const std::string& name, Part& part, bool isSlide) {
    const auto stream = mArchive.Open(name);
    if (stream && mProblem.empty()) mProblem = PartReader(*stream, part, mFonts).Read(isSlide);
  }

  // The file to which a file has a relation of this kind; empty if there is none.
  std::string TargetOf(const std::string& name, const std::string& kind) const {
    const std::filesystem::path path(name);
    const auto stream = mArchive.Open((path.parent_path() / "_rels" / path.filename()).string() + ".rels");
    if (!stream) return "";
    MarkupReader markup(*stream);
    for (Event event = markup.Next(); event != Event::kDone; event = markup.Next()) {
      if (event != Event::kStart || !markup.Attribute("Type").ends_with("/" + kind)) continue;
      const std::string target = (path.parent_path() / markup.Attribute("Target")).lexically_normal().string();
      return target.substr(std::min(target.find_first_not_of('/'), target.size()));
    }
    return "";
  }

  const ZipDocument& mArchive;
  StyledFonts& mFonts;
  ListStyle mUsual;
  std::map<std::string, std::shared_ptr<const Part>> mParts;
  std::string mProblem;
};

}  // namespace

std::string ReadFontsOfPPTX(const ZipDocument& archive, StyledFonts& fonts) {
  return PPTXFontReader(archive, fonts).Read();
}
