// Lists the fonts of a PDF file, and reads and formats the identification data in its font dictionaries.
//
// It follows cross-reference tables, page tree, resources and font objects in their plain form. Object streams and
// cross-reference streams are not read: a file that uses them has no fonts and no error here. Wrong input ends the function
// that reads it and keeps the fonts found before. The bytes read never exceed a multiple of the file's size; those of
// Illustrator's private data are limited on their own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Readers/FontParser.h"
#include "Readers/PDFInput.h"
#include "Readers/PDFRecords.h"

class FontParserPDF : public FontParser {
 public:
  FontParserPDF(const platform::FileURL& url, const std::string& path) : FontParser(url, path) {}

  void Parse() override;
  // Appends to the array, which must be there; a font that it holds already is left out. The fonts of the pages come first,
  // then those of Illustrator's private data.
  void GetObsoleteGlyphsureData(bool wantGlyphsure, platform::Array* outFontArray) override;
  // Whether no identification data may be written into this document: it is encrypted or PDF/X. Reads the whole file.
  bool IsUnsluggableDocument();

  // In the order in which they were found. A font object has one record, however often the pages name it.
  const std::vector<PDFFontRecord>& GetFontRecords() const { return m_vFontRecords; }
  // The cost of all reading so far, as PDFInput counts it.
  uint64_t GetBytesRead() const { return mInput.GetBytesRead(); }
  // The largest "/Size" of the trailers: one more than the highest object number, as the file says. 0 without one.
  int32_t GetSize() const { return m_nSize; }

  // Without its leading "/".
  static void StripPDFLabel(std::string& name);
  // Also without subset tag and with hyphens for commas.
  static void StripPDFFontName(std::string& name);

  // A new record from a font; a null outRecord does nothing.
  static void ConvertPDFFontToFontRecord(const PDFFontRecord& font, platform::Dictionary* outRecord,
                                         bool wantGlyphsure);
  // Reads the value of the first such key in the whole text, in whatever dictionary. Returns false and leaves the value
  // untouched if there is no such key or the value is empty.
  static bool ParseKeyFromGlyphsureBuffer(std::string_view dictionaryText, std::string_view pdfKey,
                                          std::string& outValue);
  // Reads such a value into the record.
  static void AddKeyValueToFontRecord(std::string_view dictionaryText, std::string_view pdfKey,
                                      std::string_view recordKey, platform::Dictionary record);
  // Appends a font's identification data to the dictionary text of a PDF font, which must begin with "<<". Nothing for a
  // null font and for a record of less than two keys.
  static void ConvertFontRecordToPDFFont(const platform::Dictionary& record, PDFFontRecord* font);
  // The PDF key for a key of a font record. Returns false and leaves the results untouched for a key that has none.
  static bool PDFKeyForGlyphsureKey(std::string_view key, bool& outIsText, std::string& outPdfKey);
  // A line of a cross-reference table.
  static std::string CreateXRefEntry(int32_t offset, int32_t generation);
  // How many of the font records from this index on have object numbers that follow each other: the subsection of a
  // cross-reference table for them begins with the object that is given out. 0, with nothing given out, beyond the end.
  size_t CalculateSubsection(size_t firstIndex, int32_t& outFirstObject) const;

 private:
  using Objects = std::vector<PDFObject>;
  // Object and generation numbers.
  using Visited = std::set<std::pair<int32_t, int32_t>>;
  struct XRefEntry {
    int32_t nObjectNumber;
    int32_t nOffset;
  };
  enum EFilterType : int { kFilterNone = 0, kFilterFlate = 1 };

  bool FindHeader();
  void ReadDocument();
  int32_t GetOffsetOfLastXRefSection();
  void ProcessXRefSection(int32_t offset);
  bool ProcessXRefSubsections(int32_t offset);
  void ReadXRefSubsection(int32_t firstObject);
  bool ProcessTrailer(int32_t& outPrevious);
  void FinishXRef();
  bool FindObject(const PDFObject& object);
  // FindObject with the token "obj" behind it.
  bool OpenObject(const PDFObject& object, const char* what, const char* function);
  void ProcessObject(Objects& outObjects);
  PDFObject ProcessReference();
  PDFObject ReadReferenceOf(int32_t objectNumber);

  void ProcessCatalog();
  int32_t ProcessPages();
  void ProcessKids(const PDFObject& kid);
  bool ProcessPageTreeKey(const std::string& key);
  void ProcessResources();
  void ProcessResourceDictionary(std::string token);
  void ProcessFontObject();
  // Processes the value that an object holds, each object once, and comes back to the present place.
  void FollowReference(const PDFObject& object, const char* what, Visited& visited, void (FontParserPDF::*process)());

  void ProcessFonts();
  void ReadFont(PDFFontRecord& font);
  void ProcessFontKey(const std::string& key, PDFFontRecord& font);
  void SkipWidths();
  void ProcessFontMetadata();
  void ReadMetadataFonts(std::set<std::string>& names);
  void AddMetadataFont(const std::string& name, std::set<std::string>& names);
  std::string ReadMetadataFont();
  bool HoldsPDFXMark();

  void ProcessIllustratorData(const PDFObject& object);
  void ProcessPrivateStream(const PDFObject& object);
  EFilterType ReadFilter();
  void DecodeAIPrivateData(EFilterType filterType, int32_t streamLength);
  void ParsePrivateFile(const std::string& path);

  PDFInput mInput{mStream, mError};
  std::streamoff m_nHeaderOffset = 0;
  int32_t m_nSize = 0;
  std::vector<XRefEntry> m_vXRef;  // by object number once all sections are read
  PDFObject m_Catalog, m_PageTree, m_Metadata, m_Illustrator, m_Encryption;
  Objects m_vKids, m_vFonts;
  Visited mVisitedResources, mVisitedFontLists;
  int mDepth = 0;  // of references that are being followed
  std::vector<PDFFontRecord> m_vFontRecords;
  platform::Array m_IllustratorFonts;  // null without such data
};
