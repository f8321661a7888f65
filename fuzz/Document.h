// Any bytes as a document with metadata: its fonts are read, or a code says why not. A slug that is written is read
// back; a failed write does not change the document.
#pragma once

#include <algorithm>
#include <string>

#include "Check.h"
#include "Identification/FontKeys.h"
#include "Input.h"
#include "Readers/XMPFontMetadata.h"
#include "support/TempFolder.h"

namespace document_fuzzing {

using platform::Array;
using platform::Dictionary;

inline Array NewFonts() {
  const Array fonts = Array::Create();
  for (const char* name : {"Fuzz-Regular", "Fuzz-Bold"}) {
    Dictionary font = Dictionary::Create();
    font.Set(GlyphsureSupport::kGS_PostScriptNameKey, name);
    font.Set(GlyphsureSupport::kGS_FoundryKey, "A & B");
    Array(fonts).Append(font);
  }
  return fonts;
}

inline void CheckRecords(const Array& fonts) {
  for (size_t i = 0; i < fonts.Count(); ++i) CHECK(Dictionary(fonts.At(i)));
}

inline int Check(std::string_view bytes) {
  static const test_support::TempFolder sFolder;
  static const int sInitialized = InitializeGlyphsureXMP();
  CHECK(sInitialized == 0);
  const std::string path = sFolder.Write("document", bytes);
  const Array slug = Array::Create(), adobe = Array::Create();
  const TModuleErrorCode read = ReadAllXMPFontDataFromFile(path, slug, adobe);
  CHECK(read == CoreErrorCodes::kSuccess || read == CoreErrorCodes::kNotFound || read == CoreErrorCodes::kUnknownError);
  CheckRecords(slug);
  CheckRecords(adobe);
  CHECK(sFolder.Content(path) == bytes);

  const TModuleErrorCode written = WriteXMPGlyphsureSlugToFile(path, NewFonts());
  if (written == CoreErrorCodes::kUnknownError) CHECK(sFolder.Content(path) == bytes);
  if (written != CoreErrorCodes::kSuccess) return 0;
  const Array again = Array::Create();
  CHECK(ReadXMPGlyphsureSlugFromFile(path, again) == CoreErrorCodes::kSuccess);
  CHECK(again.Equals(NewFonts()));
  return 0;
}

// Returns the bytes with this beginning, which selects the handler.
inline int CheckAs(std::string_view beginning, const uint8_t* data, size_t size) {
  const std::string_view bytes = BytesOf(data, size);
  return Check(std::string(beginning) + std::string(bytes.substr(std::min(size, beginning.size()))));
}

}  // namespace document_fuzzing
