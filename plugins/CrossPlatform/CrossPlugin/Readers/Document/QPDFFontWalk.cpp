#include "Readers/Document/QPDFFontWalk.h"

#include <deque>
#include <memory>
#include <qpdf/InputSource.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <set>
#include <utility>

#include "Readers/Document/QPDFByteSource.h"

namespace {

constexpr size_t kTagSize = 6;

// Whether the name begins with what a producer puts before the name of a font of which it embeds a part.
bool HasSubsetTag(const std::string& name) {
  if (name.size() <= kTagSize || name[kTagSize] != '+') return false;
  return name.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ") == kTagSize;
}

// libqpdf asks nothing of a constant handle.
std::string NameOf(QPDFObjectHandle&& object) { return object.isName() ? object.getName().substr(1) : std::string(); }

int IntegerOf(QPDFObjectHandle&& object) { return object.isNumber() ? static_cast<int>(object.getNumericValue()) : 0; }

// The code of each letter from a to z in a simple font; -1 if the encoding has no such letter. Every named encoding has
// the letters where ASCII has them.
std::array<int, 26> LetterCodes(QPDFObjectHandle encoding) {
  std::array<int, 26> codes{};
  for (size_t i = 0; i < codes.size(); ++i) codes[i] = static_cast<int>('a' + i);
  QPDFObjectHandle differences = encoding.isDictionary() ? encoding.getKey("/Differences") : QPDFObjectHandle();
  if (!differences.isInitialized() || !differences.isArray()) return codes;
  int code = 0;
  for (QPDFObjectHandle item : differences.getArrayAsVector()) {
    if (item.isInteger()) {
      code = IntegerOf(std::move(item));
      continue;
    }
    if (code >= 'a' && code <= 'z' && codes[code - 'a'] == code) codes[code - 'a'] = -1;
    const std::string name = NameOf(std::move(item));
    if (name.size() == 1 && name[0] >= 'a' && name[0] <= 'z') codes[name[0] - 'a'] = code;
    ++code;
  }
  return codes;
}

// Fonts of large character sets number their glyphs in their own way, so only simple fonts tell.
void ReadLetterWidths(QPDFObjectHandle font, ListedPDFFont& listed) {
  QPDFObjectHandle widths = font.getKey("/Widths");
  if (!widths.isArray()) return;
  const int first = IntegerOf(font.getKey("/FirstChar"));
  const std::array<int, 26> codes = LetterCodes(font.getKey("/Encoding"));
  for (size_t i = 0; i < codes.size(); ++i) {
    const int64_t place = int64_t{codes[i]} - first;
    if (codes[i] < 0 || place < 0 || place >= widths.getArrayNItems()) continue;
    const int width = IntegerOf(widths.getArrayItem(static_cast<int>(place)));
    if (width > 0 && width <= UINT16_MAX) listed.letterWidths[i] = static_cast<uint16_t>(width);
  }
}

// Heights and the average width are left out: common producers write the same numbers for every font.
void ReadLook(const QPDFObjectHandle& font, QPDFObjectHandle descriptor, ListedPDFFont& listed) {
  ReadLetterWidths(font, listed);
  if (!descriptor.isDictionary()) return;
  // A bit that is not set says little: not all producers know these.
  const int flags = IntegerOf(descriptor.getKey("/Flags"));
  constexpr int kFixedPitch = 1, kSerif = 1 << 1, kScript = 1 << 3, kItalic = 1 << 6;
  listed.isMonospaced = (flags & kFixedPitch) != 0;
  listed.isSerif = (flags & kSerif) != 0;
  listed.isScript = (flags & kScript) != 0;
  listed.isItalic = (flags & kItalic) != 0 || IntegerOf(descriptor.getKey("/ItalicAngle")) != 0;
  const int weight = IntegerOf(descriptor.getKey("/FontWeight"));
  if (weight >= 1 && weight <= 1000) listed.weight = weight;
}

// The walk over everything of a document that can have fonts. What several places share is looked at once.
class FontWalk {
 public:
  FontWalk(QPDF& pdf, const std::function<void(const ListedPDFFont&)>& take) : mPDF(pdf), mTake(take) {}

  void Run();

 private:
  void AddPage(QPDFObjectHandle page);
  void AddAppearance(QPDFObjectHandle annotation);
  void AddResources(QPDFObjectHandle resources);
  void ReadResources(QPDFObjectHandle resources);
  void ReadFont(QPDFObjectHandle font);
  // False for an object that was seen before. Direct objects belong to one place, which is seen once.
  bool IsNew(const QPDFObjectHandle& object) { return !object.isIndirect() || mSeen.insert(object.getObjGen()).second; }

