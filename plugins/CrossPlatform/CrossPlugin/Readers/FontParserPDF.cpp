// Finding the objects of a PDF file: header, cross-reference tables, trailers.
#include "Readers/FontParserPDF.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "Services/DiagnosticLog.h"

void FontParserPDF::Parse() {
  const TracedCall traced(__func__);
  if (!FindFile() || !mInput.Open(mStream.Path())) return;
  if (FindHeader()) ReadDocument();
  mInput.Close();
}

bool FontParserPDF::FindHeader() {
  constexpr std::string_view kMark = "%PDF";
  constexpr int kTries = 1000;
  for (int i = 0; i < kTries && mError == 0; ++i) {
    m_nHeaderOffset = mInput.GetCurrentPosition();
    // The character that ends an attempt is not read again, so "%%PDF" hides the header. All offsets count from the
    // position found here, so a smarter search would read other objects.
    const auto isNext = [&](char c) { return mInput.ReadCharacter() == c; };
    if (std::all_of(kMark.begin(), kMark.end(), isNext)) return true;
  }
  return false;
}

void FontParserPDF::ReadDocument() {
  mInput.ProcessToken();  // the version
  ProcessXRefSection(GetOffsetOfLastXRefSection());
  if (m_Catalog.IsKnown()) ProcessCatalog();
  if (m_PageTree.IsKnown()) {
    const int32_t pages = ProcessPages();
    Visited visited;
    // Inner nodes count, too, so the last pages of a deep tree are not read. The font list of such a document depends
    // on it.
    for (size_t i = 0; i < m_vKids.size() && static_cast<int64_t>(i) < pages && mError == 0; ++i) {
      const PDFObject kid = m_vKids[i];
      if (visited.insert({kid.nObjectNumber, kid.nGeneration}).second) ProcessKids(kid);
    }
  }
  ProcessFonts();
  if (m_Illustrator.IsKnown()) ProcessIllustratorData(m_Illustrator);
  if (!m_Metadata.IsKnown()) return;
  if (!m_vFontRecords.empty()) {
    ProcessFontMetadata();
  } else {
    OutputIndentedAndFormattedString(
        0,
        "Ignoring XMP metadata because no fonts were listed in the PDF Info records; document is probably not PDF compatible.");
  }
}

int32_t FontParserPDF::GetOffsetOfLastXRefSection() {
  constexpr std::streamoff kTail = 100;
  mInput.SeekAndReadBlock(std::max<std::streamoff>(mInput.GetStreamLength() - kTail, 0));
  const std::string_view tail = mInput.Block();
  const size_t mark = tail.find("startxref");
  if (mark == std::string_view::npos) return 0;
  const size_t first = tail.find_first_of("0123456789", mark);
  if (first == std::string_view::npos) return 0;
  const size_t end = tail.find_first_not_of("0123456789", first);
  int32_t offset = 0;
  PDFInput::IsNumber(tail.substr(first, end - first), offset);
  return offset;
}

void FontParserPDF::ProcessXRefSection(int32_t offset) {
  std::set<int32_t> visited;
  while (visited.insert(offset).second && ProcessXRefSubsections(offset)) {
    int32_t previous = 0;
    if (!ProcessTrailer(previous)) break;
    offset = previous;
  }
  FinishXRef();
}

// Returns true if a trailer follows them.
bool FontParserPDF::ProcessXRefSubsections(int32_t offset) {
  mInput.SeekAndReadBlock(m_nHeaderOffset + offset);
  const std::string& line = mInput.ProcessLine();
  // Some programs add or remove bytes before the header and do not change the offsets. The last step is 4, not 3: it
  // finds all objects of such a file.
  if (line == "ref") {
    m_nHeaderOffset -= 1;
  } else if (line == "ef") {
    m_nHeaderOffset -= 2;
  } else if (line == "f") {
    m_nHeaderOffset -= 4;
  } else if (line != "xref") {
    return false;
  }
  while (mError == 0) {
    const std::string& token = mInput.ProcessToken();
    if (token.empty()) continue;
    if (token == "trailer") return true;
    int32_t firstObject = 0;
    if (!PDFInput::IsNumber(token, firstObject)) return false;
    ReadXRefSubsection(firstObject);
  }
  return false;
}

