// Which readers look at which document.
#include "Readers/Document/DocumentReaders.h"

#include <gtest/gtest.h>

#include "Identification/FontKeys.h"
#include "Readers/XMPFontMetadata.h"
#include "support/TempFolder.h"

namespace {

TEST(DocumentReaders, TheScanReadsTheDocumentsOfIllustratorInEachForm) {
  const test_support::TempFolder folder;
  ASSERT_EQ(InitializeGlyphsureXMP(), 0);
  const std::string body = "\n<< /FontName /Beta/x >>\n";
  const struct {
    const char *name, *start;
    size_t count;
  } kRows[] = {
      {"old.ai", "%!PS-Adobe-3.0", 1},
      {"old.AIT", "%!PS-Adobe-3.0 EPSF-3.0", 1},
      {"a.eps", "%!PS-Adobe-3.0 EPSF-3.0", 0},
      {"a.ps", "%!PS-Adobe-3.0", 0},
      {"new.ai", "%PDF-1.4", 1},
      {"a.pdf", "%PDF-1.4", 0},
  };
  for (const auto& row : kRows) {
    ReadableDocument document(folder.Write(row.name, row.start + body));
    DocumentFonts fonts;
    for (const DocumentReader& reader : DocumentReaders()) {
      if (reader.sniff(document)) reader.read(document, fonts);
    }
    ASSERT_EQ(fonts.From("scan").Count(), row.count) << row.name;
    if (row.count == 0) continue;
    EXPECT_EQ(platform::Dictionary(fonts.From("scan").At(0)).GetString(GlyphsureSupport::kGS_PostScriptNameKey).Text(),
              "Beta");
  }
  TerminateGlyphsureXMP();
}

}  // namespace
