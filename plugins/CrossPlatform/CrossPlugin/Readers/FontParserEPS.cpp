// Reading the comments of an EPS file. FontParserEPSFonts.cpp has its fonts, FontParserEPSWriter.cpp writes them.
#include "Readers/FontParserEPS.h"

#include <algorithm>
#include <cstring>

#include "Services/DiagnosticLog.h"

enum class FontParserEPS::EComment : int { kFonts, kFontSpecs, kResources, kEmbeddedFont, kEnd };

struct FontParserEPS::CommentRow {
  std::string_view text;
  EComment kind;
};

namespace {

constexpr std::string_view kPSCommentDocumentFonts = "%%DocumentFonts: ";
constexpr std::string_view kPSCommentDocumentFontSpecs = "%%DocumentFontSpecs: ";
constexpr std::string_view kPSCommentDocumentSuppliedResources = "%%DocumentSuppliedResources: ";
constexpr std::string_view kPSCommentEmbedFontBegin = "%ADOBeginSubsetFont:";
constexpr std::string_view kPSCommentEmbedFontEnd = "%ADOEndSubsetFont";
constexpr std::string_view kPSCommentDocumentNeededResources = "%%DocumentNeededResources: ";
constexpr std::string_view kEndOfPSComments = "%%EndComments";
constexpr std::string_view kPSCommentDocumentNeededFonts = "%%DocumentNeededFonts: ";
constexpr std::string_view kPSCommentContinue = "%%+ ";
constexpr std::string_view kPSCommentDocumentResourceFontTag = "font ";
constexpr std::string_view kPSCommentAtEnd = "(atend)";
constexpr std::string_view kAddGlyphs = "AddGlyphs";
constexpr std::string_view kFontNameEntry = "/FontName /";

// Binary data can have lines of any length. Comments are searched only in this many bytes of a line.
constexpr size_t kLongestLine = size_t{64} * 1024;

bool IsLineEnd(char c) { return c == '\r' || c == '\n'; }

}  // namespace

bool FontParserEPS::ReadNextBlock() {
  mBlockOffset += mBlock.size();
  mBlockPosition = mNextFeed = 0;
  mBlock = mBytes->View(mBlockOffset, 1);
  return !mBlock.empty();
}

// Returns the number of bytes before the next CR or LF in the block.
size_t FontParserEPS::LengthUpToLineEnd() {
  // The next line feed is cached, so that it is not searched again for each carriage return before it.
  if (mNextFeed <= mBlockPosition) mNextFeed = std::min(mBlock.find('\n', mBlockPosition), mBlock.size());
  const std::string_view line = mBlock.substr(mBlockPosition, mNextFeed - mBlockPosition);
  return std::min(line.find('\r'), line.size());
}

bool FontParserEPS::ReadNextLine(std::string& outLine, std::streamoff& outOffset) {
  outLine.clear();
  outOffset = static_cast<std::streamoff>(mBlockOffset + mBlockPosition);
  while (mBlockPosition < mBlock.size() || ReadNextBlock()) {
    const size_t length = LengthUpToLineEnd();
    outLine.append(mBlock.data() + mBlockPosition, std::min(length, kLongestLine - outLine.size()));
    mBlockPosition += length;
    if (mBlockPosition == mBlock.size()) continue;
    const char end = mBlock[mBlockPosition++];
    // Both characters together, in either order, are one line end.
    if ((mBlockPosition < mBlock.size() || ReadNextBlock()) && IsLineEnd(mBlock[mBlockPosition]) &&
        mBlock[mBlockPosition] != end) {
      ++mBlockPosition;
    }
    return true;
  }
  return false;
}

// Makes the next line the current one. Returns false if there is none. A last line without a line end counts.
bool FontParserEPS::Advance() {
  if (mIsLastLine) return false;
  mIsLastLine = !ReadNextLine(mLine, mLineOffset);
  return !mIsLastLine || !mLine.empty();
}

bool FontParserEPS::HasBinaryHeader() const {
  constexpr char kMagic[] = {'\xC5', '\xD0', '\xD3', '\xC6'};
  return std::memcmp(mHeader.data(), kMagic, sizeof kMagic) == 0;
}

uint64_t FontParserEPS::LocatePostScriptSource() {
  const std::string_view start = mBytes->View(0, kHeaderSize).substr(0, kHeaderSize);
  mHeader = {};
  std::copy(start.begin(), start.end(), mHeader.begin());
  if (start.size() < kHeaderSize || !HasBinaryHeader()) {
    std::fill(mHeader.begin() + sizeof(uint32_t), mHeader.end(), '\0');
    return 0;
  }
  uint64_t offset = 0;
  for (size_t i = 0; i < sizeof(uint32_t); ++i) {
    offset |= uint64_t{static_cast<unsigned char>(mHeader[sizeof(uint32_t) + i])} << (8 * i);
  }
  return offset;
}

