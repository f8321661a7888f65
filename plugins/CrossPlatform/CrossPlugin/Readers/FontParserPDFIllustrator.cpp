// Illustrator's own document inside a PDF, in private data: unpacked into a temporary file and parsed there.
#include <zlib.h>

#include <algorithm>
#include <array>
#include <string>

#include "Readers/FontParserPDF.h"
#include "Services/DiagnosticLog.h"
#include "platform/TemporaryFile.h"

namespace {

constexpr size_t kChunk = 1024;
// A small file can unpack to any size, so the size is limited by what was read so far. What goes beyond is cut off: a
// PostScript document keeps the fonts of its header, a PDF loses its table of objects and with it all fonts. At the
// most the names of fonts alone, or nested documents whose objects overlap, cost few seconds and a part of the memory
// that docfonts allows a document.
constexpr size_t kMaxUnpacked = size_t{16} * 1024 * 1024, kMinUnpacked = size_t{1024} * 1024, kMaxRatio = 64;

size_t UnpackLimit(size_t packed) { return std::min(kMaxUnpacked, kMinUnpacked + kMaxRatio * packed); }

// How deep documents may be nested.
constexpr int kMaxNesting = 3;
thread_local int sNesting = 0;

// Inflates chunk by chunk into a file.
class Inflater {
 public:
  // zlib compares only the first digit with its own version.
  Inflater() : mIsReady(inflateInit_(&mStream, "1.2.1", sizeof mStream) == Z_OK) {}
  ~Inflater() {
    if (mIsReady) inflateEnd(&mStream);
  }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;

  bool IsReady() const { return mIsReady; }
  // Adds the number of written bytes to outCount. Returns false when the data end, are damaged or reach the limit.
  bool Inflate(std::string_view chunk, platform::TemporaryFile& file, size_t& outCount) {
    std::array<char, kChunk> output;
    mStream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(chunk.data()));
    mStream.avail_in = static_cast<uInt>(chunk.size());
    mPacked += chunk.size();
    const size_t limit = UnpackLimit(mPacked);
    int result = Z_OK;
    do {
      mStream.next_out = reinterpret_cast<Bytef*>(output.data());
      mStream.avail_out = kChunk;
      result = inflate(&mStream, Z_SYNC_FLUSH);
      const size_t count = kChunk - mStream.avail_out;
      if (file.Write({output.data(), count})) return false;
      outCount += count;
    } while (result == Z_OK && mStream.avail_out == 0 && outCount < limit);
    // A chunk that filled the output exactly leaves nothing.
    return (result == Z_OK || result == Z_BUF_ERROR) && outCount < limit;
  }

 private:
  z_stream mStream{};
  bool mIsReady;
  size_t mPacked = 0;  // bytes given to Inflate so far
};

std::string_view ChunkAt(platform::ByteSource& bytes, uint64_t at, size_t most = kChunk) {
  return bytes.View(at, most).substr(0, most);
}

// Both return the number of bytes written to the file.
size_t CopyInflated(platform::ByteSource& bytes, uint64_t at, platform::TemporaryFile& file) {
  Inflater inflater;
  size_t count = 0;
  for (bool goesOn = inflater.IsReady(); goesOn; at += kChunk) {
    const std::string_view chunk = ChunkAt(bytes, at);
    goesOn = !chunk.empty() && inflater.Inflate(chunk, file, count);
  }
  return count;
}

size_t CopyPlain(platform::ByteSource& bytes, uint64_t at, int32_t length, platform::TemporaryFile& file) {
  const size_t end = std::min(static_cast<size_t>(length), kMaxUnpacked);
  size_t count = 0;
  while (count < end) {
    const std::string_view chunk = ChunkAt(bytes, at + count, std::min(kChunk, end - count));
    if (chunk.empty() || file.Write(chunk)) break;
    count += chunk.size();
  }
  return count;
}

}  // namespace

void FontParserPDF::ProcessIllustratorData(const PDFObject& object) {
  Visited visited;
  PDFObject next = object;
  while (visited.insert({next.nObjectNumber, next.nGeneration}).second &&
         OpenObject(next, "Illustrator data", __func__)) {
    std::string key;
    do {
      key = mInput.ProcessToken();
    } while (key != "/Private" && key != "/AIPrivateData2" && key != "endobj" && mError == 0);
    if (mError != 0 || key == "endobj") return;
    const bool isData = key == "/AIPrivateData2";
    next = ProcessReference();
    if (!isData) continue;
    ProcessPrivateStream(next);
    return;
  }
}

void FontParserPDF::ProcessPrivateStream(const PDFObject& object) {
  if (!OpenObject(object, "Illustrator data", __func__)) return;
  EFilterType filter = kFilterNone;
  int32_t length = 0;
  int depth = 0;
  do {
    const std::string& token = mInput.ProcessToken();
    if (token == "<<") ++depth;
    if (token == ">>") --depth;
    if (token == "/Length") {
      length = mInput.GetCurrentNumber();
    } else if (token == "/Filter") {
      filter = ReadFilter();
    }
  } while (depth > 0 && mError == 0);
  if (mInput.ProcessToken() != "stream") return;
  mInput.SkipWhitespace();
  DecodeAIPrivateData(filter, length);
}

// One name, or an array whose last name counts.
FontParserPDF::EFilterType FontParserPDF::ReadFilter() {
  EFilterType filter = kFilterNone;
  const auto take = [&](const std::string& name) { filter = name == "/FlateDecode" ? kFilterFlate : kFilterNone; };
  take(mInput.ProcessToken());
  if (mInput.LastToken() != "[") return filter;
  while (mInput.ProcessToken() != "]" && mError == 0) take(mInput.LastToken());
  return filter;
}

void FontParserPDF::DecodeAIPrivateData(EFilterType filterType, int32_t streamLength) {
  constexpr std::string_view kCompressedTag = "%AI12_CompressedData";
  platform::ByteSource& bytes = mInput.Bytes();
  auto at = static_cast<uint64_t>(mInput.GetCurrentPosition());
  const std::string tag(ChunkAt(bytes, at, kCompressedTag.size()));
  if (tag == kCompressedTag) {
    filterType = kFilterFlate;
    at += tag.size();
    OutputIndentedAndFormattedString(0, "Handling tag '%s' with kFilterFlate decoding", tag.c_str());
  } else {
    OutputIndentedAndFormattedString(0, "Handling tag '%s' with NO decoding", tag.c_str());
  }
  // A document may contain itself.
  if (sNesting == kMaxNesting) return;
  platform::TemporaryFile file;
  const bool isCreated = !file.Create();
  const std::string path = isCreated ? file.Path() : platform::TemporaryFile::Folder();
  OutputIndentedAndFormattedString(0, "Creating temp file \"%s\"", path.c_str());
  if (!isCreated) return;
  const size_t count =
      filterType == kFilterFlate ? CopyInflated(bytes, at, file) : CopyPlain(bytes, at, streamLength, file);
  if (count > 0) ParsePrivateFile(path);
  file.Remove();
  OutputIndentedAndFormattedString(0, "Deleted temp file \"%s\"", path.c_str());
}

void FontParserPDF::ParsePrivateFile(const std::string& path) {
  const auto parser = CreateParserWithFile(path, true, GetDefaultSystemPathStyle());
  if (!parser) return;
  ++sNesting;
  parser->Parse();
  --sNesting;
  m_IllustratorFonts = platform::Array::Create();
  parser->GetObsoleteGlyphsureData(false, &m_IllustratorFonts);
}
