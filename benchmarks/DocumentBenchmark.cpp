// Opens and saves large documents of noise in the host, against reading the file once through a small buffer, and
// against `cp`, alone and with the sync that makes a save survive a crash of the machine.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Floor.h"
#include "Identification/FontKeys.h"
#include "Readers/XMPFontMetadata.h"
#include "host/ByteOrder.h"
#include "host/DocumentOperations.h"
#include "host/TextLayer.h"
#include "platform/Files.h"

namespace {

constexpr size_t kMiB = size_t{1} << 20;
constexpr int kRuns = 5;

// Returns a document of about this size with one text layer and a composite image of raw noise.
std::string Document(size_t size) {
  std::string plain = host::NewLayeredFile(true);
  platform::ByteSource source(plain);
  host::LayeredFile structure;
  host::Pieces pieces;
  if (!host::ParseLayeredFile(source, structure).empty() ||
      !host::AddTextLayers(structure, plain.size(), {{"Text", "First"}}, pieces).empty()) {
    benchmark::Fail("the document can't be made");
  }
  std::string bytes = pieces.Join(plain);
  platform::ByteSource made(bytes);
  host::ParseLayeredFile(made, structure);
  constexpr uint64_t kWidth = 8192, kChannels = 3;
  const uint64_t height = size / (kWidth * kChannels);
  std::string sides;
  host::AppendBigEndian(sides, height, 4);
  host::AppendBigEndian(sides, kWidth, 4);
  bytes.resize(structure.layersAndMaskEnd);
  bytes.replace(14, sides.size(), sides);
  bytes.append(2, '\0');  // raw
  const size_t start = bytes.size();
  bytes.resize(start + height * kWidth * kChannels);
  benchmark::FillWithNoise(bytes, start);
  return bytes;
}

class Folder {
 public:
  Folder() {
    const char* folder = std::getenv("TMPDIR");
    path_ = std::string(folder ? folder : "/tmp") + "/documents-XXXXXX";
    if (!mkdtemp(path_.data())) benchmark::Fail(path_ + ": " + std::strerror(errno));
  }
  ~Folder() { platform::RemoveTree(path_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  std::string Write(const char* name, const std::string& bytes) const {
    if (platform::ReplaceFile(path_ + name, bytes)) benchmark::Fail(path_ + name + " can't be written");
    return path_ + name;
  }

 private:
  std::string path_;
};

void ReadOnce(const std::string& path) {
  constexpr size_t kBuffer = size_t{128} << 10;
  const platform::Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  const auto buffer = std::make_unique<char[]>(kBuffer);
  ssize_t got = 0;
  do {
    got = read(file.Get(), buffer.get(), kBuffer);
  } while (got > 0);
  if (got < 0) benchmark::Fail(path);
}

void Check(const std::string& problem) {
  if (!problem.empty()) benchmark::Fail(problem);
}

void OpenAndClose(const std::string& path) {
  host::DocumentOperations documents([](host_sdk::SPPluginRef) { return false; });
  int32_t id = 0;
  Check(documents.Open(path, &id));
  if (documents.OpenDocuments().Find(id)->FontNames() != std::vector<std::string>{"First"})
    benchmark::Fail("the names differ");
  Check(documents.Close(id));
}

// Does what the plug-in does after the host has saved the document.
void WriteSlug(const std::string& path) {
  static int sRun = 0;
  platform::Array fonts = platform::Array::Create();
  for (const char* name : {"First", "Second"}) {
    platform::Dictionary font = platform::Dictionary::Create();
    font.Set(GlyphsureSupport::kGS_PostScriptNameKey, name);
    font.Set(GlyphsureSupport::kGS_VersionKey, std::to_string(++sRun));
    fonts.Append(font);
  }
  if (WriteXMPGlyphsureSlugToFile(path, fonts) != CoreErrorCodes::kSuccess)
    benchmark::Fail("the slug can't be written");
}

void EditAndSave(const std::string& path, bool withSlug = false) {
  host::DocumentOperations documents([](host_sdk::SPPluginRef) { return false; });
  int32_t id = 0;
  Check(documents.Open(path, &id));
  Check(documents.Edit(id, "Second"));
  Check(documents.Save(id));
  if (withSlug) WriteSlug(path);
  Check(documents.Close(id));
}

void Copy(const std::string& from, const std::string& to, bool isSynced) {
  unlink(to.c_str());
  const std::string copying = "cp '" + from + "' '" + to + "'", syncing = " && sync '" + to + "'";
  Check(std::system((copying + (isSynced ? syncing : "")).c_str()) == 0 ? "" : "cp failed");
}

void MeasureAll() {
  if (InitializeGlyphsureXMP() != 0) benchmark::Fail("the XMP library can't be started");
  const Folder folder;
  const std::string small = folder.Write("/small.psb", Document(kMiB));
  const std::string medium = folder.Write("/medium.psb", Document(64 * kMiB));
  const std::string large = folder.Write("/large.psb", Document(512 * kMiB));
  benchmark::Compare(
      "open, 512 MiB", 4, kRuns, [&] { OpenAndClose(large); }, [&] { ReadOnce(large); });
  benchmark::Compare(
      "open, edit, save, close, 64 MiB, synced", 1.5, kRuns, [&] { EditAndSave(medium); },
      [&] { Copy(medium, medium + ".copy", true); });
  for (const bool isSynced : {true, false}) {
    benchmark::Compare(
        isSynced ? "open, edit, save with slug, close, synced cp" : "open, edit, save with slug, close, cp",
        isSynced ? 1.5 : 4, kRuns, [&] { EditAndSave(medium, true); },
        [&] { Copy(medium, medium + ".copy", isSynced); });
  }
  const double floor = benchmark::PeakOf([&] { EditAndSave(small); });
  benchmark::Report("peak memory, 512 MiB against 1 MiB", benchmark::PeakOf([&] { EditAndSave(large); }), floor, 1.2,
                    "MiB");
  TerminateGlyphsureXMP();
}

}  // namespace

int main() { return benchmark::Run(MeasureAll); }
