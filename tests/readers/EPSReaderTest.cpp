// The comments of EPS files: which fonts they give, and how identification data are written among them.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>

#include "Readers/FontParserEPS.h"
#include "support/FullDisk.h"
#include "support/ProcessIO.h"
#include "support/Records.h"
#include "support/TempFolder.h"

namespace {

using namespace std::string_literals;
using platform::Array;
using platform::Dictionary;
using test_support::TempFolder;

std::string Number(uint32_t value) {
  std::string bytes;
  for (int i = 0; i < 4; ++i) bytes += static_cast<char>(value >> (8 * i));
  return bytes;
}

constexpr size_t kHeaderSize = 32;

// A PostScript part and behind it a TIFF one, in a file with the binary header.
std::string WithPreview(const std::string& postScript, const std::string& image) {
  const auto size = static_cast<uint32_t>(postScript.size());
  return "\xC5\xD0\xD3\xC6" + Number(kHeaderSize) + Number(size) + Number(0) + Number(0) + Number(kHeaderSize + size) +
         Number(static_cast<uint32_t>(image.size())) + "\xFF\xFF\0\0"s + postScript + image;
}

class EPSFile : public testing::Test {
 protected:
  FontParserEPS Parser(const std::string& path) const {
    return {platform::FileURL::FromFileSystemRepresentation(path), path};
  }
  // The names found, divided by "|"; with identification data "NAME:KEY=VALUE,...".
  std::string Read(const std::string& path) const {
    FontParserEPS parser = Parser(path);
    parser.Parse();
    return Describe(parser);
  }
  static std::string Describe(FontParserEPS& parser) {
    Array fonts, names;
    parser.GetObsoleteGlyphsureData(true, &fonts);
    parser.GetObsoleteGlyphsureData(false, &names);
    EXPECT_EQ(fonts.Count(), names.Count());
    std::string all;
    for (size_t i = 0; i < fonts.Count(); ++i) {
      const Dictionary font(fonts.At(i));
      EXPECT_EQ(Dictionary(names.At(i)).Count(), 1u);
      all += (i > 0 ? "|" : "") + Dictionary(names.At(i)).GetString("PostScriptName").Text();
      const char* divider = ":";
      for (size_t key = 0; key < font.Count(); ++key) {
        if (font.KeyAt(key) == "PostScriptName") continue;
        all += divider + std::string(font.KeyAt(key)) + "=" + platform::String(font.ValueAt(key)).Text();
        divider = ",";
      }
    }
    return all;
  }

