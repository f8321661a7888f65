#include "host/DocumentFile.h"

#include <sys/stat.h>

#include <filesystem>
#include <optional>

#include "host/FontSets.h"
#include "host/TextLayer.h"
#include "platform/Files.h"
#include "platform/TextEncoding.h"

namespace host {

namespace {

constexpr size_t kFarthestHeader = 1024;  // where readers of PDF still look for its header
constexpr size_t kFarthestEnd = 65536;    // from the end: other programs append their own data behind the trailer

std::string Line(const std::string& path, const std::string& problem) { return path + ": " + problem; }

std::string ExtensionOf(const std::string& path) {
  return platform::ToLowercase(std::filesystem::path(path).extension().string());
}

// What cannot be read as a file, and what would block or never end.
std::string CheckKind(const std::string& path) {
  struct stat info;
  if (stat(path.c_str(), &info) != 0) return platform::DescribeError({errno, std::generic_category()});
  if (S_ISDIR(info.st_mode)) return "a folder, no document";
  if (!S_ISREG(info.st_mode)) return "no regular file";
  return info.st_size == 0 ? "the file is empty" : "";
}

std::string CheckPDF(std::string_view bytes) {
  if (bytes.substr(0, kFarthestHeader).find("%PDF-") == std::string_view::npos) {
    return "the file is no PDF document: it does not begin with \"%PDF-\"";
  }
  const size_t from = bytes.size() > kFarthestEnd ? bytes.size() - kFarthestEnd : 0;
  const bool hasEnd = bytes.substr(from).find("startxref") != std::string_view::npos;
  return hasEnd ? "" : "the file is truncated: its cross-reference at the end is missing";
}

std::string ReadStructure(const std::string& path, DocumentContent& content) {
  const std::string extension = ExtensionOf(path);
  if (HasLayeredFileSignature(content.bytes) || extension == ".psd" || extension == ".psb") {
    LayeredFile file;
    std::string problem = ParseLayeredFile(content.bytes, file);
    content.format = file.isLarge ? DocumentFormat::kPSB : DocumentFormat::kPSD;
    content.textProblem = TextLayerProblem(file);
    return problem;
  }
  content.format = DocumentFormat::kOther;
  content.textProblem = "text can be added to .psd and .psb documents only";
  return extension == ".pdf" ? CheckPDF(content.bytes) : "";
}

}  // namespace

std::string ReadDocument(const std::string& path, DocumentContent& content) {
  DocumentContent read;
  std::string problem = CheckKind(path);
  if (problem.empty()) {
    const std::error_code error = platform::ReadFile(path, read.bytes);
    if (error) problem = platform::DescribeError(error);
  }
  if (problem.empty()) problem = ReadStructure(path, read);
  if (!problem.empty()) return Line(path, problem);
  read.fontNames = FontNamesInBytes(read.bytes);
  content = std::move(read);
  return "";
}

void MakeContent(DocumentFormat format, DocumentContent& content) {
  content = {};
  content.format = format;
  content.bytes = NewLayeredFile(format == DocumentFormat::kPSB);
}

std::string AddTexts(const std::string& path, const std::vector<std::string>& fontNames, DocumentContent& content) {
  if (fontNames.empty()) return "";
  std::vector<TextLayer> layers;
  layers.reserve(fontNames.size());
  for (const std::string& name : fontNames) layers.push_back({"Text in " + name, name});
  std::string bytes;
  const std::string problem = AddTextLayers(content.bytes, layers, bytes);
  if (!problem.empty()) return Line(path, problem);
  content.bytes = std::move(bytes);
  content.fontNames = FontNamesInBytes(content.bytes);
  return "";
}

DocumentFormat FormatOfExtension(const std::string& path) {
  const std::string extension = ExtensionOf(path);
  if (extension.empty()) return DocumentFormat::kNone;
  if (extension == ".psd") return DocumentFormat::kPSD;
  return extension == ".psb" ? DocumentFormat::kPSB : DocumentFormat::kOther;
}

std::string ResolvedPath(const std::string& path) {
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(path, error);
  const std::filesystem::path resolved = error ? absolute : std::filesystem::weakly_canonical(absolute, error);
  return error ? path : resolved.string();
}

}  // namespace host
