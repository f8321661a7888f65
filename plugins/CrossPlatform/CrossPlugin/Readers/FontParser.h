// A document file in which fonts can be found. A subclass for each kind of file finds out which fonts the file uses and
// what identification data it carries for them.
//
// Use: CreateParserWithFile, Parse once, GetObsoleteGlyphsureData, perhaps Save of the subclass that has it. Failures are
// traced and end in null, false or the error field; the fonts found before a failure stay. One thread.
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
  // 0 until something failed.
  virtual int GetError() const { return mError; }
  // The fonts as font records, with identification data if wanted. Each subclass documents what it does
  // with the array: it appends to the given one, or puts a new one in its place.
  virtual void GetObsoleteGlyphsureData(bool wantGlyphsure, platform::Array* outFontArray) = 0;

  // A parser for the kind of file that the content shows; null, which is traced, for an unknown kind and for a file that
  // can't be opened (for writing too, without readOnly). The path is UTF-8 or the bytes of the file system. The file is
  // closed again on return.
  static std::unique_ptr<FontParser> CreateParserWithFile(const std::string& path, bool readOnly,
                                                          platform::PathStyle pathStyle);
  static platform::PathStyle GetDefaultSystemPathStyle() { return platform::PathStyle::kPOSIX; }
  // By the first 1000 bytes. A file that can't be opened counts as EPS.
  static EFileType DetermineFileTypeOfFile(const platform::FileURL& url, const std::string& path);
  // Appends the paths of the files that an EPS file names in its "%%DocumentFiles:" comments and that can be opened: as
  // named, or by the last component of that path in the EPS file's folder.
  static void ExtractEmbeddedFilesFromFile(const std::string& path, std::vector<std::string>& outPaths);

 protected:
  FontParser(const platform::FileURL& url, const std::string& path) : mURL(url), mPath(path) {}

  const platform::FileURL mURL;
  const std::string mPath;
  FStreamWrapper mStream{FStreamWrapper::Unbuffered()};
  int mError = 0;
};
