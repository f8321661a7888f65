// Any bytes as a document whose font names are searched: each name is in it and is not too long. Neither the bytes
// before nor the ends of the windows make a difference.
#include <algorithm>

#include "Check.h"
#include "Input.h"
#include "Readers/CommonFunctionality.h"
#include "support/TempFolder.h"

namespace {

using Names = std::vector<std::string>;

// With the zero bytes of UTF-16, which are removed from names.
std::string WithoutZeros(std::string_view bytes) {
  std::string text(bytes);
  std::erase(text, '\0');
  return text;
}

Names Scan(DocumentBytes& bytes) {
  Names names;
  CommonFunctionality::GetFontNamesFromByteVector(bytes, "<<", "/FontName/", "+", "/", ">>", names);
  CommonFunctionality::GetFontNamesFromByteVector(bytes, "/FontSet [", "/Name (", "\xFE\xFF", ")", "]", names);
  CHECK(!bytes.HasFailed());
  return names;
}

void CheckNames(const Names& names, std::string_view document, size_t scans) {
  const std::string text = WithoutZeros(document);
  size_t size = 0;
  for (const std::string& name : names) {
    size += name.size();
    CHECK(text.find(WithoutZeros(name)) != std::string::npos);
    CHECK(std::all_of(name.begin(), name.end(), [](unsigned char c) { return c < 0x80; }));
  }
  CHECK(size <= scans * 4 * document.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const test_support::TempFolder sFolder;
  const std::string document = "xx" + std::string(BytesOf(data, size));
  DocumentBytes inMemory(document);
  const Names names = Scan(inMemory);
  CheckNames(names, document, 2);

  constexpr size_t kWindow = size_t{128} * 1024;
  const size_t before = kWindow - std::min(kWindow, size / 2);
  DocumentBytes inFile;
  CHECK(!inFile.Open(sFolder.Write("document", std::string(before, 'x') + document)));
  CHECK(Scan(inFile) == names);

  static constexpr const char* kNames[] = {"document.ai", "document.psd", "document.aep", "document.txt"};
  Names found;
  CommonFunctionality::GetFontNamesFromNonXMPSectionOfAdobeDocument(
      sFolder.Write(kNames[size % std::size(kNames)], document).c_str(), found);
  CheckNames(found, document, 4);
  return 0;
}
