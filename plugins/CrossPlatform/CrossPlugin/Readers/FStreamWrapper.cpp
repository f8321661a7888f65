#include "Readers/FStreamWrapper.h"

#include <algorithm>
#include <array>

#include "Services/DiagnosticLog.h"
#include "platform/Files.h"
#include "platform/TextEncoding.h"

void FStreamWrapper::open(const char* path, std::ios_base::openmode mode) {
  if (platform::CheckReadable(path)) {
    mStream.setstate(std::ios_base::failbit);
  } else {
    mStream.open(path, mode);
    if (mStream.good()) mPath = path;
  }
}

std::streamoff FStreamWrapper::GetStreamLength() {
  const std::streamoff position = tellg();
  seekg(0, std::ios_base::end);
  const std::streamoff length = tellg();
  seekg(position);
  return length;
}

void FStreamWrapper::LengthenFileStream(std::streamoff length) {
  static constexpr std::array<char, 8192> kZeros{};
  const std::streamoff position = tellp();
  seekp(0, std::ios_base::end);
  std::streamoff missing = good() ? length - tellp() : 0;
  while (missing > 0 && good()) {
    const auto count = std::min<std::streamoff>(missing, kZeros.size());
    write(kZeros.data(), count);
    missing -= count;
  }
  seekp(position);
}

int ReadStream(FStreamWrapper& stream, std::streamsize& size, char* buffer) {
  stream.read(buffer, size);
  const std::streamsize got = stream.gcount();
  if (got == size) return 0;
  size = got;
  // Otherwise reading after a seek would fail.
  if (stream.eof()) stream.clear();
  return -1;
}

int WriteStream(FStreamWrapper& stream, std::streamsize& size, const char* buffer) {
  const std::streamoff before = stream.tellp();
  stream.write(buffer, size);
  const std::streamoff after = stream.tellp();
  const std::streamsize moved = std::max<std::streamoff>(after - before, 0);
  if (after >= 0 && moved >= size) return 0;
  size = moved;
  return -1;
}

bool OpenFileStreamFromCFURLRef(const platform::FileURL& url, const std::string& path, FStreamWrapper& stream,
                                bool readOnly) {
  constexpr size_t kMaxRepresentation = 1024;
  std::array<char, kMaxRepresentation> representation{};
  std::string place;
  if (url.GetFileSystemRepresentation(representation.data(), representation.size())) {
    place = representation.data();
  } else {
    OutputIndentedAndFormattedString(0, "ERROR: CFURLGetFileSystemRepresentation('%s') failed.", path.c_str());
    OutputIndentedAndFormattedString(0, "Trying again with kCFStringEncodingUTF8: '%s'", path.c_str());
    if (!platform::IsValidUTF8(path) || path.find('\0') != std::string::npos) return false;
    place = path;
  }
  const auto mode = readOnly ? std::ios_base::in | std::ios_base::binary
                             : std::ios_base::in | std::ios_base::out | std::ios_base::binary;
  stream.open(place.c_str(), mode);
  if (stream.good()) return true;
  OutputIndentedAndFormattedString(0, "WARNING: std::fstream::open('%s') failed.", place.c_str());
  OutputIndentedAndFormattedString(0, "Trying again with default system encoding (0x%08x): '%s'",
                                   static_cast<unsigned>(platform::kSystemEncoding), path.c_str());
  const auto encoded = platform::EncodeText(path, platform::kSystemEncoding);
  if (!encoded) return false;
  stream.clear();
  stream.open(encoded->c_str(), mode);
  return stream.good();
}

bool SplitPath(const std::string& path, std::string& outFolder, std::string& outName) {
  size_t at = path.rfind('\\');
  if (at == std::string::npos) at = path.rfind('/');
  if (at == std::string::npos || at + 1 == path.size()) return false;
  // The results may alias the path.
  std::string name = path.substr(at + 1);
  outFolder = path.substr(0, at + 1);
  outName = std::move(name);
  return true;
}
