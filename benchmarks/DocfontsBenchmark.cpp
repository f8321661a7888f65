// Lists the fonts of a folder of documents, against exiftool on the same folder. Writes identification data into a
// large EPS file, against cp.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "Floor.h"
#include "Readers/FontParserEPS.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

constexpr int kDocuments = 2000, kFolders = 40;
constexpr size_t kMiB = size_t{1} << 20, kEPSSize = 256 * kMiB;
const std::string kStart = "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 9 9\n%%EndComments\n";

void Run(const std::string& command) {
  if (std::system(command.c_str()) != 0) benchmark::Fail(command + " fails");
}

std::string Quoted(const std::string& path) { return "'" + path + "'"; }

// Copies of the tree's documents of all kinds, with EPS files in between.
void FillFolder(const test_support::TempFolder& folder) {
  std::vector<fs::path> documents;
  for (const char* samples :
       {SOURCE_DIR "/samples", SOURCE_DIR "/tests/readers/pdf", SOURCE_DIR "/tests/docfonts/samples"}) {
    for (const auto& entry : fs::directory_iterator(samples)) {
      const std::string extension = entry.path().extension();
      if (entry.is_regular_file() && !extension.empty() && extension != ".txt") documents.push_back(entry.path());
    }
  }
  constexpr size_t kEPSKinds = 4;
  const std::string page(20'000, '\n');
  for (int i = 0; i < kDocuments; ++i) {
    const std::string place = "documents/" + std::to_string(i % kFolders) + "/" + std::to_string(i);
    const size_t kind = static_cast<size_t>(i) % (documents.size() + kEPSKinds);
    if (kind < documents.size()) {
      fs::create_directories(fs::path(folder / place).parent_path());
      fs::copy_file(documents[kind], folder / (place + documents[kind].extension().string()));
    } else {
      folder.Write(place + ".eps", "%!PS-Adobe-3.0 EPSF-3.0\n%%DocumentFonts: A\n%%+ B\n%%EndComments\n" + page);
    }
  }
}

void SaveData(const std::string& path) {
  FontParserEPS parser(platform::FileURL::FromFileSystemRepresentation(path), path);
  parser.Parse();
  parser.RegisterFontWithGlyphsure("<FONTSPEC NAME=\"A-Bold\" KIND=\"OpenType\" FOUNDRY=\"F\" CHECKSUM=\"1\"/>");
  parser.Save();
  if (parser.GetError() != 0) benchmark::Fail(path + " can't be written");
}

// Both replace an old file, but `cp` leaves the writing to the disk for later, which a save must not.
void CompareSaving(const char* name, const test_support::TempFolder& folder) {
  const std::string file = folder / "large.eps", copy = folder / "copy.eps";
  // A file that holds data already would be read to its end, for more fonts.
  const auto write = [&] {
    folder.Write("large.eps", kStart + std::string(kEPSSize, '\n'));
    Run("sync " + Quoted(file));
  };
  write();
  fs::copy_file(file, copy);
  benchmark::Compare(
      name, 1.5, 5, [&] { SaveData(file); }, [&] { Run("cp " + Quoted(file) + " " + Quoted(copy)); }, write);
}

void MeasureAll() {
  const test_support::TempFolder folder;
  FillFolder(folder);
  const std::string documents = Quoted(folder / "documents");
  benchmark::Compare(
      "fonts of 2000 documents, against exiftool", 0.1, 5,
      [&] { Run(Quoted(APP_DIR "/docfonts/docfonts") + " -r " + documents + " >/dev/null 2>&1 || test $? = 1"); },
      [&] { Run("exiftool -r -fast " + documents + " >/dev/null 2>&1 || test $? = 1"); });

  CompareSaving("data into an EPS of 256 MiB, against cp", folder);
  // Without the disk, whose time differs much from one write to the next.
  setenv("TMPDIR", "/dev/shm", 1);
  CompareSaving("the same in memory", test_support::TempFolder());
}

}  // namespace

int main() { return benchmark::Run(MeasureAll); }
