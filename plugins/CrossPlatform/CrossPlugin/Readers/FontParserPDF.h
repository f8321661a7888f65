// Lists the fonts of a PDF file, and reads and formats the identification data in its font dictionaries.
//
// It follows cross-reference tables, page tree, resources and font objects in uncompressed form. It does not read
// object streams and cross-reference streams: a file that uses them gives no fonts and no error. Wrong input ends the
// function that reads it; fonts found before are kept. The bytes read never exceed a multiple of the file's size; those
// of Illustrator's private data have their own limit.
//
// Sources: FontParserPDF.cpp (cross-references and objects), FontParserPDFPages.cpp (from the catalog to the fonts of a
// page), FontParserPDFFonts.cpp (font objects), FontParserPDFSlug.cpp (identification data),
// FontParserPDFIllustrator.cpp (private data).
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
  // Appends to the array, which must not be null, the fonts that it does not contain: first those of the pages, then
  // those of Illustrator's private data.
  void GetObsoleteGlyphsureData(bool wantGlyphsure, platform::Array* outFontArray) override;
  // Returns true if identification data must not be written into this document, because it is encrypted or PDF/X. Reads
  // the whole file.
  bool IsUnsluggableDocument();

  // In the order in which they were found. Each font object has one record.
  const std::vector<PDFFontRecord>& GetFontRecords() const { return m_vFontRecords; }
  // Returns the cost of all reading so far, as PDFInput counts it.
  uint64_t GetBytesRead() const { return mInput.GetBytesRead(); }
  // Returns the largest "/Size" of the trailers, which is the highest object number plus one; 0 without one.
  int32_t GetSize() const { return m_nSize; }

  // Without its leading "/".
  static void StripPDFLabel(std::string& name);
  // Also without a subset tag, and with hyphens instead of commas.
  static void StripPDFFontName(std::string& name);

  // Creates a record from a font. Does nothing if outRecord is null.
  static void ConvertPDFFontToFontRecord(const PDFFontRecord& font, platform::Dictionary* outRecord,
                                         bool wantGlyphsure);
  // Reads the value of the first such key in the whole text, in any dictionary. Returns false and does not change the
  // value if there is no such key or its value is empty.
  static bool ParseKeyFromGlyphsureBuffer(std::string_view dictionaryText, std::string_view pdfKey,
                                          std::string& outValue);
  // Stores such a value in the record.
  static void AddKeyValueToFontRecord(std::string_view dictionaryText, std::string_view pdfKey,
                                      std::string_view recordKey, platform::Dictionary record);
  // Appends a font's identification data to the dictionary text of a PDF font, which must begin with "<<". Does nothing
  // for a null font and for a record with fewer than two keys.
  static void ConvertFontRecordToPDFFont(const platform::Dictionary& record, PDFFontRecord* font);
  // Maps a key of a font record to the PDF key. Returns false and changes nothing for a key without one.
  static bool PDFKeyForGlyphsureKey(std::string_view key, bool& outIsText, std::string& outPdfKey);
  // A line of a cross-reference table.
  static std::string CreateXRefEntry(int32_t offset, int32_t generation);
  // Counts the font records from this index on whose object numbers are consecutive. Also returns the first object,
  // with which their subsection of a cross-reference table begins. Returns 0 and no object for an index beyond the end.
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
  // FindObject, followed by the token "obj".
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
  // Processes the value of an object, each object once, and returns to the current position.
  void FollowReference(const PDFObject& object, const char* what, Visited& visited, void (FontParserPDF::*process)());

  void ProcessFonts();
  void ReadFont(PDFFontRecord& font);
  void ProcessFontKey(const std::string& key, PDFFontRecord& font);
  std::string ReadFontName();
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

  PDFInput mInput{mError};
  std::streamoff m_nHeaderOffset = 0;
  int32_t m_nSize = 0;
  std::vector<XRefEntry> m_vXRef;  // by object number once all sections are read
  PDFObject m_Catalog, m_PageTree, m_Metadata, m_Illustrator, m_Encryption;
  Objects m_vKids, m_vFonts;
  Visited mVisitedResources, mVisitedFontLists;
  int mDepth = 0;  // of references being followed
  std::vector<PDFFontRecord> m_vFontRecords;
  platform::Array m_IllustratorFonts;  // null without such data
};
