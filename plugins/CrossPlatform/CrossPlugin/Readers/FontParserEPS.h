// Reads the font names and the identification data in the comments of an EPS file, with or without a binary header for
// a preview, and writes identification data into them. Reads only the header's comments, unless they name fonts: then
// it reads the whole file, for embedded fonts.
//
// A failed save does not change the file.
//
// Sources: FontParserEPSFonts.cpp (the records), FontParserEPSWriter.cpp (Save), FontParserEPS.cpp (reading).
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
  // Stores a new array: the records themselves with identification data, or new records with names only.
  void GetObsoleteGlyphsureData(bool wantGlyphsure, platform::Array* outFontArray) override;
  // Writes the fonts as identification data before the end of the header, or before the file's present data, which are
  // kept. GetError is 0 afterwards. Without fonts it writes nothing. Records without a key that an EPS file stores
  // count, too.
  virtual void Save();

  // The fonts in the order of the file. A name that is present already, by the loose comparison, is not added.
  void RegisterFont(const std::string& name);
  // Adds a font from the text of a "<FONTSPEC" entry. Replaces a font of that name.
  void RegisterFontWithGlyphsure(const std::string& fontSpecText);
  void RemoveFontWithPostScriptName(const std::string& name);

  // Map the keys of font records to the names in an EPS file and back; null or false for others.
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
  // Goes to the next line. Returns whether it continues the comment, and where its text begins.
  bool AdvanceToContinuation(bool& outHasLine, size_t& outEnd);

  void Append(const platform::Dictionary& record);
  platform::Array Fonts() const;
  std::string WriteFontRecordsToBuffer() const;
  static void XMLOutputGenerator(const platform::Dictionary& record, std::string& outText);
  std::string HeaderBehind(size_t gap) const;
  // Inserts the text at the offset, in a new file that replaces the old one.
  int AllocateGapInFile(std::streamoff offset, const std::string& text);

  // Removed fonts are null entries, so that the index stays valid.
  platform::Array mFonts = platform::Array::Create();
  GlyphsureSupport::FontNameIndex mIndex{mFonts};
  std::streamoff mGlyphsureOffset = 0;  // where identification data are written; 0 until it is known
  std::array<char, kHeaderSize> mHeader{};

  // The current line.
  std::string mLine;
  std::streamoff mLineOffset = 0;
  bool mIsLastLine = false;

  std::optional<platform::ByteSource> mBytes;  // while Parse runs
  std::string_view mBlock;                     // the bytes in hand, valid until the next ones are read
  size_t mBlockPosition = 0;
  size_t mNextFeed = 0;  // position of the block's next line feed, unless it is before the read position
  uint64_t mBlockOffset = 0;
};
