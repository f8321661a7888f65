// Reading font files: Debian's, collections made from them, and damaged ones.
#include "agent/fonts/FontFile.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <set>

#include "support/DebianFonts.h"
#include "support/TempFolder.h"

namespace {

using namespace debian_fonts;
using agent::FontFace;
using agent::FontFileContent;
using agent::FontFileReader;
using agent::FontVerdict;

struct FontRow {
  std::string path;
  const char* postScriptName;
  const char* family;
  const char* style;
  const char* kind;
  const char* foundry;
  const char* version;
  bool hasKerning;
};

// One face in its three files of fonts-urw-base35, then other formats and foundries.
const FontRow kFonts[] = {
    {kOpenType + "NimbusSans-Bold.otf", "NimbusSans-Bold", "Nimbus Sans", "Bold", "OpenType - PS", "URW", "1.00", true},
    {kType1 + "NimbusSans-Bold.t1", "NimbusSans-Bold", "Nimbus Sans", "Bold", "Postscript", "URW", "1.00", false},
    {kBinaryType1 + "NimbusSans-Bold.pfb", "NimbusSans-Bold", "Nimbus Sans", "Bold", "Postscript", "URW", "1.00",
     false},
    {kOpenType + "Z003-MediumItalic.otf", "Z003-MediumItalic", "Z003", "Medium Italic", "OpenType - PS", "URW", "1.00",
     true},
    {kLiberation + "LiberationSerif-Bold.ttf", "LiberationSerif-Bold", "Liberation Serif", "Bold", "OpenType - TT",
     "Ascender Corporation", "2.1.5", true},
    {kDejaVu + "DejaVuSans.ttf", "DejaVuSans", "DejaVu Sans", "Book", "OpenType - TT", "DejaVu fonts team", "2.37",
     true},
};

TEST(FontFile, ReadsWhatIdentifiesAFace) {
  const FontFileReader reader;
  for (const FontRow& row : kFonts) {
    SCOPED_TRACE(row.path);
    const FontFileContent content = reader.Read(row.path);
    EXPECT_EQ(content.verdict, FontVerdict::kFont);
    EXPECT_EQ(content.problem, "");
    ASSERT_EQ(content.faces.size(), 1u);
    const FontFace& face = content.faces.front();
    EXPECT_EQ(face.postScriptName, row.postScriptName);
    EXPECT_EQ(face.family, row.family);
    EXPECT_EQ(face.style, row.style);
    EXPECT_EQ(face.kind, row.kind);
    EXPECT_EQ(face.foundry, row.foundry);
    EXPECT_EQ(face.version, row.version);
    EXPECT_EQ(face.kerningChecksum != 0, row.hasKerning);
    EXPECT_LT(face.kerningChecksum, 1u << 20);
    const bool isType1 = std::string(row.kind) == "Postscript";
    EXPECT_EQ(face.printerFont, isType1 ? row.path.substr(row.path.rfind('/') + 1) : "");
  }
}

std::string BigEndian(std::u16string_view text) {
  std::string bytes;
  for (const char16_t unit : text) bytes += {static_cast<char>(unit >> 8), static_cast<char>(unit)};
  return bytes;
}

std::string Replaced(std::string bytes, const std::string& what, std::string with) {
  with.resize(what.size(), ' ');
  const size_t at = bytes.find(what);
  if (at == std::string::npos) throw std::runtime_error("the font has no " + what);
  return bytes.replace(at, what.size(), with);
}

// Characters that a record cannot contain are removed, and each foundry gets one name.
TEST(FontFile, CleansNames) {
  const std::pair<std::u16string, const char*> makers[] = {
      {u"Tab\tline\nend\x1B[31m", "Tablineend[31m"},
      {u"\x85\x9B\x7F\xFFFE\xFFFFMaker\xE9", "Maker\u00E9"},
      {{u'a', 0xD800, u'b', 0xDC00, 0xD800, u'c', 0xD83D, 0xDE00, 0xD800}, "abc\U0001F600"},
      {u"unKNOWN", "--"},
      {u"Unknown Foundry", "Unknown Foundry"},
  };
  const FontFileReader reader;
  const std::string font = Bytes(kLiberation + "LiberationSerif-Bold.ttf");
  for (const auto& [maker, foundry] : makers) {
    std::u16string padded = maker;
    padded.resize(20, u' ');
    const std::string bytes = Replaced(font, BigEndian(u"Ascender Corporation"), BigEndian(padded));
    const FontFileContent content = reader.Parse(bytes, "font.ttf");
    ASSERT_EQ(content.faces.size(), 1u);
    EXPECT_EQ(content.faces[0].foundry, foundry);
  }
  const std::string t1 =
      Replaced(Bytes(kType1 + "NimbusSans-Bold.t1"), "/FontName /NimbusSans-Bold", "/FontName /Nim\1\x7F");
  const FontFileContent content = reader.Parse(Replaced(t1, "(Nimbus Sans)", "(N\1mbus\2)"), "odd\n\x1B.t1");
  ASSERT_EQ(content.faces.size(), 1u);
  EXPECT_EQ(content.faces[0].postScriptName, "Nim");
  EXPECT_EQ(content.faces[0].family, "Nmbus");
  EXPECT_EQ(content.faces[0].printerFont, "odd\uFFFD\uFFFD.t1");
}

TEST(FontFile, ChecksumsTellEveryDebianFontFromTheOthers) {
  const FontFileReader reader;
  std::set<uint32_t> checksums, glyphsures;
  size_t count = 0;
  for (const std::string& folder : {kOpenType, kType1, kBinaryType1, kLiberation, kDejaVu}) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      const FontFileContent content = reader.Read(entry.path());
      for (const FontFace& face : content.faces) {
        checksums.insert(face.checksum);
        glyphsures.insert(face.glyphsureChecksum);
        ++count;
      }
      EXPECT_NE(content.verdict, FontVerdict::kBroken) << entry.path();
    }
  }
  EXPECT_GT(count, 100u);
  EXPECT_EQ(checksums.size(), count);
  EXPECT_EQ(glyphsures.size(), count);
  EXPECT_FALSE(checksums.contains(0) || glyphsures.contains(0));
}

