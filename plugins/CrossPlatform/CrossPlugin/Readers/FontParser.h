// A document file that names fonts. The subclass for a kind of file reads which fonts the file uses and their
// identification data.
//
// Use: CreateParserWithFile, Parse once, GetObsoleteGlyphsureData, perhaps Save of the subclass that has it. Failures
// are traced and give null, false or an error code in the error field. Fonts found before a failure are kept. Not
// thread-safe.
//
// Sources: FontParserCreation.cpp (CreateParserWithFile, which knows the subclasses), FontParser.cpp (the rest).
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Readers/FStreamWrapper.h"
#include "platform/FileURL.h"
#include "platform/Value.h"

class FontParser {
 public:
  enum EFileType : int { kUnknownFile = 0, kPDFFile = 1, kEPSFile = 2 };

  virtual ~FontParser() = default;
  FontParser(const FontParser&) = delete;
  FontParser& operator=(const FontParser&) = delete;

  // Opens the file, reads the fonts into the parser and closes the file.
  virtual void Parse() = 0;
  // Returns 0 until something has failed.
  virtual int GetError() const { return mError; }
  // Returns the fonts as font records, with identification data if requested. Each subclass documents what it does with
  // the array: it appends to it or replaces it.
  virtual void GetObsoleteGlyphsureData(bool wantGlyphsure, platform::Array* outFontArray) = 0;

  // Returns a parser for the kind of file that the content shows. Returns null, with a trace line, for an unknown kind
  // and for a file that cannot be opened (without readOnly, also for writing). The path is UTF-8 or the bytes of the
  // file system. The file is closed again on return.
  static std::unique_ptr<FontParser> CreateParserWithFile(const std::string& path, bool readOnly,
                                                          platform::PathStyle pathStyle);
  static platform::PathStyle GetDefaultSystemPathStyle() { return platform::PathStyle::kPOSIX; }
  // Decides by the first 1000 bytes. A file that cannot be opened counts as EPS.
  static EFileType DetermineFileTypeOfFile(const platform::FileURL& url, const std::string& path);
  // Appends the paths of the files that an EPS file names in "%%DocumentFiles:" comments and that can be opened: at the
  // named path, or with its last component in the EPS file's folder.
  static void ExtractEmbeddedFilesFromFile(const std::string& path, std::vector<std::string>& outPaths);

 protected:
  FontParser(const platform::FileURL& url, const std::string& path) : mURL(url), mPath(path) {}

  // Returns true if the file can be read. Its path, which can be told in several ways, is then that of the stream.
  bool FindFile();

  const platform::FileURL mURL;
  const std::string mPath;
  FStreamWrapper mStream;
  int mError = 0;
};
