#include "agent/fonts/FontFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <system_error>

#include "agent/fonts/FaceReader.h"
#include "agent/fonts/SfntTables.h"
#include "platform/Descriptor.h"
#include "platform/Files.h"
#include "platform/LastError.h"
#include "platform/TextEncoding.h"

namespace agent {

namespace {

constexpr size_t kLargestFile = size_t{1} << 30;
constexpr size_t kStart = 4096;  // of a file, to see what it is

std::string_view BaseName(std::string_view path) { return path.substr(path.rfind('/') + 1); }

bool IsNamedLikeAFont(std::string_view path) {
  static constexpr std::array<std::string_view, 9> kExtensions = {".ttf", ".otf", ".ttc", ".otc",  ".pfa",
                                                                  ".pfb", ".t1",  ".cff", ".dfont"};
  const std::string_view name = BaseName(path);
  const size_t dot = name.rfind('.');
  if (dot == std::string_view::npos) return false;
  const std::string extension = platform::ToLowercase(name.substr(dot));
  return std::find(kExtensions.begin(), kExtensions.end(), extension) != kExtensions.end();
}

bool IsType1(std::string_view bytes) {
  if (bytes.starts_with("\x80\x01")) bytes.remove_prefix(std::min<size_t>(6, bytes.size()));
  return bytes.starts_with("%!PS-AdobeFont") || bytes.starts_with("%!FontType1");
}

bool StartsLikeAFont(std::string_view bytes) { return SfntTables::IsSfnt(bytes) || IsType1(bytes); }

// Reads on to this size, or to the end.
std::error_code ReadTo(size_t size, int file, std::string& bytes) {
  size_t at = bytes.size();
  bytes.resize(size);
  while (at < size) {
    const ssize_t count = read(file, bytes.data() + at, size - at);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return platform::LastError();
    if (count == 0) break;
    at += static_cast<size_t>(count);
  }
  bytes.resize(at);
  return {};
}

// Checks that the segments of the binary form follow each other within the file. FreeType would read missing bytes as
// zeros.
bool SegmentsAreWhole(std::string_view bytes) {
  while (bytes.size() >= 2 && bytes[0] == '\x80') {
    if (bytes[1] == 3) return true;
    if (bytes.size() < 6) return false;
    size_t length = 0;
    for (size_t i = 0; i < 4; ++i) length |= size_t{static_cast<uint8_t>(bytes[2 + i])} << (8 * i);
    if (length > bytes.size() - 6) return false;
    bytes.remove_prefix(6 + length);
  }
  return false;
}

}  // namespace

struct FontFileReader::Library {
  FreeTypeLibrary freeType;
};

FontFileReader::FontFileReader() : library_(std::make_unique<Library>()) {}
FontFileReader::~FontFileReader() = default;

FontFileContent FontFileReader::Read(const std::string& path) const {
  FontFileContent content;
  const auto broken = [&](const std::string& why) {
    content.verdict = FontVerdict::kBroken;
    content.problem = why;
    return content;
  };
  const platform::Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));  // a pipe would block
  struct stat info;
  if (!file || fstat(file.Get(), &info) != 0) return broken(platform::DescribeError(platform::LastError()));
  if (!S_ISREG(info.st_mode)) return content;
  const auto size = static_cast<size_t>(info.st_size);
  if (size > kLargestFile) return IsNamedLikeAFont(path) ? broken("is too large for a font file") : content;
  std::string bytes;
  std::error_code error = ReadTo(std::min(size, kStart), file.Get(), bytes);
  // Do not read large files such as films and archives to find that they are not fonts.
  if (!error && !StartsLikeAFont(bytes) && !IsNamedLikeAFont(path)) return content;
  if (!error) error = ReadTo(size, file.Get(), bytes);
  if (error) return broken(platform::DescribeError(error));
  return Parse(bytes, std::string(BaseName(path)));
}

FontFileContent FontFileReader::Parse(std::string_view bytes, const std::string& fileName) const {
  FontFileContent content;
  const auto note = [&](const std::string& why) {
    if (content.problem.empty()) content.problem = why;
  };
  std::string problem;
  if (SfntTables::IsSfnt(bytes)) {
    const auto offsets = SfntTables::FaceOffsets(bytes, problem);
    if (!offsets) note(problem);
    FileReading reading(bytes);
    for (size_t i = 0; offsets && i < offsets->size() && !reading.IsSpent(); ++i) {
      const auto tables = SfntTables::Parse(bytes, (*offsets)[i], problem);
      FontFace face;
      if (tables && ReadSfntFace(library_->freeType, bytes, *tables, static_cast<int>(i), reading, face, problem)) {
        content.faces.push_back(face);
      } else {
        note(offsets->size() > 1 ? "face " + std::to_string(i) + ": " + problem : problem);
      }
    }
  } else if (IsType1(bytes)) {
    FontFace face;
    if (bytes[0] == '\x80' && !SegmentsAreWhole(bytes)) {
      note("a segment reaches beyond the end of the file");
    } else if (ReadType1Face(library_->freeType, bytes, fileName, face, problem)) {
      content.faces.push_back(face);
    } else {
      note(problem);
    }
  } else if (IsNamedLikeAFont(fileName)) {
    note(bytes.empty() ? "is empty" : "is not a font file");
  } else {
    return content;
  }
  content.verdict = content.faces.empty() ? FontVerdict::kBroken : FontVerdict::kFont;
  return content;
}

}  // namespace agent