// Documents contain them, so they must never change: CRC-32 and FNV-1a of the outline table, computed by other
// programs.
TEST(FontFile, ChecksumsAreThoseInDocuments) {
  const FontFileContent content = FontFileReader().Read(SOURCE_DIR "/fuzz/seeds/font/postscript");
  ASSERT_EQ(content.faces.size(), 1u);
  EXPECT_EQ(content.faces[0].glyphsureChecksum, 3182478159u);
  EXPECT_EQ(content.faces[0].checksum, 850740894u);
  EXPECT_EQ(content.faces[0].kerningChecksum, 0u);
}

TEST(FontFile, ReadsTheFacesOfACollectionApart) {
  const std::string sans = Bytes(kDejaVu + "DejaVuSans.ttf");
  const std::string otf = Bytes(kOpenType + "NimbusSans-Bold.otf");
  const FontFileReader reader;
  // The third face has the same bytes as the first at another place, so it is another face.
  const FontFileContent content = reader.Parse(MakeCollection({sans, otf, sans}), "odd name");
  EXPECT_EQ(content.verdict, FontVerdict::kFont);
  EXPECT_EQ(content.problem, "");
  ASSERT_EQ(content.faces.size(), 3u);
  EXPECT_EQ(content.faces[0].postScriptName, "DejaVuSans");
  EXPECT_EQ(content.faces[0].kind, "OpenType - TT");
  EXPECT_EQ(content.faces[1].postScriptName, "NimbusSans-Bold");
  EXPECT_EQ(content.faces[1].kind, "OpenType - PS");
  EXPECT_EQ(content.faces[2].faceIndex, 2);
  EXPECT_NE(content.faces[0].checksum, content.faces[2].checksum);
}