// Finds the comment in the current line and its end; null if there is none. The order of the rows decides, not that of
// the positions.
const FontParserEPS::CommentRow* FontParserEPS::FindComment(size_t& outEnd) const {
  static constexpr CommentRow kComments[] = {
      {kPSCommentDocumentFonts, EComment::kFonts},
      {kPSCommentDocumentFontSpecs, EComment::kFontSpecs},
      {kPSCommentDocumentSuppliedResources, EComment::kResources},
      {kPSCommentEmbedFontBegin, EComment::kEmbeddedFont},
      {kPSCommentDocumentNeededResources, EComment::kResources},
      {kEndOfPSComments, EComment::kEnd},
      {kPSCommentDocumentNeededFonts, EComment::kFonts},
  };
  const size_t first = mLine.find('%');
  if (first == std::string::npos) return nullptr;
  for (const CommentRow& row : kComments) {
    const size_t at = mLine.find(row.text, first);
    if (at == std::string::npos) continue;
    outEnd = at + row.text.size();
    return &row;
  }
  return nullptr;
}

void FontParserEPS::Parse() {
  if (!FindFile() || mBytes.emplace().Open(mStream.Path())) {
    mError = -1;
    return;
  }
  mBlockOffset = LocatePostScriptSource();
  bool hasFontData = false;
  size_t end = 0;
  for (bool hasLine = Advance(); hasLine && mError == 0;) {
    const CommentRow* const comment = FindComment(end);
    if (comment && comment->kind != EComment::kEnd) {
      hasFontData = true;
      // Afterwards the current line is the one after the section.
      hasLine = ReadSection(comment->kind, end);
      continue;
    }
    if (comment) {
      if (mGlyphsureOffset == 0) mGlyphsureOffset = mLineOffset;
      if (!hasFontData) break;
    }
    hasLine = Advance();
  }
  OutputIndentedAndFormattedString(0, "Stopped reading after line at offset %d (offset is in CHARACTERS, not bytes).",
                                   static_cast<int>(mLineOffset));
  mBlock = {};
  mBytes.reset();
}

bool FontParserEPS::ReadSection(EComment comment, size_t end) {
  switch (comment) {
    case EComment::kFonts: return ReadPSCommentDocumentFonts(end);
    case EComment::kFontSpecs: return ReadPSCommentDocumentFontSpecs(end);
    case EComment::kResources: return ReadPSCommentDocumentResources(end);
    case EComment::kEmbeddedFont: return ReadPSCommentEmbedFont(end);
    case EComment::kEnd: break;
  }
  return Advance();
}

bool FontParserEPS::AdvanceToContinuation(bool& outHasLine, size_t& outEnd) {
  outHasLine = Advance();
  const size_t at = outHasLine ? mLine.find(kPSCommentContinue) : std::string::npos;
  if (at == std::string::npos) return false;
  outEnd = at + kPSCommentContinue.size();
  return true;
}

bool FontParserEPS::ReadPSCommentDocumentFonts(size_t end) {
  bool hasLine = true;
  do {
    // Several names on a line are one name. Old identified documents name their fonts this way and are found by it.
    const std::string name = mLine.substr(end);
    // "(atend)" is not a name: the fonts are in a comment of the same name at the end of the file.
    if (!name.starts_with(kPSCommentAtEnd)) RegisterFont(name);
  } while (AdvanceToContinuation(hasLine, end));
  return hasLine;
}

bool FontParserEPS::ReadPSCommentDocumentResources(size_t end) {
  bool hasLine = true;
  do {
    if (mLine.find(kPSCommentDocumentResourceFontTag) == std::string::npos) continue;
    RegisterFont(mLine.substr(std::min(end + kPSCommentDocumentResourceFontTag.size(), mLine.size())));
  } while (AdvanceToContinuation(hasLine, end));
  return hasLine;
}

bool FontParserEPS::ReadPSCommentDocumentFontSpecs(size_t end) {
  bool hasLine = true;
  // New data are written where the old ones begin.
  mGlyphsureOffset = mLineOffset;
  do {
    RegisterFontWithGlyphsure(mLine.substr(end));
  } while (AdvanceToContinuation(hasLine, end));
  return hasLine;
}

bool FontParserEPS::ReadPSCommentEmbedFont(size_t end) {
  const std::string comment = mLine.substr(end);
  std::string name;
  bool hasLine = false;
  while ((hasLine = Advance()) && mLine.find(kPSCommentEmbedFontEnd) == std::string::npos) {
    if (!mLine.starts_with(kFontNameEntry)) continue;
    name = mLine.substr(kFontNameEntry.size());
    const size_t blank = name.find(' ');
    name.erase(std::min(blank != std::string::npos ? blank : name.find('\t'), name.size()));
  }
  if (!name.empty()) {
    RegisterFont(name);
  } else if (comment.find(kAddGlyphs) == std::string::npos) {
    // A resource that adds glyphs belongs to an earlier part of the font.
    RegisterFont(comment);
  }
  return hasLine && Advance();
}
