// Which parser reads which kind of file. Separate from FontParser, from which the parsers derive.
#include "Readers/FontParser.h"
#include "Readers/FontParserEPS.h"
#include "Readers/FontParserPDF.h"
#include "Services/DiagnosticLog.h"

std::unique_ptr<FontParser> FontParser::CreateParserWithFile(const std::string& path, bool readOnly,
                                                             platform::PathStyle pathStyle) {
  platform::FileURL url = platform::FileURL::FromPath(path, pathStyle);
  if (!url) {
    OutputIndentedAndFormattedString(0, "WARNING: CFURLCreateWithFileSystemPath('%s' length %d) failed.", path.c_str(),
                                     static_cast<int>(path.size()));
    url = platform::FileURL::FromFileSystemRepresentation(path);
  }
  if (!url) {
    OutputIndentedAndFormattedString(0, "ERROR: CFURLCreateFromFileSystemRepresentation('%s') failed.", path.c_str());
    return nullptr;
  }
  FStreamWrapper stream;
  if (!OpenFileStreamFromCFURLRef(url, path, stream, readOnly)) return nullptr;
  stream.close();
  switch (DetermineFileTypeOfFile(url, path)) {
    case kPDFFile:
      OutputIndentedAndFormattedString(0, "PDF compatible file found");
      return std::make_unique<FontParserPDF>(url, path);
    case kEPSFile:
      OutputIndentedAndFormattedString(0, "EPS compatible file found");
      return std::make_unique<FontParserEPS>(url, path);
    case kUnknownFile: break;
  }
  OutputIndentedAndFormattedString(0, "Unknown file type found");
  return nullptr;
}
