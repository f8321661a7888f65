// Merging font arrays: by rows, and compared with a simple implementation on random arrays.
#include <gtest/gtest.h>

#include <random>

#include "Identification/FontMerging.h"
#include "Identification/FontNames.h"
#include "Identification/FontRecords.h"
#include "support/Records.h"

using namespace GlyphsureSupport;
using namespace fakes;
using platform::Array;
using platform::Dictionary;
using platform::String;

TEST(Merging, RicherRecordTakesThePlace) {
  const Dictionary slug = Record({{"PostScriptName", "A B"}, {"Family", "F"}});
  const Array fonts = ArrayOf({Named("AB"), Named("C")});
  EXPECT_EQ(MergeGlyphsureDictionaryIntoArray(fonts, Named("D")), 2);
  EXPECT_EQ(MergeGlyphsureDictionaryIntoArray(fonts, slug), 0);
  EXPECT_TRUE(fonts.At(0) == slug) << "kept by reference";
  EXPECT_EQ(MergeGlyphsureDictionaryIntoArray(fonts, Record({{"PostScriptName", "AB"}, {"Family", "G"}})), 0);
  EXPECT_EQ(MergeGlyphsureDictionaryIntoArray(fonts, Named("A-B")), 0);
  EXPECT_TRUE(fonts.At(0) == slug);
  EXPECT_EQ(NamesOf(fonts), "A B C D");
}

TEST(Merging, ConflictsGoToTheRecordWithMoreKeys) {
  const struct {
    const char* why;
    const char* source;
    const char* destination;
    const char* expected;
  } rows[] = {
      {"a bare name adds nothing", "", "Family=F", "Family=F"},
      {"what is new joins", "Family=f|Version=1", "Family=F|Foundry=X", "Family=F|Foundry=X|Version=1"},
      {"a tie stays", "Version=2", "Version=1", "Version=1"},
      {"fewer keys are ignored", "Version=2|Foundry=X", "Version=1|Family=F|Path=/", "Version=1|Family=F|Path=/"},
      {"more keys take all", "Version=2|Foundry=X", "Version=1", "Version=2|Foundry=X"},
      {"length is a difference", "Version=1 |Foundry=X", "Version=1", "Version=1 |Foundry=X"},
      {"the names are compared as well", "PostScriptName=A-B|Version=2", "Family=F", "Family=F"},
  };
  for (const auto& row : rows) {
    const Dictionary source = Changed(Named("AB"), row.source), destination = Changed(Named("AB"), row.destination);
    const Dictionary before = destination.Copy();
    const Array fonts = ArrayOf({Named("Z"), destination});
    MergeFontsIntoFontsArray(ArrayOf({platform::Value(), Record({{"Family", "nameless"}}), source}), fonts);
    ASSERT_EQ(fonts.Count(), 2u) << row.why;
    EXPECT_TRUE(fonts.At(1).Equals(Changed(Named("AB"), row.expected))) << row.why;
    EXPECT_TRUE(destination.Equals(before)) << row.why << ": a merged record is a new one";
    MergeFontsIntoFontsArray(fonts, fonts);
    EXPECT_EQ(fonts.Count(), 2u) << row.why << ": into itself";
  }
}

TEST(Merging, SmallOperationsKeepTheirRules) {
  const Array fonts = ArrayOf({Named("A-B"), Record({{"Family", "x"}}), Named("C"), Named("D")});
  EXPECT_EQ(RemoveUniqueFontsFromFontArray(fonts, ArrayOf({Named("AB"), Named("D")})), 1);
  EXPECT_EQ(NamesOf(fonts), "A-B - D");

  EXPECT_TRUE(AddFontToArray(String::FromUTF8("(E)"), fonts, false));
  EXPECT_FALSE(AddFontToArray(String::FromUTF8("E "), fonts, false));
  EXPECT_TRUE(AddFontToArray(String::FromUTF8("E "), fonts, true));
  EXPECT_FALSE(AddFontToArray(String::FromUTF8("( [] )"), fonts, true));
  EXPECT_EQ(NamesOf(fonts), "A-B - D E E");

  EXPECT_FALSE(CreateGlyphsureSlugsWithGlyphsureFontsAndDocumentFonts(Array(), fonts)) << "null, not empty";
  EXPECT_EQ(NamesOf(CreateFontArrayFromVectorOfPostscriptNames({"A", "\xFF", "A", "B"})), "A A B");
  Dictionary matched = Named("A");
  matched.Set(kGS_MatchedFontKey, Named("M"));
  EXPECT_EQ(NamesOf(CreateFontArrayFromFontMatchArray(ArrayOf({Named("B"), matched}))), "M");
  EXPECT_FALSE(CreateFontArrayFromFontMatchArray(ArrayOf({})));
}

