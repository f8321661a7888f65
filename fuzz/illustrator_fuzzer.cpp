// Any bytes as the private data of Illustrator in a PDF, packed in the way that the first byte chooses: the document's
// own font is always found, reading twice gives the same, and no temporary file is left.
#include <zlib.h>

#include <filesystem>

#include "Check.h"
#include "Identification/FontNames.h"
#include "Input.h"
#include "Readers/FontParserPDF.h"
#include "support/PDFFile.h"
#include "support/ScopedVariable.h"
#include "support/TempFolder.h"

namespace {

using platform::Array;
using test_support::Stream;

std::string Deflated(std::string_view bytes) {
  uLongf size = compressBound(bytes.size());
  std::string packed(size, '\0');
  CHECK(compress(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(bytes.data()),
                 bytes.size()) == Z_OK);
  return packed.substr(0, size);
}

std::string StreamOf(std::string_view bytes) {
  const char form = bytes.empty() ? '0' : bytes[0];
  const std::string_view data = bytes.substr(bytes.empty() ? 0 : 1);
  constexpr const char* kFlate = "/Filter [/FlateDecode]";
  switch (form) {
    case '1': return Stream(Deflated(data), kFlate);
    case '2': return Stream("%AI12_CompressedData" + Deflated(data));
    case '3': return Stream(std::string(data), kFlate);
    default: return Stream(std::string(data));
  }
}

Array Read(const std::string& path) {
  FontParserPDF parser(platform::FileURL::FromFileSystemRepresentation(path), path);
  parser.Parse();
  Array records = Array::Create();
  parser.GetObsoleteGlyphsureData(true, &records);
  return records;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const test_support::TempFolder sFolder;
  std::filesystem::create_directories(sFolder / "temporary");
  static const test_support::ScopedVariable sTemporary("TMPDIR", sFolder / "temporary");
  const std::string path = sFolder.Write(
      "document.ai", test_support::PDFFile()
                         .Add(test_support::OnePage("/Font << /X 5 0 R >> /PieceInfo << /Illustrator 6 0 R >>",
                                                    {{5, test_support::Font("Page")},
                                                     {6, "<< /Private 7 0 R >>"},
                                                     {7, "<< /AIPrivateData2 8 0 R >>"},
                                                     {8, StreamOf(BytesOf(data, size))}}))
                         .Bytes());
  const Array records = Read(path);
  CHECK(GlyphsureSupport::DoesArrayContainFontWithPostScriptName(records, platform::String::FromUTF8("Page"), nullptr));
  CHECK(records.Equals(Read(path)));
  CHECK(std::filesystem::is_empty(sFolder / "temporary"));
  return 0;
}
