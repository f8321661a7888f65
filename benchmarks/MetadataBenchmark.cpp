// Reads and writes the metadata of documents, which another process does: an ordinary document against 10 ms, and the
// slug in a large document against copying it.
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "Floor.h"
#include "Identification/FontKeys.h"
#include "Readers/XMPFontMetadata.h"
#include "platform/Files.h"

namespace {

using platform::Array;
using platform::Dictionary;

constexpr int kRuns = 7;
constexpr size_t kMiB = size_t{1} << 20;

std::string MakeFolder(const std::filesystem::path& above) {
  std::string folder = (above / "metadata-XXXXXX").string();
  if (!mkdtemp(folder.data())) benchmark::Fail(folder + ": " + std::strerror(errno));
  return folder;
}

std::string Number(uint32_t value, int bytes) {
  std::string text;
  for (int i = bytes - 1; i >= 0; --i) text.push_back(static_cast<char>(value >> (8 * i)));
  return text;
}

// Returns a document of noise without layers and metadata.
void WriteDocument(const std::string& path, uint32_t megabytes) {
  const uint32_t width = 1024, height = megabytes * 1024;  // in gray
  std::ofstream file(path, std::ios::binary);
  file << "8BPS" << Number(1, 2) << std::string(6, '\0') << Number(1, 2) << Number(height, 4) << Number(width, 4)
       << Number(8, 2) << Number(1, 2) << Number(0, 4) << Number(0, 4) << Number(0, 4) << Number(0, 2);
  uint64_t state = 88172645463325252ULL;
  std::string block(kMiB, '\0');
  for (uint32_t i = 0; i < megabytes; ++i) {
    for (size_t at = 0; at < kMiB; at += sizeof state) {
      state ^= state << 13;
      state ^= state >> 7;
      state ^= state << 17;
      std::memcpy(block.data() + at, &state, sizeof state);
    }
    file << block;
  }
  if (!file.flush()) benchmark::Fail(path + " can't be written");
}

Array Fonts(int count) {
  Array fonts = Array::Create();
  for (int i = 0; i < count; ++i) {
    Dictionary font = Dictionary::Create();
    font.Set(GlyphsureSupport::kGS_PostScriptNameKey, "Font-" + std::to_string(i));
    font.Set(GlyphsureSupport::kGS_FoundryKey, "Foundry");
    fonts.Append(font);
  }
  return fonts;
}

void WriteSlug(const std::string& path, int count) {
  if (WriteXMPGlyphsureSlugToFile(path, Fonts(count)) != CoreErrorCodes::kSuccess)
    benchmark::Fail("the slug can't be written");
}

// Returns the shortest time of several runs, in milliseconds.
double Best(const std::function<void()>& work) {
  double best = std::numeric_limits<double>::infinity();
  for (int i = 0; i < kRuns; ++i) best = std::min(best, benchmark::Measure(work) * 1000);
  return best;
}

void MeasureAll() {
  if (InitializeGlyphsureXMP() != 0) benchmark::Fail("the XMP library can't be started");
  const std::string folder = MakeFolder(std::filesystem::temp_directory_path());
  const std::string large = folder + "/large.psd", copy = folder + "/copy.psd";
  // In memory, because the time of the disk is not a cost of the metadata.
  const std::string inMemory = MakeFolder("/dev/shm"), small = inMemory + "/small.psd";
  WriteDocument(small, 1);
  WriteDocument(large, 64);
  int count = 1;
  benchmark::Report("slug's write, against 10 ms", Best([&] { WriteSlug(small, ++count); }), 10, 1, "ms");
  const auto read = [&] {
    const Array slug = Array::Create();
    if (ReadXMPGlyphsureSlugFromFile(small, slug) != CoreErrorCodes::kSuccess || slug.Count() == 0)
      benchmark::Fail("no slug");
  };
  benchmark::Report("slug's read, against 10 ms", Best(read), 10, 1, "ms");
  benchmark::Report("same slug again, 64 MiB, against 10 ms", (WriteSlug(large, 3), Best([&] { WriteSlug(large, 3); })),
                    10, 1, "ms");
  const auto run = [](const std::string& command) {
    if (std::system(command.c_str()) != 0) benchmark::Fail(command + " fails");
  };
  const std::string copying = "cp '" + large + "' '" + copy + "'";
  const auto copyTo = [&](const std::string& command) {
    unlink(copy.c_str());
    run(command);
  };
  count = 3;
  benchmark::Compare(
      "slug's write in its place, 64 MiB, against cp", 1.5, kRuns, [&] { WriteSlug(large, count ^= 1); },
      [&] { copyTo(copying); });
  // Adds so many fonts each time that the document must be rewritten. The floor is the cheapest rewrite that survives a
  // loss of power.
  benchmark::Compare(
      "slug's write with growth, 64 MiB, against cp and sync", 1.5, kRuns, [&] { WriteSlug(large, count += 50); },
      [&] { copyTo(copying + " && sync '" + copy + "'"); });
  platform::RemoveTree(folder);
  platform::RemoveTree(inMemory);
  TerminateGlyphsureXMP();
}

}  // namespace

int main() { return benchmark::Run(MeasureAll); }