  TempFolder folder;
};
using EPSReader = EPSFile;
using EPSWriter = EPSFile;

TEST_F(EPSReader, FindsTheFontsOfEachComment) {
  const struct {
    const char* rule;
    std::string lines;
    const char* fonts;
  } kRows[] = {
      {"a name, and continuations", "%%DocumentFonts: A\n%%+ B-1\n%%+ C\n%%EndComments\n", "A|B-1|C"},
      {"each kind of line end", "%%DocumentFonts: A\r%%+ B\r\n%%+ C\n\r%%+ D", "A|B|C|D"},
      {"several names on a line are one", "%%DocumentFonts: A B\n", "A B"},
      {"what comes at the end is no name", "%%DocumentFonts: (atend)\n%%EndComments\n%%DocumentFonts: A\n", "A"},
      {"anywhere in a line", "x %%DocumentNeededFonts: A\ny %%+ B\n", "A|B"},
      {"a name stands once, compared loosely", "%%DocumentFonts: A-Bold\n%%+ ABold\n%%+ A-Bold\n", "A-Bold"},
      {"of resources only fonts", "%%DocumentNeededResources: file x\n%%+ font A\n%%+ procset p\n%%+ font B\n", "A|B"},
      {"the other list of resources", "%%DocumentSuppliedResources: font A\n%%DocumentFonts: B\n", "A|B"},
      {"the line behind a list is looked at", "%%DocumentFonts: A\n%%DocumentNeededFonts: B\n", "A|B"},
      {"without fonts the header ends the reading", "%%EndComments\n%%DocumentFonts: A\n", ""},
      {"with fonts the whole file is read", "%%DocumentFonts: A\n%%EndComments\n%%DocumentFonts: B\n", "A|B"},
      {"an embedded font's own name",
       "%ADOBeginSubsetFont: Comment Initial\n/FontName /AAAAAA+A-Bold def\n/FontName x\n%ADOEndSubsetFont\n",
       "AAAAAA+A-Bold"},
      {"up to a tab", "%ADOBeginSubsetFont: C\n/FontName /A\tdef\n%ADOEndSubsetFont\n", "A"},
      {"else the comment's", "%ADOBeginSubsetFont: A\n%ADOEndSubsetFont\n%%DocumentFonts: B\n", " A|B"},
      {"glyphs added to an earlier part are no font", "%ADOBeginSubsetFont: A AddGlyphs\n%ADOEndSubsetFont\n", ""},
      {"one that does not end", "%ADOBeginSubsetFont: A AddGlyphs\n/FontName /B x\n", "B"},
      {"a Multiple Master instance is its font", "%%DocumentFonts: MinionMM_367 wt\n", "MinionMM"},
      {"a name that is not UTF-8", "%%DocumentFonts: \x8A\n%%+ \n%%+ A\n", "\xC3\xA4|A"},
      {"identification data", "%%DocumentFontSpecs: <FONTSPEC NAME=\"A\"   KIND=\"K v\" NEW=\"x\" CHECKSUM=\"7\"/>\n",
       "A:FontKind=K v,Checksum=7"},
      {"cut off", "%%DocumentFontSpecs: <FONTSPEC NAME=\"A\" KIND=\"K\n%%+ <FONTSPEC NAME=\"B\"\n", "A|B"},
      {"of no font", "%%DocumentFontSpecs: <FONTSPEC KIND=\"K\"/>\n%%+ <FONT NAME=\"A\"/>\n%%+ FONTSPEC\n", ""},
      {"a name with a blank", "%%DocumentFontSpecs: <FONTSPEC NAME=\"A B\"/>\n", ""},
      {"they win over a name before",
       "%%DocumentFonts: B\n%%+ A\n%%DocumentFontSpecs: <FONTSPEC NAME=\"B\" KIND=\"K\"/>\n", "A|B:FontKind=K"},
      {"and stay for a name behind", "%%DocumentFontSpecs: <FONTSPEC NAME=\"A\" KIND=\"K\"/>\n%%DocumentFonts: A\n",
       "A:FontKind=K"},
      {"not over one that only looks alike",
       "%%DocumentFonts: A-Bold\n%%DocumentFontSpecs: <FONTSPEC NAME=\"ABold\" KIND=\"K\"/>\n",
       "A-Bold|ABold:FontKind=K"},
      {"of two comments in a line the one that is looked for first counts",
       "%%DocumentFontSpecs: <FONTSPEC NAME=\"A\"/>%%DocumentFonts: B\n", "B"},
      {"the later ones win",
       "%%DocumentFontSpecs: <FONTSPEC NAME=\"A\" KIND=\"1\"/>\n%%+ <FONTSPEC NAME=\"A\" KIND=\"2\"/>\n",
       "A:FontKind=2"},
  };
  for (const auto& row : kRows) {
    const std::string text = "%!PS-Adobe-3.0 EPSF-3.0\n" + row.lines;
    EXPECT_EQ(Read(folder.Write("plain.eps", text)), row.fonts) << row.rule;
    EXPECT_EQ(Read(folder.Write("preview.eps", WithPreview(text, "\n"))), row.fonts) << row.rule << ", with a preview";
  }
}

TEST_F(EPSReader, LinesAcrossBlocksAndWithoutEndsCostNoMore) {
  std::string text = "%!PS\n%%DocumentFonts: First\n%%EndComments\n";
  // A line of many blocks, and a comment at each place around a block's end.
  text += std::string(1'000'000, 'x') + "\r\n";
  for (int i = 0; i < 200; ++i) {
    text += std::string(1309, '%') + "\r\n%%DocumentFonts: F" + std::string(1, static_cast<char>('A' + i % 26)) +
            std::to_string(i) + "\r\n";
  }
  text += std::string(1'000'000, '\0');
  for (const std::string& content : {text, text + text}) {
    const std::string path = folder.Write("long.eps", content);
    const uint64_t before = test_support::BytesReadByProcess();
    const std::string fonts = Read(path);
    EXPECT_LE(test_support::BytesReadByProcess() - before, content.size() + 4096);
    EXPECT_EQ(std::count(fonts.begin(), fonts.end(), '|'), 200);
  }
}

TEST_F(EPSReader, ATruncatedFileGivesTheFontsBeforeItsEnd) {
  const std::string text =
      "%!PS-Adobe-3.0 EPSF-3.0\n%%DocumentFontSpecs: <FONTSPEC NAME=\"A\" KIND=\"K\"/>\r%%+ <FONTSPEC NAME=\"B\"/>\r\n"
      "%%DocumentFonts: C\n%%+ D\n%%DocumentNeededResources: font E\n%%EndComments\n"
      "%ADOBeginSubsetFont: F Initial\n/FontName /F def\n%ADOEndSubsetFont\n";
  for (const std::string& bytes : {text, WithPreview(text, "image")}) {
    const std::string all = Read(folder.Write("whole.eps", bytes));
    EXPECT_EQ(all, "A:FontKind=K|B|C|D|E|F");
    for (size_t size = 0; size < bytes.size(); ++size) {
      // The last one may be cut.
      const std::string fonts = Read(folder.Write("cut.eps", bytes.substr(0, size)));
      const size_t last = fonts.rfind('|');
      EXPECT_TRUE(all.starts_with(fonts.substr(0, last == std::string::npos ? 0 : last))) << size << ": " << fonts;
    }
  }
}

// Files of many producers, made by eps/make-samples.
TEST_F(EPSReader, ReadsWhatProducersWrite) {
  const std::pair<const char*, const char*> files[] = {
      {"dvips.eps", "CMR10 CMTT10"},
      {"gnuplot.eps", "Times-Roman Helvetica"},
      {"groff.eps", "Times-Roman|Helvetica-Bold"},
      {"poppler.eps", ""},  // no blank behind "%%DocumentSuppliedResources:"
      // No comments on fonts.
      {"cairo.eps", ""},
      {"ghostscript.eps", ""},
      {"graphviz.eps", ""},
      {"matplotlib.eps", ""},
  };
  for (const auto& [file, fonts] : files)
    EXPECT_EQ(Read(SOURCE_DIR "/tests/readers/eps/" + std::string(file)), fonts) << file;
}

TEST_F(EPSReader, WhatCannotBeOpenedGivesNoFonts) {
  for (const std::string& path :
       {folder / "no-such.eps", folder.Path(), folder.Write("offset.eps", "\xC5\xD0\xD3\xC6\xFF\xFF\xFF\xFF")}) {
    EXPECT_EQ(Read(path), "");
  }
  EXPECT_EQ(Read(folder.Write("far.eps", "\xC5\xD0\xD3\xC6\xFF\xFF\xFF\xFF" + std::string(100, '\n'))), "");
}

const std::string kStart = "%!PS-Adobe-3.0 EPSF-3.0\r", kEnd = "%%EndComments\r/x 1 def\r";
const std::string kSlug = "%%DocumentFontSpecs: <FONTSPEC NAME=\"A\" KIND=\"K \" FAMILY=\"" + std::string(255, 'f') +
                          "\"/>\r%%+ <FONTSPEC NAME=\"B\"/>\r";

// A parser of the file that holds two fonts with data.
void Fill(FontParserEPS& parser) {
  parser.Parse();
  parser.RegisterFontWithGlyphsure("<FONTSPEC NAME=\"A\" KIND=\"K\n\" FAMILY=\"" + std::string(300, 'f') + "\"/>");
  parser.RegisterFont("B");
}

TEST_F(EPSWriter, PutsDataBeforeTheEndOfTheHeader) {
  const std::string path = folder.Write("plain.eps", kStart + kEnd);
  FontParserEPS parser = Parser(path);
  Fill(parser);
  parser.Save();
  EXPECT_EQ(parser.GetError(), 0);
  EXPECT_EQ(TempFolder::Content(path), kStart + kSlug + kEnd);
  // Written again, the new data go before the old ones, which stay and are what is read.
  FontParserEPS again = Parser(path);
  again.Parse();
  again.RegisterFontWithGlyphsure("<FONTSPEC NAME=\"B\" KIND=\"new\"/>");
  again.Save();
  EXPECT_EQ(again.GetError(), 0);
  EXPECT_TRUE(TempFolder::Content(path).ends_with(kSlug + kEnd));
  EXPECT_EQ(Read(path), "A:FontKind=K ,Family=" + std::string(255, 'f') + "|B");
  EXPECT_EQ(folder.Names(), std::set<std::string>{"plain.eps"});
}

TEST_F(EPSWriter, MovesThePreviewBehindTheData) {
  const std::string image = "II*\0image"s;
  const std::string path = folder.Write("preview.eps", WithPreview(kStart + kEnd, image));
  for (int i = 1; i <= 2; ++i) {
    FontParserEPS parser = Parser(path);
    Fill(parser);
    parser.Save();
    ASSERT_EQ(parser.GetError(), 0);
    const std::string written = TempFolder::Content(path);
    const std::string postScript = written.substr(kHeaderSize, written.size() - kHeaderSize - image.size());
    EXPECT_EQ(written, WithPreview(postScript, image));
    EXPECT_TRUE(postScript.starts_with(kStart + "%%DocumentFontSpecs: "));
    EXPECT_TRUE(postScript.ends_with(kSlug + kEnd));
  }
  // The last way to open a file is by its name in the system encoding; the data go into that file.
  const std::string named = folder.Write("\x8A.eps", kStart + kEnd);
  FontParserEPS byName = Parser(folder / "\xC3\xA4.eps");
  Fill(byName);
  byName.Save();
  EXPECT_EQ(byName.GetError(), 0);
  EXPECT_EQ(TempFolder::Content(named), kStart + kSlug + kEnd);
  EXPECT_EQ(folder.Names().count("\xC3\xA4.eps"), 0u);
  // A preview that comes first stays where it is.
  std::string first = "\xC5\xD0\xD3\xC6" + Number(36) + Number(40) + Number(32) + Number(4) + Number(32) + Number(4) +
                      "\xFF\xFF\0\0"s + "IMAG" + kStart + kEnd;
  const std::string other = folder.Write("first.eps", first);
  FontParserEPS parser = Parser(other);
  Fill(parser);
  parser.Save();
  const std::string written = TempFolder::Content(other);
  EXPECT_EQ(written.substr(8, 4), Number(40 + static_cast<uint32_t>(kSlug.size())));
  EXPECT_EQ(written.substr(12, 24), first.substr(12, 24));
}

TEST_F(EPSWriter, AFailedSaveLeavesTheOldFile) {
  const std::string text = kStart + kEnd;
  const auto saves = [&](const std::string& path) {
    FontParserEPS parser = Parser(path);
    Fill(parser);
    parser.Save();
    return parser.GetError() == 0;
  };
  const std::string noEnd = folder.Write("no-end.eps", kStart + "%%DocumentFonts: A\r");
  EXPECT_FALSE(saves(noEnd));
  EXPECT_EQ(TempFolder::Content(noEnd), kStart + "%%DocumentFonts: A\r");
  EXPECT_FALSE(saves(folder / "no-such.eps"));
  {
    const std::string path = folder.Write("full.eps", text);
    const test_support::FullDisk full(10);
    EXPECT_FALSE(saves(path));
    EXPECT_EQ(TempFolder::Content(path), text);
  }
  if (geteuid() != 0) {
    // The folder would allow to replace the file; its own mode does not.
    const std::string path = folder.Write("read-only.eps", text);
    ASSERT_EQ(chmod(path.c_str(), 0444), 0);
    EXPECT_FALSE(saves(path));
    EXPECT_EQ(TempFolder::Content(path), text);
  }
  FontParserEPS empty = Parser(folder.Write("empty.eps", text));
  empty.Parse();
  empty.Save();
  EXPECT_EQ(empty.GetError(), 0);
  EXPECT_EQ(TempFolder::Content(folder / "empty.eps"), text);
}

}  // namespace
