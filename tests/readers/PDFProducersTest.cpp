// Real files of many producers, made by pdf/make-samples: the names are those that pdffonts lists, save where the
// reader has a limit.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "Readers/FontParserPDF.h"

namespace {

using Names = std::set<std::string>;

const std::string kFolder = SOURCE_DIR "/tests/readers/pdf/";

// File by file what pdffonts found.
std::map<std::string, Names> ReadListedNames() {
  std::map<std::string, Names> listed;
  std::ifstream file(kFolder + "names.txt");
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string name, font;
    words >> name;
    while (words >> font) listed[name].insert(font);
  }
  return listed;
}

TEST(PDFProducers, NamesAreThoseOfTheFile) {
  struct Limit {
    const char *file, *why;
    Names names;
  };
  const Limit limits[] = {
      {"pdftex-object-streams.pdf", "objects in streams stay unread", {}},
      {"qpdf-object-streams.pdf", "objects in streams stay unread", {}},
      {"weasyprint.pdf", "of a pattern dictionary only the first line is skipped, and its end ends the resources", {}},
  };
  std::map<std::string, Names> expected = ReadListedNames();
  ASSERT_GE(expected.size(), 15u);
  for (const Limit& limit : limits) {
    ASSERT_NE(expected.at(limit.file), limit.names) << limit.file << ": no longer so: " << limit.why;
    expected[limit.file] = limit.names;
  }
  for (const auto& [file, names] : expected) {
    const std::string path = kFolder + file;
    FontParserPDF parser(platform::FileURL::FromFileSystemRepresentation(path), path);
    parser.Parse();
    Names found;
    for (const PDFFontRecord& font : parser.GetFontRecords()) found.insert(font.name);
    EXPECT_EQ(found, names) << file;
    EXPECT_EQ(parser.GetError(), 0) << file;
    EXPECT_EQ(parser.IsUnsluggableDocument(), file == "qpdf-encrypted.pdf") << file;
  }
}

}  // namespace