TEST(FontFile, KeepsTheSoundFacesOfADamagedCollection) {
  std::string collection = MakeCollection({Bytes(kDejaVu + "DejaVuSans.ttf"), Bytes(kDejaVu + "DejaVuSans-Bold.ttf")});
  PutLong(collection, DirectoryOfFace(collection, 0) + 12 + 8, 0x7FFFFFFF);
  const FontFileContent content = FontFileReader().Parse(collection, "pair.ttc");
  EXPECT_EQ(content.verdict, FontVerdict::kFont);
  ASSERT_EQ(content.faces.size(), 1u);
  EXPECT_EQ(content.faces[0].postScriptName, "DejaVuSans-Bold");
  EXPECT_THAT(content.problem, testing::StartsWith("face 0: table '"));
}

struct DamageRow {
  const char* name;
  std::string bytes;
  FontVerdict verdict;
  const char* problem;  // part of it
};

std::string Cut(const std::string& bytes, size_t length) { return bytes.substr(0, length); }

std::string WithLong(std::string bytes, size_t at, uint32_t value) {
  PutLong(bytes, at, value);
  return bytes;
}

TEST(FontFile, SaysWhatIsWrongWithADamagedFile) {
  const std::string otf = Bytes(kOpenType + "NimbusSans-Bold.otf");
  const std::string pfb = Bytes(kBinaryType1 + "NimbusSans-Bold.pfb");
  const std::string t1 = Bytes(kType1 + "NimbusSans-Bold.t1");
  const std::string pair = MakeCollection({otf, otf});
  const DamageRow rows[] = {
      {"whole.otf", otf, FontVerdict::kFont, ""},
      {"empty.otf", "", FontVerdict::kBroken, "is empty"},
      {"text.TTF", "Dear Sir or Madam", FontVerdict::kBroken, "is not a font file"},
      {"text.txt", "Dear Sir or Madam", FontVerdict::kNotAFont, ""},
      {"no extension", "Dear Sir or Madam", FontVerdict::kNotAFont, ""},
      {"only-four.otf", "OTTO", FontVerdict::kBroken, "the table directory is cut short"},
      {"half-directory.otf", Cut(otf, 60), FontVerdict::kBroken, "the table directory is cut short"},
      {"half.otf", Cut(otf, otf.size() / 2), FontVerdict::kBroken, "reaches beyond the end of the file"},
      {"last-byte.pfb", Cut(pfb, pfb.size() - 600), FontVerdict::kBroken, "a segment reaches beyond"},
      {"head-only.t1", Cut(t1, 200), FontVerdict::kBroken, ""},
      {"offset.otf", WithLong(otf, 12 + 8, 0xFFFFFFFF), FontVerdict::kBroken, "reaches beyond the end of the file"},
      {"length.otf", WithLong(otf, 12 + 12, 0xFFFFFFFF), FontVerdict::kBroken, "reaches beyond the end of the file"},
      {"header.ttc", Cut(pair, 11), FontVerdict::kBroken, "the collection's header is cut short"},
      {"faces.ttc", WithLong(pair, 8, 0xFFFFFFFF), FontVerdict::kBroken, "faces does not fit the file"},
      {"none.ttc", WithLong(pair, 8, 0), FontVerdict::kBroken, "list of 0 faces"},
      {"away.ttc", WithLong(WithLong(pair, 12, 0xFFFFFFF0), 16, 0xFFFFFFF0), FontVerdict::kBroken, "cut short"},
  };
  const test_support::TempFolder folder;
  const FontFileReader reader;
  for (const DamageRow& row : rows) {
    SCOPED_TRACE(row.name);
    const FontFileContent content = reader.Read(folder.Write(row.name, row.bytes));
    EXPECT_EQ(content.verdict, row.verdict);
    EXPECT_THAT(content.problem, testing::HasSubstr(row.problem));
    EXPECT_EQ(content.problem.empty(), row.verdict != FontVerdict::kBroken);
    EXPECT_EQ(content.faces.empty(), row.verdict != FontVerdict::kFont);
  }
  EXPECT_THAT(reader.Read(folder / "gone.otf").problem, testing::HasSubstr("No such file"));
}

