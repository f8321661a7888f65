#include "Identification/FontNames.h"

#include <algorithm>
#include <cstring>

#include "Identification/FontRecords.h"
#include "Services/DiagnosticLog.h"
#include "platform/TextEncoding.h"

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

// "Base_123_456" is an instance of "Base".
bool IsInstanceOf(std::string_view wanted, std::string_view base) {
  return wanted.size() > base.size() && wanted[base.size()] == '_' && wanted.starts_with(base);
}

// Iterates over a name's bytes as the comparison sees them, without allocating memory.
class NormalizedBytes {
 public:
  static constexpr int kEnd = -1;

  NormalizedBytes(std::string_view name, bool strict) : name_(name), strict_(strict) {}

  int Next() {
    while (at_ < name_.size()) {
      const char c = name_[at_++];
      if (IsAsciiAlphaNumeric(c)) return c;
      if (strict_ && c == '#') {
        while (at_ < name_.size() && IsAsciiDigit(name_[at_])) ++at_;
      } else if (strict_ && c == '-' && ++hyphens_ == 2) {
        at_ = name_.size();
      }
    }
    return kEnd;
  }

 private:
  std::string_view name_;
  bool strict_;
  size_t at_ = 0;
  int hyphens_ = 0;
};

bool AreSameNormalized(std::string_view a, std::string_view b, bool strict) {
  NormalizedBytes left(a, strict), right(b, strict);
  for (;;) {
    const int c = left.Next();
    if (c != right.Next()) return false;
    if (c == NormalizedBytes::kEnd) return true;
  }
}

bool Finish(size_t index, size_t* outIndex) {
  if (outIndex) *outIndex = index;
  return true;
}

}  // namespace

bool IsInternalToHost(std::string_view name) { return name == "PhotoshopKinsokuHard" || name == "AdobeInvisFont"; }

std::string GFontToolUtils_StripCharsAndNormalizeString(std::string_view name, bool strict) {
  std::string out;
  out.reserve(name.size());
  NormalizedBytes bytes(name, strict);
  for (int c = bytes.Next(); c != NormalizedBytes::kEnd; c = bytes.Next()) out.push_back(static_cast<char>(c));
  return out;
}

String StripIllegalPostScriptCharacters(const String& name) {
  return name ? String::FromUTF8(GFontToolUtils_StripCharsAndNormalizeString(name.View(), true)) : String();
}

String CreateStringStrippingIllegalCharsInPostScriptName(const String& name) {
  std::string bare = name.Text();
  std::erase_if(bare, [](char c) { return std::strchr(" ()/[]{}", c) != nullptr && c != '\0'; });
  if (bare.empty()) return String();
  String result = String::FromUTF8(bare);
  if (!result) OutputIndentedAndFormattedString(0, "ERROR string coverted to emptyString %s", bare.c_str());
  return result;
}

bool DoesArrayContainFontWithPostScriptName(const Array& fontArray, const String& name, size_t* outIndex) {
  if (!fontArray || !name) return false;
  const size_t count = fontArray.Count();
  // One loop for all three passes: remembers what the looser passes would find until the strictest is done.
  size_t loose = count, strict = count;
  for (size_t i = 0; i < count; ++i) {
    const String held = NameAt(fontArray, i);
    if (!held) continue;
    if (held.View() == name.View()) return Finish(i, outIndex);
    if (loose == count && AreSameNormalized(held.View(), name.View(), false)) loose = i;
    if (strict == count && loose == count && AreSameNormalized(held.View(), name.View(), true)) strict = i;
  }
  const size_t found = loose < count ? loose : strict;
  return found < count && Finish(found, outIndex);
}

bool IsMultipleMaster(const Dictionary& record) {
  return KeyValueIs(record, kGS_KindKey, "PostScript - MM") ||
         KeyValueIs(record, kGS_KindKey, "PostScript - Multiple Master");
}

void TraceMultipleMaster(const String& held, std::string_view wanted) {
  if (held.View() == wanted) return;
  OutputIndentedAndFormattedString(
      0, "...Special case for MM:  matching Glyphsure data for PS name \"%s\" to PS name \"%s\"", held.CString(),
      std::string(wanted).c_str());
}

Dictionary GetGlyphsureDictionaryFromArrayWithPostscriptName(const Array& fontArray, const String& name,
                                                             size_t* outIndex) {
  if (!name) return Dictionary();
  for (size_t i = 0; i < fontArray.Count(); ++i) {
    Dictionary record(fontArray.At(i));
    const String held = record.GetString(kGS_PostScriptNameKey);
    if (!held) continue;
    const bool isWanted =
        held.View() == name.View() || (IsInstanceOf(name.View(), held.View()) && IsMultipleMaster(record));
    if (!isWanted) continue;
    TraceMultipleMaster(held, name.View());
    Finish(i, outIndex);
    return record;
  }
  return Dictionary();
}

bool PSNameMightHaveCruftAppended(const char* name, size_t bufferSize, char* outName) {
  if (!name || !outName || bufferSize == 0 || *name == '\0') return false;
  const std::string text = name;  // a copy, because outName may be the same buffer
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
  // In UTF-16 units; the last two are never examined.
  const std::u16string text = platform::UTF8ToUTF16(name.View()).value_or(std::u16string());
  bool isMarked = false;
  for (size_t i = 0; i + 2 < text.size(); ++i) {
    if (text[i] == 'M' && text[i + 1] == 'M' && (text[i + 2] == '-' || text[i + 2] == '_')) isMarked = true;
    if (text[i] != '_' || !isMarked) continue;
    String base = String::FromUTF16(text.substr(0, i));
    OutputIndentedAndFormattedString(0, "GlyphsureSupport::CreateResolvedMMFontName changing '%s' to '%s'",
                                     name.CString(), base.CString());
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
