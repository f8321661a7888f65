// The data read from a PDF file.
#pragma once

#include <cstdint>
#include <string>

// The numbers of an indirect object, or a reference to it.
struct PDFObject {
  int32_t nObjectNumber = 0;  // 0 for none
  int32_t nGeneration = 0;
  bool bIsReference = false;  // "R" followed the numbers

  bool IsKnown() const { return nObjectNumber != 0; }
};

enum class PDFFontType : uint8_t { kComposite = 0, kType1 = 1, kTrueType = 2, kType3 = 3, kMultipleMaster = 4 };
enum class PDFFontEncoding : uint8_t { kMacRoman = 0, kMacExpert = 1, kOther = 2, kWinAnsi = 3 };

struct PDFFontRecord {
  PDFObject object;  // the font's; the metadata's for a font that only the metadata name
  std::string name;  // PostScript name, without a subset tag
  PDFFontType type = PDFFontType::kType1;
  PDFFontEncoding encoding = PDFFontEncoding::kMacRoman;
  bool embedded = false;             // the font's dictionary names a font file or a character set
  std::string sGlyphsureDictionary;  // the text of the font's dictionary from its "<<" up to, but without, its ">>"
};