// Returns the font as a collection of this many faces, all with the same bytes.
std::string ManyTimes(const std::string& font, size_t count) {
  std::vector<std::string> fonts(count);
  fonts.back() = font;
  for (size_t i = 0; i + 1 < count; ++i) fonts[i] = std::string(6, '\0');
  std::string collection = MakeCollection(fonts);
  const uint32_t directory = DirectoryOfFace(collection, static_cast<uint32_t>(count - 1));
  for (size_t i = 0; i < count; ++i) PutLong(collection, 12 + 4 * i, directory);
  return collection;
}

// Returns the font with a name table whose entries all have the greatest length and the same bytes.
std::string WithSharedNames(std::string font, uint32_t count) {
  const size_t tables = static_cast<uint8_t>(font[5]);
  const uint32_t storage = 6 + 12 * count;
  std::string names;
  const auto add = [&](uint32_t value) { names += {static_cast<char>(value >> 8), static_cast<char>(value)}; };
  for (const uint32_t value : {0u, count, storage}) add(value);
  for (uint32_t i = 0; i < count; ++i) {
    for (const uint32_t value : {3u, 1u, 0x409u, 8u, 0xFFFEu, 0u}) add(value);
  }
  names.resize(storage + 0x10000, ' ');
  for (size_t at = 12; at < 12 + 16 * tables; at += 16) {
    if (font.compare(at, 4, "name") != 0) continue;
    PutLong(font, at + 8, static_cast<uint32_t>(font.size()));
    PutLong(font, at + 12, static_cast<uint32_t>(names.size()));
  }
  return font + names;
}

// A file of a few bytes may describe hours of work.
TEST(FontFile, ReadsNoMoreThanSomeTimesTheFile) {
  const FontFileReader reader;
  const std::string sans = Bytes(kDejaVu + "DejaVuSans.ttf");
  const FontFileContent few = reader.Parse(ManyTimes(sans, 3), "few.ttc");
  EXPECT_EQ(few.faces.size(), 3u);
  EXPECT_EQ(few.problem, "");
  const FontFileContent many = reader.Parse(ManyTimes(sans, 4096), "many.ttc");
  EXPECT_GT(many.faces.size(), 3u);
  EXPECT_LT(many.faces.size(), 1000u);
  EXPECT_THAT(many.problem, testing::HasSubstr("its parts are shared too often to be read"));
  const FontFileContent names = reader.Parse(WithSharedNames(sans, 5000), "names.ttf");
  EXPECT_EQ(names.verdict, FontVerdict::kBroken);
  EXPECT_EQ(names.problem, "its parts are shared too often to be read");
}

// Every prefix of a font is read or refused. Only Type 1 in text form ends with something that a font does not need.
TEST(FontFile, SurvivesEveryKindOfTruncation) {
  const FontFileReader reader;
  for (const std::string& path : {kOpenType + "D050000L.otf", kType1 + "D050000L.t1", kBinaryType1 + "D050000L.pfb"}) {
    const std::string whole = Bytes(path);
    EXPECT_EQ(reader.Parse(whole, path).verdict, FontVerdict::kFont) << path;
    const FontVerdict cut = path.ends_with(".t1") ? FontVerdict::kFont : FontVerdict::kBroken;
    EXPECT_EQ(reader.Parse(std::string_view(whole).substr(0, whole.size() - 500), path).verdict, cut) << path;
    const std::string name = path.substr(path.rfind('/') + 1);
    for (size_t length = 0; length < whole.size(); length += 1 + length / 8) {
      const FontFileContent content = reader.Parse(std::string_view(whole).substr(0, length), name);
      EXPECT_EQ(content.faces.empty(), content.verdict == FontVerdict::kBroken) << name << " cut to " << length;
    }
  }
}

}  // namespace
