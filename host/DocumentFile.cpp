#include "host/DocumentFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "host/ByteOrder.h"
#include "host/FontSets.h"
#include "host/TextLayer.h"
#include "platform/LastError.h"
#include "platform/LayeredPacket.h"
#include "platform/TextEncoding.h"

namespace host {

namespace {

constexpr size_t kFarthestHeader = 1024;  // readers of PDF look for its header up to here
constexpr size_t kFarthestEnd = 65536;    // from the end: other programs append data after the trailer

std::string Line(const std::string& path, const std::string& problem) { return path + ": " + problem; }

std::string ExtensionOf(const std::string& path) {
  return platform::ToLowercase(std::filesystem::path(path).extension().string());
}

std::string LastProblem() { return platform::DescribeError(platform::LastError()); }

// Refuses what cannot be read as a file, and what would block or never end.
std::string CheckKind(const struct stat& info) {
  if (S_ISDIR(info.st_mode)) return "a folder, not a document";
  if (!S_ISREG(info.st_mode)) return "not a regular file";
  return info.st_size == 0 ? "the file is empty" : "";
}

FileState StateOf(const struct stat& info) {
  return {info.st_dev, info.st_ino, static_cast<uint64_t>(info.st_size), info.st_mtim.tv_sec, info.st_mtim.tv_nsec};
}

std::string OpenFile(const std::string& path, DocumentContent& content) {
  struct stat info;
  if (stat(path.c_str(), &info) != 0) return LastProblem();
  std::string problem = CheckKind(info);
  if (!problem.empty()) return problem;
  // O_NONBLOCK, in case something else has replaced the file.
  content.file = platform::Descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!content.file || fstat(content.file.Get(), &info) != 0) return LastProblem();
  content.state = StateOf(info);
  return CheckKind(info);
}

platform::ByteSource SourceOf(const DocumentContent& content) { return {content.file.Get(), content.state.size}; }

std::string CheckPDF(platform::ByteSource& source) {
  if (source.View(0, kFarthestHeader).substr(0, kFarthestHeader).find("%PDF-") == std::string_view::npos) {
    return "the file is not a PDF document: it does not begin with \"%PDF-\"";
  }
  const uint64_t from = source.Size() > kFarthestEnd ? source.Size() - kFarthestEnd : 0;
  const bool hasEnd = source.View(from, kFarthestEnd).find("startxref") != std::string_view::npos;
  return hasEnd ? "" : "the file is truncated: its cross-reference at the end is missing";
}

std::string ReadStructure(const std::string& path, platform::ByteSource& source, DocumentContent& content) {
  const std::string extension = ExtensionOf(path);
  FontNames names;
  std::string problem;
  if (HasLayeredFileSignature(source.View(0, 4)) || extension == ".psd" || extension == ".psb") {
    problem = ParseLayeredFile(source, content.structure);
    if (!problem.empty()) return problem;
    content.format = content.structure.isLarge ? DocumentFormat::kPSB : DocumentFormat::kPSD;
    content.textProblem = TextLayerProblem(content.structure);
    for (const auto& [begin, end] : PartsWithoutPixels(content.structure, source.Size())) {
      names.ReadFrom(source, begin, end);
    }
  } else {
    content.format = DocumentFormat::kOther;
    content.textProblem = "text can be added to .psd and .psb documents only";
    if (extension == ".pdf") problem = CheckPDF(source);
    if (!problem.empty()) return problem;
    names.ReadFrom(source, 0, source.Size());
  }
  content.fontNames = names.Found();
  return "";
}

// Other programs write metadata about each font into the file as soon as it is saved. With room for it, they need not
// write the whole file again.
void AddPacketRoom(const LayeredFile& structure, platform::ByteSource& source, size_t fonts, Pieces& pieces) {
  constexpr size_t kRoom = 2048, kRoomForFont = 1024, kLargestSection = 16u << 20, kLengthField = 4;
  const uint64_t begin = structure.resources + kLengthField;
  BigEndianReader reader(source, structure.resources, source.Size());
  const uint64_t size = reader.Read(kLengthField);
  if (!reader.Ok() || size > kLargestSection) return;
  const auto length = static_cast<size_t>(size);
  std::string roomy;
  if (!platform::MakePacketRoom(source.View(begin, length).substr(0, length), kRoom + fonts * kRoomForFont, roomy)) {
    return;
  }
  std::string section;
  AppendBigEndian(section, roomy.size(), kLengthField);
  pieces.Replace(structure.resources, begin + size, section + roomy);
}

bool AreEqual(platform::ByteSource& one, uint64_t at, platform::ByteSource& other, uint64_t otherAt, uint64_t count) {
  constexpr uint64_t kPiece = 65536;
  while (count > 0) {
    const auto size = static_cast<size_t>(std::min(count, kPiece));
    const std::string_view bytes = one.View(at, size).substr(0, size);
    if (bytes.size() < size || other.View(otherAt, size).substr(0, size) != bytes) return false;
    at += size;
    otherAt += size;
    count -= size;
  }
  return true;
}

}  // namespace