void FontParserPDF::ReadXRefSubsection(int32_t firstObject) {
  const int32_t count = mInput.GetCurrentNumber();
  const int64_t last = std::min<int64_t>(int64_t{firstObject} + count, std::numeric_limits<int32_t>::max());
  for (int64_t number = firstObject; number < last && mError == 0; ++number) {
    const int32_t offset = mInput.GetCurrentNumber();
    // FindObject compares the generation with the object's own, and finds nothing at the offset of a free entry.
    mInput.GetCurrentNumber();
    mInput.ReadCharacter();
    m_vXRef.push_back({static_cast<int32_t>(number), offset});
  }
  OutputIndentedAndFormattedString(0, "Number of objects found:  %d", count);
}

// Returns true and the offset of the previous section if the trailer names one.
bool FontParserPDF::ProcessTrailer(int32_t& outPrevious) {
  bool hasPrevious = false;
  while (mError == 0) {
    const std::string& token = mInput.ProcessToken();
    if (token.empty()) continue;
    OutputIndentedAndFormattedString(0, "Processing XRefSection type '%s'", token.c_str());
    if (token == ">>") return hasPrevious;
    if (token == "/Size") {
      m_nSize = std::max(m_nSize, mInput.GetCurrentNumber());
    } else if (token == "/Prev") {
      outPrevious = mInput.GetCurrentNumber();
      hasPrevious = true;
    } else if (token == "/Root" || token == "/Encrypt") {
      // Newer sections come first.
      PDFObject& object = token == "/Root" ? m_Catalog : m_Encryption;
      const PDFObject read = ProcessReference();
      if (!object.IsKnown()) object = read;
    } else if (token == "/ID") {
      mInput.ReadID();
    }
  }
  return false;
}

void FontParserPDF::FinishXRef() {
  // The newest entry of each object was read first and comes first.
  std::stable_sort(m_vXRef.begin(), m_vXRef.end(),
                   [](const XRefEntry& a, const XRefEntry& b) { return a.nObjectNumber < b.nObjectNumber; });
}

bool FontParserPDF::FindObject(const PDFObject& object) {
  if (!object.IsKnown()) return false;
  const auto found =
      std::lower_bound(m_vXRef.begin(), m_vXRef.end(), object.nObjectNumber,
                       [](const XRefEntry& entry, int32_t number) { return entry.nObjectNumber < number; });
  if (found == m_vXRef.end() || found->nObjectNumber != object.nObjectNumber) return false;
  const std::streamoff offset = m_nHeaderOffset + found->nOffset;
  OutputIndentedAndFormattedString(0, "Reading block at file offset %d (0x%08x)", static_cast<int>(offset),
                                   static_cast<unsigned>(offset));
  mInput.SeekAndReadBlock(offset);
  const int32_t number = mInput.GetCurrentNumber();
  return number == object.nObjectNumber && mInput.GetCurrentNumber() == object.nGeneration;
}

bool FontParserPDF::OpenObject(const PDFObject& object, const char* what, const char* function) {
  if (!FindObject(object)) return false;
  if (mInput.ProcessToken() == "obj") return true;
  OutputIndentedAndFormattedString(0, "Unexpected token at start of %s; exiting %s", what, function);
  return false;
}

void FontParserPDF::ProcessObject(Objects& outObjects) {
  int32_t number = 0;
  const std::string& token = mInput.ProcessToken();
  if (token != "[") {
    PDFInput::IsNumber(token, number);
    outObjects.push_back(ReadReferenceOf(number));
    return;
  }
  while (mError == 0) {
    const std::string& entry = mInput.ProcessToken();
    if (entry.empty() || entry == "]") return;
    number = 0;
    PDFInput::IsNumber(entry, number);
    outObjects.push_back(ReadReferenceOf(number));
  }
}

PDFObject FontParserPDF::ReadReferenceOf(int32_t objectNumber) {
  PDFObject object;
  object.nObjectNumber = objectNumber;
  object.nGeneration = mInput.GetCurrentNumber();
  object.bIsReference = mInput.ProcessToken() == "R";
  return object;
}

PDFObject FontParserPDF::ProcessReference() {
  Objects objects;
  ProcessObject(objects);
  return objects.empty() ? PDFObject() : objects.front();
}
