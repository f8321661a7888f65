#include "Identification/FontNames.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "Identification/FontRecords.h"
#include "Services/DiagnosticLog.h"

namespace GlyphsureSupport {

using platform::Array;
using platform::Dictionary;
using platform::String;

namespace {

bool IsAsciiDigit(char c) { return c >= '0' && c <= '9'; }
bool IsAsciiAlphaNumeric(char c) { return IsAsciiDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

String NameAt(const Array& fontArray, size_t index) {
  return Dictionary(fontArray.At(index)).GetString(kGS_PostScriptNameKey);
}

bool IsMultipleMaster(const Dictionary& record) {
  return KeyValueIs(record, kGS_KindKey, "PostScript - MM") ||
         KeyValueIs(record, kGS_KindKey, "PostScript - Multiple Master");
}

// "Base_123_456" is an instance of "Base".
bool IsInstanceOf(std::string_view wanted, std::string_view base) {
  return wanted.size() > base.size() && wanted[base.size()] == '_' && wanted.starts_with(base);
}

bool Finish(size_t index, size_t* outIndex) {
  if (outIndex) *outIndex = index;
  return true;
}

}  // namespace

std::string NormalizeFontName(std::string_view name, bool strict) {
  std::string out;
  out.reserve(name.size());
  int hyphens = 0;
  for (size_t i = 0; i < name.size(); ++i) {
    const char c = name[i];
    if (IsAsciiAlphaNumeric(c)) {
      out.push_back(c);
    } else if (strict && c == '#') {
      while (i + 1 < name.size() && IsAsciiDigit(name[i + 1])) ++i;
    } else if (strict && c == '-' && ++hyphens == 2) {
      break;
    }
  }
  return out;
}

String StripIllegalPostScriptCharacters(const String& name) {
  return name ? String::FromUTF8(NormalizeFontName(name.View(), true)) : String();
}

String CreateStringStrippingIllegalCharsInPostScriptName(const String& name) {
  std::string bare = name.Text();
  std::erase_if(bare, [](char c) { return std::strchr(" ()/[]{}", c) != nullptr && c != '\0'; });
  if (bare.empty()) return String();
  const String result = String::FromUTF8(bare);
  if (!result) OutputIndentedAndFormattedString(0, "ERROR string coverted to emptyString %s", bare.c_str());
  return result;
}

bool DoesArrayContainFontWithPostScriptName(const Array& fontArray, const String& name, size_t* outIndex) {
  if (!fontArray || !name) return false;
  const size_t count = fontArray.Count();
  for (size_t i = 0; i < count; ++i) {
    const String held = NameAt(fontArray, i);
    if (held && held.View() == name.View()) return Finish(i, outIndex);
  }
  const std::string loose = NormalizeFontName(name.View(), false);
  for (size_t i = 0; i < count; ++i) {
    const String held = NameAt(fontArray, i);
    if (held && NormalizeFontName(held.View(), false) == loose) return Finish(i, outIndex);
  }
  const std::string strict = NormalizeFontName(name.View(), true);
  for (size_t i = 0; i < count; ++i) {
    const String held = NameAt(fontArray, i);
    if (held && NormalizeFontName(held.View(), true) == strict) return Finish(i, outIndex);
  }
  return false;
}

Dictionary GetGlyphsureDictionaryFromArrayWithPostscriptName(const Array& fontArray, const String& name,
                                                             size_t* outIndex) {
  if (!name) return Dictionary();
  for (size_t i = 0; i < fontArray.Count(); ++i) {
    const Dictionary record(fontArray.At(i));
    const String held = record.GetString(kGS_PostScriptNameKey);
    if (!held) continue;
    if (held.View() != name.View()) {
      if (!IsInstanceOf(name.View(), held.View()) || !IsMultipleMaster(record)) continue;
      OutputIndentedAndFormattedString(
          0, "...Special case for MM:  matching Glyphsure data for PS name \"%s\" to PS name \"%s\"", held.CString(),
          name.CString());
    }
    Finish(i, outIndex);
    return record;
  }
  return Dictionary();
}

bool PSNameMightHaveCruftAppended(const char* name, size_t bufferSize, char* outName) {
  if (!name || !outName || bufferSize == 0 || *name == '\0') return false;
  const std::string text = name;  // a copy: the output may be the same buffer
  const auto propose = [&](std::string_view shorter) {
    const size_t length = std::min(shorter.size(), bufferSize - 1);
    std::memcpy(outName, shorter.data(), length);
    outName[length] = '\0';
    return true;
  };
  if (text[0] == '+' || text[0] == ' ') return propose(std::string_view(text).substr(1));
  const size_t first = text.find_first_of("+ -_");
  if (first != std::string::npos && text[first] == '+') return propose(std::string_view(text).substr(first + 1));
  const size_t last = text.find_last_of(" ()-_");
  if (last == std::string::npos || last == 0) return false;
  return propose(std::string_view(text).substr(0, last));
}

String CreateResolvedMMFontName(const String& name) {
  const std::string_view text = name.View();
  bool isMarked = false;
  for (size_t i = 0; i + 2 < text.size(); ++i) {
    if (text[i] == 'M' && text[i + 1] == 'M' && (text[i + 2] == '-' || text[i + 2] == '_')) isMarked = true;
    if (text[i] != '_' || !isMarked) continue;
    const String base = String::FromUTF8(text.substr(0, i));
    OutputIndentedAndFormattedString(0, "GlyphsureSupport::CreateResolvedMMFontName changing '%s' to '%s'", name.CString(),
                                     base.CString());
    return base;
  }
  OutputIndentedAndFormattedString(0, "GlyphsureSupport::CreateResolvedMMFontName.  Not a Multiple Master font name.");
  return String();
}

void ResolveMMFontString(std::string& name) {
  const String resolved = CreateResolvedMMFontName(String::FromUTF8(name));
  if (resolved) name = resolved.Text();
}

void ResolveDictionaryMMFontName(Dictionary record) {
  const String resolved = CreateResolvedMMFontName(record.GetString(kGS_PostScriptNameKey));
  if (resolved) record.Set(kGS_PostScriptNameKey, resolved);
}

}  // namespace GlyphsureSupport
