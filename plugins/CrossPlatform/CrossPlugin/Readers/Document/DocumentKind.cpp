#include "Readers/Document/DocumentKind.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "Readers/Document/ByteStream.h"

using namespace std::string_view_literals;

namespace {

struct Row {
  size_t offset;
  std::string_view bytes;
  DocumentKindRow kind;
};

constexpr DocumentKindRow kUnknownKind = {EDocumentKind::kUnknown, ""};

constexpr Row kRows[] = {
    {0, "8BPS\0\1"sv, {EDocumentKind::kPhotoshop, "psd"}}, {0, "8BPS\0\2"sv, {EDocumentKind::kPhotoshop, "psb"}},
    {8, "Egg!", {EDocumentKind::kAfterEffects, "aep"}},    {0, "\xC5\xD0\xD3\xC6", {EDocumentKind::kEPS, "eps"}},
    {0, "\xFF\xD8\xFF", {EDocumentKind::kImage, "jpeg"}},  {0, "II*\0"sv, {EDocumentKind::kImage, "tiff"}},
    {0, "MM\0*"sv, {EDocumentKind::kImage, "tiff"}},       {0, "\x89PNG", {EDocumentKind::kImage, "png"}},
    {0, "gimp xcf ", {EDocumentKind::kXCF, "xcf"}},
};

// The first file of these archives contains nothing but their media type, not compressed.
constexpr size_t kMediaTypeAt = 30;
constexpr Row kMediaTypes[] = {
    {kMediaTypeAt, "mimetypeapplication/vnd.oasis.opendocument.text", {EDocumentKind::kOpenDocument, "odt"}},
    {kMediaTypeAt, "mimetypeapplication/vnd.oasis.opendocument.spreadsheet", {EDocumentKind::kOpenDocument, "ods"}},
    {kMediaTypeAt, "mimetypeapplication/vnd.oasis.opendocument.presentation", {EDocumentKind::kOpenDocument, "odp"}},
    {kMediaTypeAt, "mimetypeapplication/vnd.oasis.opendocument.graphics", {EDocumentKind::kOpenDocument, "odg"}},
    {kMediaTypeAt, "mimetypeapplication/x-krita", {EDocumentKind::kKrita, "kra"}},
    {kMediaTypeAt, "mimetypeapplication/vnd.adobe.indesign-idml-package", {EDocumentKind::kIDML, "idml"}},
};

// Other archives are known by a file in them; their list of files is at the end.
constexpr size_t kListRange = 1 << 20;
constexpr Row kFilesInArchives[] = {
    {0, "word/document.xml", {EDocumentKind::kWordDocument, "docx"}},
    {0, "xl/workbook.xml", {EDocumentKind::kWorkbook, "xlsx"}},
    {0, "ppt/presentation.xml", {EDocumentKind::kSlides, "pptx"}},
};

// XML documents are known by their first element, behind comments and declarations.
constexpr size_t kElementRange = 4096;
constexpr Row kElements[] = {
    {0, "<svg", {EDocumentKind::kSVG, "svg"}},
    {0, "<SCRIBUSUTF8", {EDocumentKind::kScribus, "sla"}},
};

// PDF readers accept a header that is not at the beginning of the file.
constexpr size_t kPDFHeaderRange = 1024;

// True if the first line of a PostScript file says that it can be placed into a document.
bool SaysEPS(DocumentBytes& bytes) {
  constexpr size_t kLine = 64;
  const std::string line = bytes.Copy(0, kLine);
  return line.substr(0, line.find_first_of("\r\n")).find("EPSF") != std::string::npos;
}

DocumentKindRow FindArchiveKind(DocumentBytes& bytes) {
  for (const Row& row : kMediaTypes) {
    if (bytes.Holds(row.offset, row.bytes)) return row.kind;
  }
  const size_t list = bytes.Size() - std::min(bytes.Size(), kListRange);
  for (const Row& row : kFilesInArchives) {
    size_t at = 0;
    if (bytes.Find(list, bytes.Size(), row.bytes, 0, at)) return row.kind;
  }
  return kUnknownKind;
}

// The beginning of the text, unpacked if necessary.
std::string StartOf(DocumentBytes& bytes) {
  if (!IsGzip(bytes)) return bytes.Copy(0, kElementRange);
  std::string start(kElementRange, '\0');
  const auto stream = UnpackedStreamOf(bytes.Source());
  size_t size = 0;
  for (size_t got = 1; got > 0 && size < start.size(); size += got) {
    got = stream->Read(start.data() + size, start.size() - size);
  }
  start.resize(size);
  return start;
}

DocumentKindRow FindElementKind(DocumentBytes& bytes) {
  const std::string start = StartOf(bytes);
  const size_t first = start.find_first_not_of("\xEF\xBB\xBF \t\r\n");
  if (first == std::string::npos || start[first] != '<') return kUnknownKind;
  for (const Row& row : kElements) {
    if (start.find(row.bytes) != std::string::npos) return row.kind;
  }
  return kUnknownKind;
}

}  // namespace

bool IsGzip(DocumentBytes& bytes) { return bytes.Holds(0, "\x1F\x8B"); }

DocumentKindRow FindDocumentKind(DocumentBytes& bytes, bool hasIllustratorExtension) {
  for (const Row& row : kRows) {
    if (bytes.Holds(row.offset, row.bytes)) return row.kind;
  }
  if (bytes.Holds(0, "%!")) {
    if (SaysEPS(bytes)) return {EDocumentKind::kEPS, "eps"};
    return {EDocumentKind::kPostScript, "ps"};
  }
  size_t at = 0;
  if (bytes.Find(0, kPDFHeaderRange, "%PDF-", 0, at)) {
    if (hasIllustratorExtension) return {EDocumentKind::kIllustrator, "ai"};
    return {EDocumentKind::kPDF, "pdf"};
  }
  return bytes.Holds(0, "PK\3\4") ? FindArchiveKind(bytes) : FindElementKind(bytes);
}
