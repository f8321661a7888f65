// Any bytes as an EPS file: its fonts are read, and identification data are written into it. A successful save changes
// no other byte, and the fonts are still found; a failed save does not change the file.
#include "Check.h"
#include "Identification/FontKeys.h"
#include "Input.h"
#include "Readers/FontParserEPS.h"
#include "support/TempFolder.h"

namespace {

using platform::Array;
using platform::Dictionary;

constexpr size_t kHeaderSize = 32;

Array Fonts(FontParserEPS& parser) {
  Array fonts, names;
  parser.GetObsoleteGlyphsureData(true, &fonts);
  parser.GetObsoleteGlyphsureData(false, &names);
  CHECK(fonts.Count() == names.Count());
  for (size_t i = 0; i < fonts.Count(); ++i) {
    CHECK(Dictionary(fonts.At(i)).GetString(GlyphsureSupport::kGS_PostScriptNameKey));
  }
  return fonts;
}

// True if one is the other with an insertion, apart from the binary header.
bool IsLongerForm(const std::string& saved, std::string_view bytes) {
  const size_t start = bytes.starts_with("\xC5\xD0\xD3\xC6") && bytes.size() >= kHeaderSize ? kHeaderSize : 0;
  size_t same = start;
  while (same < bytes.size() && same < saved.size() && saved[same] == bytes[same]) ++same;
  for (size_t at = same + 1; at-- > start;) {
    if (saved.ends_with(bytes.substr(at))) return true;
  }
  return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const test_support::TempFolder sFolder;
  const std::string_view bytes = BytesOf(data, size);
  const std::string path = sFolder.Write("document.eps", bytes);
  const platform::FileURL url = platform::FileURL::FromFileSystemRepresentation(path);
  FontParserEPS parser(url, path);
  parser.Parse();
  CHECK(sFolder.Content(path) == bytes);
  parser.RegisterFontWithGlyphsure("<FONTSPEC NAME=\"Fuzz-Regular\" KIND=\"OpenType\"/>");
  const Array fonts = Fonts(parser);
  CHECK(fonts.Count() > 0);
  parser.Save();
  const std::string saved = sFolder.Content(path);
  if (parser.GetError() != 0) {
    CHECK(saved == bytes);
    return 0;
  }
  CHECK(saved.size() > bytes.size() && IsLongerForm(saved, bytes));
  FontParserEPS again(url, path);
  again.Parse();
  CHECK(Fonts(again).Count() > 0);
  return 0;
}