std::string ReadDocument(const std::string& path, DocumentContent& content) {
  DocumentContent read;
  std::string problem = OpenFile(path, read);
  if (!problem.empty()) return Line(path, problem);
  platform::ByteSource source = SourceOf(read);
  problem = ReadStructure(path, source, read);
  // Missing bytes after a failed read look like damage.
  if (source.Error()) problem = platform::DescribeError(source.Error());
  if (!problem.empty()) return Line(path, problem);
  content = std::move(read);
  return "";
}

bool ShowTheSame(const DocumentContent& one, const DocumentContent& other) {
  const auto isLayered = [](const DocumentContent& content) {
    return content.format == DocumentFormat::kPSD || content.format == DocumentFormat::kPSB;
  };
  if (!isLayered(one) || !isLayered(other)) return false;
  const LayeredFile &first = one.structure, &second = other.structure;
  const uint64_t rest = one.state.size - first.layersAndMask;
  if (first.resources != second.resources || rest != other.state.size - second.layersAndMask) return false;
  platform::ByteSource source = SourceOf(one), otherSource = SourceOf(other);
  return AreEqual(source, 0, otherSource, 0, first.resources) &&
         AreEqual(source, first.layersAndMask, otherSource, second.layersAndMask, rest);
}

std::string StageDocument(const DocumentContent& content, DocumentFormat format,
                          const std::vector<std::string>& fontNames, const std::string& path,
                          platform::StagedFile& staged) {
  std::string made;
  LayeredFile structure = content.structure;
  if (!content.file) {
    made = NewLayeredFile(format == DocumentFormat::kPSB);
    platform::ByteSource source(made);
    ParseLayeredFile(source, structure);
  }
  const uint64_t size = content.file ? content.state.size : made.size();
  Pieces pieces;
  pieces.AddRange(0, size);
  if (!fontNames.empty()) {
    std::vector<TextLayer> layers;
    layers.reserve(fontNames.size());
    for (const std::string& name : fontNames) layers.push_back({"Text in " + name, name});
    const std::string problem = AddTextLayers(structure, size, layers, pieces);
    if (!problem.empty()) return Line(path, problem);
    platform::ByteSource file = SourceOf(content), memory(made);
    AddPacketRoom(structure, content.file ? file : memory, content.fontNames.size() + fontNames.size(), pieces);
  }
  const std::error_code error = content.file ? staged.StagePieces(path, content.file.Get(), pieces.List())
                                             : staged.Stage(path, pieces.Join(made));
  return error ? Line(path, platform::DescribeError(error)) : "";
}

FileState StateOf(const std::string& path) {
  struct stat info;
  return stat(path.c_str(), &info) == 0 ? StateOf(info) : FileState();
}

FileState StateOf(const platform::Descriptor& file) {
  struct stat info;
  return fstat(file.Get(), &info) == 0 ? StateOf(info) : FileState();
}

DocumentFormat FormatOfExtension(const std::string& path) {
  const std::string extension = ExtensionOf(path);
  if (extension.empty()) return DocumentFormat::kNone;
  if (extension == ".psd") return DocumentFormat::kPSD;
  return extension == ".psb" ? DocumentFormat::kPSB : DocumentFormat::kOther;
}

bool HaveOneExtension(const std::string& path, const std::string& other) {
  return ExtensionOf(path) == ExtensionOf(other);
}

std::string ResolvedPath(const std::string& path) {
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(path, error);
  const std::filesystem::path resolved = error ? absolute : std::filesystem::weakly_canonical(absolute, error);
  return error ? path : resolved.string();
}

}  // namespace host