  QPDF& mPDF;
  const std::function<void(const ListedPDFFont&)>& mTake;
  std::set<QPDFObjGen> mSeen;
  std::set<std::string> mNames;
  std::deque<QPDFObjectHandle> mWaiting;  // resource dictionaries
};

void FontWalk::Run() {
  for (const QPDFObjectHandle& page : mPDF.getAllPages()) {
    AddPage(page);
    while (!mWaiting.empty()) {
      const QPDFObjectHandle resources = mWaiting.front();
      mWaiting.pop_front();
      ReadResources(resources);
    }
  }
}

void FontWalk::AddPage(QPDFObjectHandle page) {
  QPDFObjectHandle annotations = page.getKey("/Annots");
  if (annotations.isArray()) {
    for (const QPDFObjectHandle& annotation : annotations.getArrayAsVector()) AddAppearance(annotation);
  }
  // A page without resources of its own has those of a node above it.
  for (QPDFObjectHandle node = page; node.isDictionary() && IsNew(node); node = node.getKey("/Parent")) {
    if (!node.hasKey("/Resources")) continue;
    AddResources(node.getKey("/Resources"));
    break;
  }
}

// What an annotation looks like in its present state.
void FontWalk::AddAppearance(QPDFObjectHandle annotation) {
  if (!annotation.isDictionary()) return;
  QPDFObjectHandle appearance = annotation.getKey("/AP");
  if (appearance.isDictionary()) appearance = appearance.getKey("/N");
  if (appearance.isDictionary()) appearance = appearance.getKey("/" + NameOf(annotation.getKey("/AS")));
  if (appearance.isStream()) AddResources(appearance.getDict().getKey("/Resources"));
}

void FontWalk::AddResources(QPDFObjectHandle resources) {
  if (resources.isDictionary() && IsNew(resources)) mWaiting.push_back(resources);
}

void FontWalk::ReadResources(QPDFObjectHandle resources) {
  QPDFObjectHandle fonts = resources.getKey("/Font");
  if (fonts.isDictionary()) {
    for (auto& [key, font] : fonts.getDictAsMap()) ReadFont(font);
  }
  for (const char* kind : {"/XObject", "/Pattern"}) {
    QPDFObjectHandle objects = resources.getKey(kind);
    if (!objects.isDictionary()) continue;
    for (auto& [key, object] : objects.getDictAsMap()) {
      if (object.isStream() && IsNew(object)) AddResources(object.getDict().getKey("/Resources"));
    }
  }
}

void FontWalk::ReadFont(QPDFObjectHandle font) {
  if (!font.isDictionary() || !IsNew(font)) return;
  ListedPDFFont listed;
  std::string name = NameOf(font.getKey("/BaseFont"));
  if (HasSubsetTag(name)) {
    listed.subsetTag = name.substr(0, kTagSize);
    name.erase(0, kTagSize + 1);
  }
  listed.name = name;
  // A font that is drawn by the document itself needs no name.
  if (listed.name.empty() || !mNames.insert(listed.name).second) return;
  // Of a composite font the one behind it has the kind and the file.
  QPDFObjectHandle described = font;
  QPDFObjectHandle descendants = font.getKey("/DescendantFonts");
  if (descendants.isArray() && descendants.getArrayNItems() > 0) described = descendants.getArrayItem(0);
  if (!described.isDictionary()) described = font;
  listed.isEmbedded = NameOf(font.getKey("/Subtype")) == "Type3";
  QPDFObjectHandle descriptor = described.getKey("/FontDescriptor");
  for (const char* file : {"/FontFile", "/FontFile2", "/FontFile3"}) {
    listed.isEmbedded = listed.isEmbedded || (descriptor.isDictionary() && descriptor.hasKey(file));
  }
  listed.type = NameOf(described.getKey("/Subtype"));
  if (!listed.isEmbedded) ReadLook(font, descriptor, listed);
  mTake(listed);
}

}  // namespace

void WalkFontsOfPDF(platform::ByteSource& bytes, const std::function<void(const ListedPDFFont&)>& take,
                    std::vector<std::string>& problems) {
  try {
    QPDF pdf;
    pdf.setSuppressWarnings(true);
    pdf.processInputSource(std::make_shared<QPDFByteSource>(bytes));
    const bool isRepaired = pdf.anyWarnings();
    FontWalk(pdf, take).Run();
    if (isRepaired) problems.push_back("it is damaged, so fonts may be missing");
  } catch (const QPDFExc& error) {
    problems.push_back(error.getErrorCode() == qpdf_e_password ? "it is encrypted with a password"
                                                               : "as a PDF: " + error.getMessageDetail());
  } catch (const std::exception& error) {
    problems.push_back(std::string("as a PDF: ") + error.what());
  }
}
