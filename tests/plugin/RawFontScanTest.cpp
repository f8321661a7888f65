// Font names in the bytes of documents: a table for each format, and random documents compared with a simple search
// over all bytes at once.
#include <fstream>
#include <limits>
#include <random>

#include "Readers/CommonFunctionality.h"
#include "Readers/PatternSearch.h"
#include "photoshop/PhotoshopFontUtils.h"
#include "plugin/HostFixture.h"

using namespace std::string_literals;

namespace {

using Names = Lines;

// ASCII as UTF-16 with a byte-order mark.
std::string Wide(const std::string& text) {
  std::string wide = "\xFE\xFF";
  for (const char c : text) wide += "\0"s + c;
  return wide;
}
std::string FontSet(const std::string& content) { return "/FontSet [ " + content + " ]"; }
std::string Name(const std::string& bytes) { return "<< /Name (" + bytes + ") >>"; }

struct ScanCase {
  const char *rule, *file;
  std::string bytes;
  const char* names;  // divided by "|"
};

const std::string kAlpha = FontSet(Name(Wide("Alpha")));
const std::string kComposition = "<< /99 /CoolTypeFont /0 << /0 (" + Wide("Alpha") + ") /2 1 >> >>";
const ScanCase kScanCases[] = {
    {"several names in several sets", "a.psd", FontSet(Name(Wide("A")) + Name(Wide("B-1"))) + "." + kAlpha,
     "A|B-1|Alpha"},
    {"repeats stay", "a.psd", kAlpha + kAlpha, "Alpha|Alpha"},
    {"a name outside a font set is none", "a.psd", Name(Wide("Alpha")), ""},
    {"a font set without a name is none", "a.psd", FontSet("<< >>") + Name(Wide("Alpha")), ""},
    {"a name without a mark counts from its beginning", "a.psb", FontSet(Name("Plain")), "Plain"},
    {"not ASCII gives an empty entry", "a.psd", FontSet(Name("\xFE\xFF\0X\0\xE9\0Y"s) + Name(Wide("Beta"))), "|Beta"},
    {"what stands behind the last letter is cut off", "a.psd", FontSet(Name(Wide("A-1") + "\0.\0 "s)), "A-1"},
    {"without any letter nothing is cut off", "a.psd", FontSet(Name("-. ")), "-. "},
    {"a name may end behind its set", "a.psd", "/FontSet [ << /Name (" + Wide("A") + " ] >> /x)", "A ] >> /x"},
    {"an escaped end is part of the name", "a.psd", FontSet(Name("A\\)B")), "A\\)B"},
    {"an escaped set is none", "a.psd", "xx\\" + kAlpha, ""},
    {"at the second byte a match counts unseen", "a.psd", "\\" + kAlpha, "Alpha"},
    {"a set that does not end is none", "a.psd", "/FontSet [ /Name (" + Wide("Alpha") + ")", ""},
    {"both spellings of the key", "a.ai", "<< /FontName /Beta/x >> << /FontName/ABCDEF+A-Bold/y >>", "A-Bold|Beta"},
    {"of a subset what stands behind its tag", "a.AIT", "<< /FontName/ABCDEF+Alpha+X/Type >>", "Alpha+X"},
    {"a tag in the last place is none", "a.ai", "<< /FontName/Alpha+/y >>", "Alpha"},
    {"a font of a composition", "a.aep", kComposition, "Alpha"},
    {"a misnamed document is scanned in every way", "a.psd", kComposition, "Alpha"},
    {"of its own format only, if that gives names", "a.psd", kAlpha + "<< /FontName/Beta/x >>", "Alpha"},
    {"any other extension in every way", "a.indd", kAlpha + "<< /FontName/Beta/x >>", "Beta|Alpha"},
    {"an empty document holds none", "a.psd", "", ""},
};

class RawFontScanFixture : public HostFixture {
 protected:
  static Names Scan(const std::string& path) {
    Names names;
    CommonFunctionality::GetFontNamesFromNonXMPSectionOfAdobeDocument(path.c_str(), names);
    return names;
  }
  static Names ReadFonts(const std::string& path) {
    Names names;
    PhotoshopFontUtils::GetDocumentFonts(path, names, false);
    return names;
  }
};
using RawFontScan = RawFontScanFixture;

TEST_F(RawFontScan, FindsTheNamesOfEachFormat) {
  for (const ScanCase& row : kScanCases) {
    const Names names = Scan(folder.Write(row.file, row.bytes));
    std::string all;
    for (size_t i = 0; i < names.size(); ++i) all += (i > 0 ? "|" : "") + names[i];
    EXPECT_EQ(all, row.names) << row.rule;
  }
}

TEST_F(RawFontScan, GivesNothingForWhatCannotBeRead) {
  Names names = {"Kept"};
  for (const char* path : {"", "/no/such.psd", "/tmp"}) {
    CommonFunctionality::GetFontNamesFromNonXMPSectionOfAdobeDocument(path, names);
    PhotoshopFontUtils::GetDocumentFonts(path, names, false);
  }
  CommonFunctionality::GetFontNamesFromNonXMPSectionOfAdobeDocument(nullptr, names);
  EXPECT_EQ(names, Names{"Kept"});
}

TEST_F(RawFontScan, ReadsNamesOfADocumentInPairsOfBytes) {
  const struct {
    const char* rule;
    std::string bytes;
    Names names;
  } kRows[] = {
      {"plain, and not only ASCII", Name(Wide("Alpha")) + Name("\xFE\xFF\x30\x42"s), {"Alpha", "あ"}},
      {"a backslash in the second place shifts what follows", Name("\xFE\xFF\0A\0\\(\0B\0\\)\0C"s), {"A(B)C"}},
      {"one shift costs the last character", Name("\xFE\xFF\0A\0\\(\0B"s), {"A("}},
      {"a backslash in the first place goes alone", Name("\xFE\xFF\0A\\(\0B\0"s), {"A⠀"}},
      {"a mark alone, and not even that", Name("\xFE\xFF"s) + Name(""), {"", ""}},
      {"a lone surrogate gives an empty name", Name("\xFE\xFF\xD8\0\0A"s), {""}},
  };
  for (const auto& row : kRows) EXPECT_EQ(ReadFonts(folder.Write("a.psd", FontSet(row.bytes))), row.names) << row.rule;
  EXPECT_EQ(ReadFonts(folder.Write("a.psd", "/FontSet [ ]" + Name(Wide("Alpha")))), Names{});
  platform::Array fonts;
  PSGetDocumentFonts(fonts, Sample("poster.psd"), true);
  EXPECT_EQ(fakes::NamesOf(fonts), "AdobeInvisFont LiberationSerif-Bold NimbusSans-Regular NimbusSans-Bold DejaVuSans");
}

// A simple search over all bytes at once.
class PlainScan {
 public:
  explicit PlainScan(const std::string& bytes) : mBytes(bytes) {}

