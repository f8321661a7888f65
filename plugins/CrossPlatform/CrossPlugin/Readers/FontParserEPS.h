// Reads the font names and the identification data in the comments of an EPS file, plain or with the binary header that
// carries a preview, and writes identification data back into them. Only the comments of the header are read, unless they
// name fonts: then the whole file is, for the fonts that it embeds.
//
// A file whose save fails stays as it was.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Identification/FontNameIndex.h"
#include "Readers/FontParser.h"
#include "platform/ByteSource.h"

class FontParserEPS : public FontParser {
 public:
  FontParserEPS(const platform::FileURL& url, const std::string& path) : FontParser(url, path) {}

  void Parse() override;
  // Stores a new array: with identification data the records as they are, without it new ones of the names alone.
  void GetObsoleteGlyphsureData(bool wantGlyphsure, platform::Array* outFontArray) override;
  // Writes the fonts as identification data in front of the end of the header, or of the data that the file holds, which
  // stay. GetError is 0 then; without fonts nothing is written. Records without a key that an EPS file stores count too.
  virtual void Save();

  // The fonts, in the order in which they came. A name that is there already, by the loose comparison, is not added.
  void RegisterFont(const std::string& name);
  // From the text of a "<FONTSPEC" entry, in place of a font of that name.
  void RegisterFontWithGlyphsure(const std::string& fontSpecText);
  void RemoveFontWithPostScriptName(const std::string& name);

  // The names under which an EPS file stores the keys of font records; null or false for others.
  static const char* GetKeyForAttributeName(std::string_view name);
  static bool OutputKeyForGlyphsureKey(std::string_view key, std::string& outName);

 private:
  static constexpr size_t kHeaderSize = 32;
  enum class EComment : int;
  struct CommentRow;

  bool ReadNextLine(std::string& outLine, std::streamoff& outOffset);
  bool ReadNextBlock();
  size_t LengthUpToLineEnd();
  bool Advance();
  uint64_t LocatePostScriptSource();
  bool HasBinaryHeader() const;
  const CommentRow* FindComment(size_t& outEnd) const;
  bool ReadSection(EComment comment, size_t end);
  bool ReadPSCommentDocumentFonts(size_t end);
  bool ReadPSCommentDocumentFontSpecs(size_t end);
  bool ReadPSCommentDocumentResources(size_t end);
  bool ReadPSCommentEmbedFont(size_t end);
  // Goes on to the next line; whether it continues the comment, and where its text begins.
  bool AdvanceToContinuation(bool& outHasLine, size_t& outEnd);

  void Append(const platform::Dictionary& record);
  platform::Array Fonts() const;
  std::string WriteFontRecordsToBuffer() const;
  static void XMLOutputGenerator(const platform::Dictionary& record, std::string& outText);
  std::string HeaderBehind(size_t gap) const;
  // Puts the text at the offset, in a new file that takes the place of the old one.
  int AllocateGapInFile(std::streamoff offset, const std::string& text);

  // Removed fonts are null entries, so that the index stays right.
  platform::Array mFonts = platform::Array::Create();
  GlyphsureSupport::FontNameIndex mIndex{mFonts};
  std::streamoff mGlyphsureOffset = 0;  // where identification data go; 0 until it is known
  std::array<char, kHeaderSize> mHeader{};

  // The line in hand.
  std::string mLine;
  std::streamoff mLineOffset = 0;
  bool mIsLastLine = false;

  std::optional<platform::ByteSource> mBytes;  // while Parse runs
  std::string_view mBlock;                     // the bytes in hand, valid until the next ones are read
  size_t mBlockPosition = 0;
  size_t mNextFeed = 0;  // where the next line feed of the block stands, if it is not before the position
  uint64_t mBlockOffset = 0;
};
