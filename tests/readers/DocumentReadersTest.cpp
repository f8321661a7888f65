// Which readers look at which document.
#include "Readers/Document/DocumentReaders.h"

#include <gtest/gtest.h>

#include "support/Records.h"
#include "support/TempFolder.h"

namespace {

TEST(DocumentReaders, TheScanReadsTheDocumentsOfIllustratorInEachForm) {
  const test_support::TempFolder folder;
  const std::string body = "\n<< /FontName /Beta/x >>\n";
  const struct {
    const char *name, *start, *names;
  } kRows[] = {
      {"old.ai", "%!PS-Adobe-3.0", "Beta"},     {"old.AIT", "%!PS-Adobe-3.0 EPSF-3.0", "Beta"},
      {"a.eps", "%!PS-Adobe-3.0 EPSF-3.0", ""}, {"a.ps", "%!PS-Adobe-3.0", ""},
      {"new.ai", "%PDF-1.4", "Beta"},           {"a.pdf", "%PDF-1.4", ""},
  };
  for (const auto& row : kRows) {
    ReadableDocument document(folder.Write(row.name, row.start + body));
    ASSERT_FALSE(document.Open());
    const platform::Array scanned = platform::Array::Create();
    std::vector<std::string> problems;
    for (const DocumentReader& reader : DocumentReaders()) {
      if (std::string_view(reader.name) == "scan" && reader.sniff(document)) reader.read(document, scanned, problems);
    }
    EXPECT_EQ(fakes::NamesOf(scanned), row.names) << row.name;
  }
}

}  // namespace