namespace {

// Simple implementations, which search the array for each name.
size_t PlainFind(const Array& fonts, std::string_view name) {
  const auto normal = [](std::string_view text, int pass) {
    return pass == 0 ? std::string(text) : GFontToolUtils_StripCharsAndNormalizeString(text, pass == 2);
  };
  for (int pass = 0; pass < 3; ++pass) {
    for (size_t i = 0; i < fonts.Count(); ++i) {
      const String held = Dictionary(fonts.At(i)).GetString(kGS_PostScriptNameKey);
      for (int each = 0; held && each <= pass; ++each) {
        if (normal(held.View(), each) == normal(name, each)) return i;
      }
    }
  }
  return fonts.Count();
}

Dictionary PlainMerged(const Dictionary& source, const Dictionary& destination) {
  size_t common = 0, conflicts = 0;
  for (const std::string& key : source.Keys()) {
    if (!destination.Contains(key)) continue;
    ++common;
    conflicts += !AreEqualTexts(source.GetString(key).View(), destination.GetString(key).View());
  }
  if (conflicts > 0) return source.Count() > destination.Count() ? source : destination;
  if (common == source.Count()) return destination;
  Dictionary merged = destination.Copy();
  for (const std::string& key : source.Keys()) {
    if (!merged.Contains(key)) merged.Set(key, source.Get(key));
  }
  return merged;
}

void PlainMerge(const Array& source, Array destination) {
  for (size_t i = 0; i < source.Count(); ++i) {
    const Dictionary record(source.At(i));
    const String name = record.GetString(kGS_PostScriptNameKey);
    if (!name) continue;
    const size_t at = PlainFind(destination, name.View());
    if (at == destination.Count()) {
      destination.Append(record);
    } else {
      destination.Set(at, PlainMerged(record, Dictionary(destination.At(at))));
    }
  }
}

// Few different bytes, so that names often match in one pass and not in another.
class RandomFonts {
 public:
  explicit RandomFonts(unsigned seed) : random_(seed) {}

  std::string Name() {
    constexpr std::string_view kBytes = "AB--#1_ ";
    std::string name;
    for (size_t length = 1 + Below(5); length > 0; --length) name.push_back(kBytes[Below(kBytes.size())]);
    return name;
  }
  Array Fonts() {
    Array fonts = Array::Create();
    for (size_t count = Below(12); count > 0; --count) {
      if (Below(10) == 0) fonts.Append(platform::Value());
      Dictionary record = Below(10) == 0 ? Dictionary::Create() : Named(Name());
      for (const char* key : {"Family", "Version", "Foundry"}) {
        if (Below(3) == 0) record.Set(key, Below(2) == 0 ? "x" : "y");
      }
      if (Below(4) == 0) record.Set("FontKind", "PostScript - MM");
      fonts.Append(record);
    }
    return fonts;
  }

 private:
  size_t Below(size_t limit) { return random_() % limit; }
  std::mt19937 random_;
};

}  // namespace

TEST(Merging, FastFormsEqualThePlainWalk) {
  for (unsigned seed = 0; seed < 500; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomFonts random(seed);
    const Array source = random.Fonts(), destination = random.Fonts();
    const Array fast = destination.Copy(), plain = destination.Copy();
    // Merging and adding keep the index up to date.
    FontNameIndex index(fast);
    MergeFontsIntoFontsArray(source, fast, &index);
    PlainMerge(source, plain);
    ASSERT_TRUE(fast.Equals(plain));
    for (int i = 0; i < 20; ++i) {
      const std::string name = random.Name();
      const size_t expected = PlainFind(fast, name);
      size_t found = fast.Count();
      DoesArrayContainFontWithPostScriptName(fast, String::FromUTF8(name), &found);
      ASSERT_EQ(found, expected) << name;
      ASSERT_EQ(index.Find(name).value_or(fast.Count()), expected) << name;
      const Dictionary record = Changed(Named(name), "Family=z|Version=z");
      ASSERT_EQ(MergeGlyphsureDictionaryIntoArray(fast, record, &index),
                MergeGlyphsureDictionaryIntoArray(plain, record));
      const String added = String::FromUTF8(name + "B");
      ASSERT_EQ(AddFontToArray(added, fast, false, &index), AddFontToArray(added, plain, false));
      ASSERT_TRUE(fast.Equals(plain)) << name;
    }

    const Array narrowed = CreateGlyphsureSlugsWithGlyphsureFontsAndDocumentFonts(fast, source);
    size_t at = 0;
    for (size_t i = 0; i < source.Count(); ++i) {
      const String name = Dictionary(source.At(i)).GetString(kGS_PostScriptNameKey);
      if (!name) continue;
      const Dictionary slug = GetGlyphsureDictionaryFromArrayWithPostscriptName(fast, name);
      ASSERT_TRUE(narrowed.At(at++) == (slug ? slug : Dictionary(source.At(i)))) << name.View();
    }
    ASSERT_EQ(narrowed.Count(), at);
  }
}
