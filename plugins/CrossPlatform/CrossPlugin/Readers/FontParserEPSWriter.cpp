// Writing identification data into an EPS file.
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <limits>

#include "Readers/FontParserEPS.h"
#include "Services/DiagnosticLog.h"
#include "platform/ByteSource.h"
#include "platform/Files.h"
#include "platform/PlainText.h"

using platform::Array;
using platform::Dictionary;
using platform::String;

namespace {

constexpr size_t kLongestValue = 255;
// Fields of the binary header, in bytes from its start.
constexpr size_t kPostScriptLengthField = 8;
constexpr size_t kTIFFOffsetField = 20;

uint32_t FieldAt(const std::string& header, size_t at) {
  uint32_t value = 0;
  for (size_t i = 0; i < sizeof value; ++i) value |= uint32_t{static_cast<unsigned char>(header[at + i])} << (8 * i);
  return value;
}

void SetField(std::string& header, size_t at, uint32_t value) {
  for (size_t i = 0; i < sizeof value; ++i) header[at + i] = static_cast<char>(value >> (8 * i));
}

// Not longer than the entry, and without line ends, which would end the comment.
std::string ValueOf(const String& text) {
  std::string value(platform::ValidStart(text.View().substr(0, kLongestValue)));
  for (char& c : value) {
    if (c == '\r' || c == '\n') c = ' ';
  }
  return value;
}

}  // namespace

void FontParserEPS::XMLOutputGenerator(const Dictionary& record, std::string& outText) {
  outText += "<FONTSPEC";
  std::string name;
  for (size_t i = 0; i < record.Count(); ++i) {
    const String value(record.ValueAt(i));
    if (!value || !OutputKeyForGlyphsureKey(record.KeyAt(i), name)) continue;
    // Nothing is escaped, because readers use the text between the quotation marks unchanged.
    outText += " " + name + "=\"" + ValueOf(value) + "\"";
  }
  outText += "/>";
}

std::string FontParserEPS::WriteFontRecordsToBuffer() const {
  std::string text;
  const Array fonts = Fonts();
  for (size_t i = 0; i < fonts.Count(); ++i) {
    text += text.empty() ? "%%DocumentFontSpecs: " : "%%+ ";
    XMLOutputGenerator(Dictionary(fonts.At(i)), text);
    text += "\r";
  }
  return text;
}

// Returns the binary header for the file with this many more bytes; empty for a file without one.
std::string FontParserEPS::HeaderBehind(size_t gap) const {
  if (!HasBinaryHeader()) return {};
  std::string header(mHeader.begin(), mHeader.end());
  const auto more = static_cast<uint32_t>(gap);
  const uint32_t image = FieldAt(header, kTIFFOffsetField);
  if (mGlyphsureOffset <= static_cast<std::streamoff>(image)) SetField(header, kTIFFOffsetField, image + more);
  SetField(header, kPostScriptLengthField, FieldAt(header, kPostScriptLengthField) + more);
  // The offset of a Windows metafile does not change, so a metafile after the PostScript is not found afterwards.
  // Existing files are like that.
  return header;
}

int FontParserEPS::AllocateGapInFile(std::streamoff offset, const std::string& text) {
  // Parse may have found the file at another path.
  const std::string& place = mStream.Path();
  platform::ByteSource file;
  std::error_code error = file.Open(place);
  // The file will be replaced, for which the folder's mode alone would be enough.
  if (!error && access(place.c_str(), W_OK) != 0) error = std::error_code(errno, std::generic_category());
  const auto size = static_cast<std::streamoff>(file.Size());
  const std::string header = HeaderBehind(text.size());
  const bool fits = header.empty() || size <= std::numeric_limits<uint32_t>::max() - std::streamoff(text.size());
  if (!error && (offset < std::streamoff(header.size()) || offset > size || !fits)) {
    error = std::make_error_code(std::errc::invalid_argument);
  }
  platform::StagedFile staged;
  if (!error) {
    const auto at = static_cast<uint64_t>(offset);
    error = staged.StagePieces(place, file.FileDescriptor(), {{header, header.size(), at}, {text, at, file.Size()}});
  }
  if (!error) error = staged.Commit();
  if (!error) {
    if (!header.empty()) std::memcpy(mHeader.data(), header.data(), header.size());
    return 0;
  }
  OutputIndentedAndFormattedString(0, "ERROR: '%s' can't be written: %s", place.c_str(), error.message().c_str());
  return -1;
}

void FontParserEPS::Save() {
  mError = 0;
  const std::string text = WriteFontRecordsToBuffer();
  if (text.empty()) return;
  if (mGlyphsureOffset == 0) {
    // An offset of 0 is an error: data must not precede the first line, which identifies the file.
    OutputIndentedAndFormattedString(0, "ERROR: '%s' has no end of comments", mPath.c_str());
    mError = -1;
    return;
  }
  mError = AllocateGapInFile(mGlyphsureOffset, text);
}