  // Returns the ranges between two patterns that begin in [start, end).
  std::vector<std::pair<size_t, size_t>> Ranges(size_t start, size_t end, const std::string& begin,
                                                const std::string& stop) const {
    std::vector<std::pair<size_t, size_t>> ranges;
    for (size_t at = start; at < end;) {
      const size_t first = Find(at, begin);
      const size_t last = first == std::string::npos ? first : Find(first + begin.size(), stop);
      if (last == std::string::npos) break;
      if (first < end) ranges.emplace_back(first, last);
      at = last + stop.size();
    }
    return ranges;
  }
  size_t Find(size_t from, const std::string& pattern) const {
    for (size_t at = from; (at = mBytes.find(pattern, at)) != std::string::npos; ++at) {
      if (at - from <= 1 || mBytes[at - 1] != '\\') return at;
    }
    return std::string::npos;
  }

 private:
  const std::string& mBytes;
};

TEST_F(RawFontScan, AgreesWithAPlainSearchOnRandomDocuments) {
  const std::string kPieces[] = {"/FontSet [", "/Name (",  ")",     "]",        "\\", "x",
                                 "/",          "/FontSet", "/Name", "\xFE\xFF", "\0"s};
  constexpr unsigned kSeed = 4711;
  std::mt19937 random(kSeed);
  for (int document = 0; document < 300; ++document) {
    std::string bytes;
    // Some are longer than the window in memory, with a pattern across each of its ends.
    const size_t size = document % 10 == 0 ? 400'000 : 400;
    while (bytes.size() < size) {
      bytes += kPieces[random() % std::size(kPieces)];
      if (size > 400 && random() % 8 == 0) bytes += std::string(random() % 5000, '/');
    }
    const PlainScan plain(bytes);
    OffsetRanges expected;
    for (const auto& [from, to] : plain.Ranges(0, bytes.size(), "/FontSet [", "]")) {
      for (const auto& [first, last] : plain.Ranges(from, to, "/Name (", ")"))
        expected.insert(expected.end(), {first, last});
    }
    DocumentBytes read;
    ASSERT_FALSE(read.Open(folder.Write("random.psd", bytes)));
    OffsetRanges sets, names;
    EndFinder setEnd(read, "]"), nameEnd(read, ")");
    CommonFunctionality::FindPatternsBetweenOffsets(read, 0, read.Size(), "/FontSet [", setEnd, sets);
    for (size_t i = 0; i < sets.size(); i += 2) {
      CommonFunctionality::FindPatternsBetweenOffsets(read, sets[i], sets[i + 1], "/Name (", nameEnd, names);
    }
    ASSERT_EQ(names, expected) << "seed " << kSeed << ", document " << document;
  }
}

TEST_F(RawFontScan, ManyRegionsThatDoNotEndCostOneWalk) {
  // Returns the number of bytes that this process has read so far, as the system counts them.
  const auto bytesRead = [] {
    size_t count = 0;
    std::ifstream("/proc/self/io").ignore(std::numeric_limits<std::streamsize>::max(), ' ') >> count;
    return count;
  };
  if (bytesRead() == 0) GTEST_SKIP() << "this system does not count what a process reads";
  constexpr size_t kSize = 400'000;  // several windows, so that going back means reading them again
  std::string bytes;
  while (bytes.size() < kSize) bytes += "/FontSet [/Name (A]";
  const std::string path = folder.Write("a.psd", bytes);
  const size_t before = bytesRead();
  EXPECT_EQ(Scan(path), Names{});
  EXPECT_EQ(ReadFonts(path), Names{});
  EXPECT_LT(bytesRead() - before, 20 * kSize);
}

TEST_F(RawFontScan, NamesThatAllReachTheSameFarEndAreTakenUpToALimit) {
  std::string bytes;
  for (int i = 0; i < 1000; ++i) bytes += "/FontSet [/Name (A]";
  const std::string path = folder.Write("a.psd", bytes + ")");
  const Names names = Scan(path);
  ASSERT_EQ(names.size(), 4u);
  EXPECT_EQ(names[1], bytes.substr(bytes.find("A]", 20), bytes.size() - bytes.find("A]", 20) - 1));
  EXPECT_EQ(ReadFonts(path).size(), 4u);
  EXPECT_TRUE(Traced("Ignoring the remaining font names because they overlap too much."));
}

TEST_F(RawFontScan, ComparesWholeExtensionsInWhateverCase) {
  for (const char* extension : {"pdf", ".PDF", "Pdf"})
    EXPECT_TRUE(CommonFunctionality::FileExtensionIs("/a.b/c.pdf", extension));
  for (const char* path : {"/a/pdf", "/a/b.pdfx", "/a/b.pd", "", "/a.pdf/b"}) {
    EXPECT_FALSE(CommonFunctionality::FileExtensionIs(path, "pdf")) << path;
  }
}

TEST_F(RawFontScan, FiltersWhatCanBeFoundNowhere) {
  platform::Dictionary replaced = fakes::Named("AdobeInvisFont");
  replaced.Set("PossibleReplacements", fakes::ArrayOf({fakes::Named("Other")}));
  const platform::Array fonts = fakes::ArrayOf(
      {fakes::Named("AdobeInvisFont"), fakes::Named("PhotoshopKinsokuHard"), fakes::Named("PhotoshopKinsokuSoft"),
       replaced, fakes::Named("MyriadPro-Regular"), fakes::Named("myriadpro"), platform::Dictionary::Create()});
  CommonFunctionality::RemoveFontsThatHaveNoPossibleReplacement(fonts);
  EXPECT_EQ(fakes::NamesOf(fonts), "PhotoshopKinsokuSoft AdobeInvisFont MyriadPro-Regular myriadpro -");
  CommonFunctionality::RemoveMatchingFonts(fonts, "MyriadPro");
  EXPECT_EQ(fakes::NamesOf(fonts), "PhotoshopKinsokuSoft AdobeInvisFont myriadpro -");
}

}  // namespace
