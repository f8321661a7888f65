// Lists the fonts of a long PDF document, against pdffonts on the same file.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "Floor.h"
#include "Readers/FontParserPDF.h"

namespace {

constexpr int kPages = 5000, kFonts = 200, kFontsOnAPage = 8;

// Each page has its own resources with 8 of 200 fonts.
class Document {
 public:
  Document() {
    std::string kids;
    for (int page = 0; page < kPages; ++page) kids += std::to_string(PageOf(page)) + " 0 R\n";
    Add("<< /Type /Catalog /Pages 2 0 R >>");
    Add("<< /Type /Pages /Count " + std::to_string(kPages) + " /Kids [" + kids + "] >>");
    for (int font = 0; font < kFonts; ++font) {
      Add("<< /Type /Font /Subtype /Type1 /BaseFont /Font" + std::to_string(font) + "-Regular >>");
    }
    for (int page = 0; page < kPages; ++page) {
      std::string fonts;
      for (int i = 0; i < kFontsOnAPage; ++i) {
        const int font = (page * 7 + i * 31) % kFonts;
        fonts += "/F" + std::to_string(i) + " " + std::to_string(3 + font) + " 0 R ";
      }
      Add("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] /Resources " + std::to_string(PageOf(page) + 1) +
          " 0 R >>");
      Add("<< /ProcSet [/PDF /Text] /Font << " + fonts + ">> >>");
    }
    Write();
  }
  ~Document() { unlink(mPath.c_str()); }
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;
  const std::string& Path() const { return mPath; }

 private:
  static int PageOf(int page) { return 3 + kFonts + 2 * page; }

  void Add(const std::string& object) {
    char entry[32];
    std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", mBytes.size());
    mTable += entry;
    mBytes += std::to_string(++mCount) + " 0 obj\n" + object + "\nendobj\n";
  }
  void Write() {
    const std::string start = std::to_string(mBytes.size()), size = std::to_string(mCount + 1);
    mBytes += "xref\n0 " + size + "\n0000000000 65535 f \n" + mTable + "trailer\n<< /Root 1 0 R /Size " + size +
              " >>\nstartxref\n" + start + "\n%%EOF\n";
    const char* folder = std::getenv("TMPDIR");
    mPath = std::string(folder ? folder : "/tmp") + "/pdf-XXXXXX";
    const int file = mkostemp(mPath.data(), 0);
    if (file < 0 || write(file, mBytes.data(), mBytes.size()) != static_cast<ssize_t>(mBytes.size()))
      benchmark::Fail(mPath);
    close(file);
  }

  std::string mPath, mBytes = "%PDF-1.4\n", mTable;
  int mCount = 0;
};

void ReadFonts(const Document& document) {
  const auto parser = FontParser::CreateParserWithFile(document.Path(), true, FontParser::GetDefaultSystemPathStyle());
  if (!parser) benchmark::Fail("no parser");
  platform::Array fonts = platform::Array::Create();
  parser->Parse();
  parser->GetObsoleteGlyphsureData(true, &fonts);
  if (fonts.Count() != kFonts) benchmark::Fail("found " + std::to_string(fonts.Count()) + " fonts");
}

void RunPDFFonts(const Document& document) {
  std::string program = "pdffonts", path = document.Path();
  char* arguments[] = {program.data(), path.data(), nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  int status = 0;
  if (posix_spawnp(&child, arguments[0], &actions, nullptr, arguments, environ) != 0 ||
      waitpid(child, &status, 0) != child || status != 0) {
    benchmark::Fail("pdffonts can't be run");
  }
  posix_spawn_file_actions_destroy(&actions);
}

void MeasureAll() {
  const Document document;
  benchmark::Compare(
      "fonts of a PDF, 5000 pages with 8 of 200", 0.1, 5, [&] { ReadFonts(document); }, [&] { RunPDFFonts(document); });
}

}  // namespace

int main() { return benchmark::Run(MeasureAll); }
