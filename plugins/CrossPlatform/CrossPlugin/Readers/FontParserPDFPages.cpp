// From the catalog of a PDF file to the font objects that its pages use.
#include <algorithm>

#include "Readers/FontParserPDF.h"
#include "Services/DiagnosticLog.h"

namespace {

bool IsBoxKey(const std::string& key) {
  static constexpr const char* kBoxKeys[] = {"/MediaBox", "/CropBox", "/BleedBox", "/TrimBox", "/ArtBox"};
  return std::find(std::begin(kBoxKeys), std::end(kBoxKeys), key) != std::end(kBoxKeys);
}

}  // namespace

void FontParserPDF::ProcessCatalog() {
  if (!OpenObject(m_Catalog, "catalog", __func__)) return;
  while (mError == 0) {
    const std::string& key = mInput.ProcessToken();
    if (key == "endobj") return;
    if (key == "/Type" || key == "/PageMode") {
      mInput.ProcessToken();
    } else if (key == "/Metadata") {
      m_Metadata = ProcessReference();
      OutputIndentedAndFormattedString(0, "Found metadata:  object %d", m_Metadata.nObjectNumber);
    } else if (key == "/Pages") {
      m_PageTree = ProcessReference();
    } else if (key == "/Names") {
      mInput.SkipObject();
    }
  }
}

// Handles the keys that root, nodes and pages of the tree share. Returns false for other keys.
bool FontParserPDF::ProcessPageTreeKey(const std::string& key) {
  if (key == "/Kids") {
    const size_t before = m_vKids.size();
    ProcessObject(m_vKids);
    for (size_t i = before; i < m_vKids.size(); ++i) {
      OutputIndentedAndFormattedString(0, " appending kid %d", m_vKids[i].nObjectNumber);
    }
  } else if (IsBoxKey(key)) {
    mInput.SkipMediaBox();
  } else if (key == "/Rotate") {
    mInput.ProcessToken();
  } else if (key == "/Font") {
    ProcessFontObject();
  } else {
    return false;
  }
  return true;
}

int32_t FontParserPDF::ProcessPages() {
  int32_t count = 0;
  if (!OpenObject(m_PageTree, "page tree", __func__)) return count;
  while (mError == 0) {
    const std::string& key = mInput.ProcessToken();
    if (key == "endobj") break;
    if (key == "/Count") {
      count = mInput.GetCurrentNumber();
    } else {
      ProcessPageTreeKey(key);
    }
  }
  return count;
}

void FontParserPDF::ProcessKids(const PDFObject& kid) {
  if (!OpenObject(kid, "page", __func__)) return;
  while (mError == 0) {
    const std::string& key = mInput.ProcessToken();
    if (key == "endobj") return;
    if (ProcessPageTreeKey(key)) continue;
    if (key == "/Type" || key == "/Count") {
      mInput.ProcessToken();
    } else if (key == "/Parent") {
      ProcessReference();
    } else if (key == "/Resources") {
      ProcessResources();
    } else if (key == "/Illustrator") {
      m_Illustrator = ProcessReference();
      OutputIndentedAndFormattedString(0, "   found illustrator data...");
    }
  }
}

void FontParserPDF::FollowReference(const PDFObject& object, const char* what, Visited& visited,
                                    void (FontParserPDF::*process)()) {
  // Limits the recursion over chains of references.
  constexpr int kMaxDepth = 32;
  if (mDepth == kMaxDepth || !visited.insert({object.nObjectNumber, object.nGeneration}).second) return;
  ++mDepth;
  const std::streamoff position = mInput.GetCurrentPosition();
  if (OpenObject(object, what, __func__)) (this->*process)();
  mInput.SeekAndReadBlock(position);
  --mDepth;
}

void FontParserPDF::ProcessResources() {
  const std::string token = mInput.ProcessToken();
  int32_t number = 0;
  if (!token.empty() && PDFInput::IsNumber(token, number)) {
    FollowReference(ReadReferenceOf(number), "resources", mVisitedResources, &FontParserPDF::ProcessResources);
  } else {
    ProcessResourceDictionary(token);
  }
}

void FontParserPDF::ProcessResourceDictionary(std::string token) {
  int depth = 0;
  // The first array under a key that is not skipped here ends the resources, even if fonts follow it. The font list of
  // such a document depends on it.
  for (; mError == 0 && token != "]" && token != "endobj"; token = mInput.ProcessToken()) {
    if (token == "<<") {
      ++depth;
    } else if (token == ">>" && --depth < 1) {
      return;
    } else if (token == "/Font") {
      ProcessFontObject();
    } else if (token == "/Pattern") {
      mInput.ProcessLine();
    } else if (token == "/ProcSet" || token == "/Properties" || token == "/ExtGState") {
      mInput.SkipObject();
    }
  }
}

void FontParserPDF::ProcessFontObject() {
  const std::string& token = mInput.ProcessToken();
  int32_t number = 0;
  if (!token.empty() && PDFInput::IsNumber(token, number)) {
    FollowReference(ReadReferenceOf(number), "font resources", mVisitedFontLists, &FontParserPDF::ProcessFontObject);
    return;
  }
  if (token != "<<") return;
  // The names under which the pages use the fonts don't matter.
  while (mError == 0) {
    const std::string& name = mInput.ProcessToken();
    if (name == ">>") return;
    if (!name.empty()) ProcessObject(m_vFonts);
  }
}
