#include "Identification/FontMerging.h"

#include <algorithm>
#include <limits>
#include <map>
#include <optional>

#include "Identification/FontNames.h"
#include "Identification/FontRecords.h"
#include "Services/DiagnosticLog.h"

namespace GlyphsureSupport {

using platform::Array;
using platform::Dictionary;
using platform::String;
using platform::Value;

namespace {

String NameOf(const Dictionary& record) { return record.GetString(kGS_PostScriptNameKey); }

bool AreEqualValues(const Value& a, const Value& b) {
  const String textA(a), textB(b);
  if (!textA || !textB) return a.Equals(b);
  return AreEqualTexts(textA.View(), textB.View());
}

struct Comparison {
  size_t common = 0;
  size_t conflicts = 0;
};

Comparison CompareCommonKeys(const Dictionary& source, const Dictionary& destination) {
  Comparison result;
  for (size_t i = 0; i < source.Count(); ++i) {
    const Value held = destination.Get(source.KeyAt(i));
    if (!held) continue;
    ++result.common;
    if (!AreEqualValues(source.ValueAt(i), held)) ++result.conflicts;
  }
  return result;
}

Dictionary CreateMerged(const Dictionary& source, const Dictionary& destination) {
  Dictionary merged = destination.Copy();
  for (size_t i = 0; i < source.Count(); ++i) {
    if (!merged.Contains(source.KeyAt(i))) merged.Set(source.KeyAt(i), source.ValueAt(i));
  }
  return merged;
}

void LogPairs(const Dictionary& first, const Dictionary& second) {
  for (size_t i = 0; i < first.Count(); ++i) {
    OutputIndentedAndFormattedString(0, "key1: '%s'; key2: '%s'", std::string(first.KeyAt(i)).c_str(),
                                     std::string(second.KeyAt(i)).c_str());
    OutputIndentedAndFormattedString(0, "value1: '%s'; value2: '%s'", String(first.ValueAt(i)).CString(),
                                     String(second.ValueAt(i)).CString());
  }
}

// Returns 1 if the source has more keys, -1 if the destination has, 0 if they have the same number.
int Rank(const Dictionary& source, const Dictionary& destination) {
  if (source.Count() != destination.Count()) return source.Count() > destination.Count() ? 1 : -1;
  LogPairs(source, destination);
  return 0;
}

// Replaces the entry at this position. The new record may have another name.
void ReplaceEntry(Array& array, FontNameIndex& index, size_t at, const Dictionary& record) {
  index.Replaced(at, NameOf(Dictionary(array.At(at))), NameOf(record));
  array.Set(at, record);
}

// Merges the source's entry i into the destination's entry of the same name.
void MergeOne(int i, const Dictionary& source, Array& destinationArray, FontNameIndex& index, size_t at) {
  const Dictionary destination(destinationArray.At(at));
  if (destination == source) return;  // the same record
  const char* name = NameOf(source).CString();
  const Comparison comparison = CompareCommonKeys(source, destination);
  if (comparison.conflicts == 0 && comparison.common < source.Count()) {
    OutputIndentedAndFormattedString(0, "Merging info from srcFontArray for entry %d in dstFontArray (for '%s').",
                                     static_cast<int>(at), name);
    ReplaceEntry(destinationArray, index, at, CreateMerged(source, destination));
    return;
  }
  const int rank = comparison.conflicts == 0 ? 0 : Rank(source, destination);
  if (rank > 0) {
    OutputIndentedAndFormattedString(0,
                                     "WARNING: replacing entry %d in dstFontArray (for '%s') because srcFontArray has "
                                     "more complete info for that font.",
                                     static_cast<int>(at), name);
    ReplaceEntry(destinationArray, index, at, source);
  } else if (rank < 0) {
    OutputIndentedAndFormattedString(
        0,
        "Ignoring entry %d in srcFontArray (for '%s') because dstFontArray already has more complete info for that font.",
        i, name);
  } else {
    // Also used for records of the same size whose values differ.
    OutputIndentedAndFormattedString(
        0,
        "Ignoring entry %d in srcFontArray (for '%s') because dstFontArray already has identical info for that font.",
        i, name);
  }
}

std::optional<size_t> FindName(const Array& fontArray, const String& name, const FontNameIndex* index) {
  if (!fontArray || !name) return std::nullopt;
  if (index) return index->Find(name.View());
  size_t at = 0;
  if (!DoesArrayContainFontWithPostScriptName(fontArray, name, &at)) return std::nullopt;
  return at;
}

void Append(Array& fontArray, const Dictionary& record, FontNameIndex* index) {
  if (index) index->Added(fontArray.Count(), NameOf(record));
  fontArray.Append(record);
}

}  // namespace

int MergeGlyphsureDictionaryIntoArray(Array fontArray, const Dictionary& record, FontNameIndex* index) {
  const auto at = FindName(fontArray, NameOf(record), index);
  if (!at) {
    OutputIndentedAndFormattedString(0, "Appended Glyphsure dictionary 0x%08x", LowBits(record.Ref()));
    Append(fontArray, record, index);
    return static_cast<int>(fontArray.Count()) - 1;
  }
  const Dictionary entry(fontArray.At(*at));
  if (!entry) return kErrorBadArgument;
  if (record.Count() > entry.Count()) {
    if (index) index->Replaced(*at, NameOf(entry), NameOf(record));
    fontArray.Set(*at, record);
  }
  return static_cast<int>(*at);
}

void MergeFontsIntoFontsArray(const Array& srcFontArray, Array dstFontArray, FontNameIndex* index) {
  if (!srcFontArray || !dstFontArray) return;
  std::optional<FontNameIndex> own;
  if (!index) index = &own.emplace(dstFontArray);
  for (size_t i = 0; i < srcFontArray.Count(); ++i) {
    const Dictionary source(srcFontArray.At(i));
    if (!source) continue;
    const int entry = static_cast<int>(i);
    const String name = NameOf(source);
    if (!name) {
      OutputIndentedAndFormattedString(
          0, "WARNING: ignoring entry %d in srcFontArray because it does not contain a postscript name.", entry);
    } else if (const auto at = index->Find(name.View())) {
      MergeOne(entry, source, dstFontArray, *index, *at);
    } else {
      OutputIndentedAndFormattedString(
          0, "Appending entry %d in srcFontArray (for '%s') because dstFontArray has no such postscript name.", entry,
          name.CString());
      Append(dstFontArray, source, index);
    }
  }
}

namespace {

// GetGlyphsureDictionaryFromArrayWithPostscriptName for many names: finds the first entry with exactly the name, or the
// first Multiple Master font of which the name is an instance, whichever comes first.
class SlugIndex {
 public:
  explicit SlugIndex(const Array& slugArray) : slugArray_(slugArray) {
    for (size_t i = 0; i < slugArray.Count(); ++i) {
      const Dictionary record(slugArray.At(i));
      const String name = NameOf(record);
      if (!name) continue;
      exact_.try_emplace(name.Text(), i);
      if (!IsMultipleMaster(record)) continue;
      multipleMasters_.try_emplace(name.Text(), i);
      longestMultipleMaster_ = std::max(longestMultipleMaster_, name.View().size());
    }
  }

  Dictionary Find(std::string_view name) const {
    size_t best = IndexOf(exact_, name);
    for (size_t at = name.find('_'); at <= longestMultipleMaster_ && at < name.size(); at = name.find('_', at + 1)) {
      best = std::min(best, IndexOf(multipleMasters_, name.substr(0, at)));
    }
    Dictionary found(slugArray_.At(best));
    if (found) TraceMultipleMaster(NameOf(found), name);
    return found;
  }

 private:
  using Indexes = std::map<std::string, size_t, std::less<>>;
  static size_t IndexOf(const Indexes& indexes, std::string_view name) {
    const auto found = indexes.find(name);
    return found == indexes.end() ? std::numeric_limits<size_t>::max() : found->second;
  }

  const Array& slugArray_;
  Indexes exact_, multipleMasters_;
  size_t longestMultipleMaster_ = 0;
};

}  // namespace

Array CreateGlyphsureSlugsWithGlyphsureFontsAndDocumentFonts(const Array& slugArray, const Array& fontArray) {
  if (!slugArray || !fontArray) return Array();
  Array result = Array::Create();
  const SlugIndex slugs(slugArray);
  for (size_t i = 0; i < fontArray.Count(); ++i) {
    const Dictionary font(fontArray.At(i));
    const String name = NameOf(font);
    if (!name) continue;
    const Dictionary slug = slugs.Find(name.View());
    if (slug) OutputIndentedAndFormattedString(0, "Merging in this Glyphsure slug data:");
    result.Append(slug ? slug : font);
  }
  return result;
}

int RemoveUniqueFontsFromFontArray(Array arrayToTrim, const Array& referenceArray) {
  if (!arrayToTrim || !referenceArray) return 0;
  const FontNameIndex reference(referenceArray);
  int removed = 0;
  for (size_t i = arrayToTrim.Count(); i-- > 0;) {
    const String name = Dictionary(arrayToTrim.At(i)).GetString(kGS_PostScriptNameKey);
    if (!name) {
      OutputIndentedAndFormattedString(
          0, "WARNING: ignoring entry %d in arrayToTrim because it does not contain a postscript name.",
          static_cast<int>(i));
    } else if (!reference.Find(name.View())) {
      arrayToTrim.RemoveAt(i);
      ++removed;
    }
  }
  return removed;
}

bool AddFontToArray(const String& cfPostScriptName, Array fontsArray, bool allowDuplicates, FontNameIndex* index) {
  if (!cfPostScriptName) {
    OutputIndentedAndFormattedString(0, "*** ERROR:  NULL cfPostScriptName passed to AddFontToArray");
    return false;
  }
  if (!fontsArray) {
    OutputIndentedAndFormattedString(0, "*** ERROR:  NULL fontsArray passed to AddFontToArray");
    return false;
  }
  const String name = CreateStringStrippingIllegalCharsInPostScriptName(cfPostScriptName);
  if (!name) return false;
  if (!allowDuplicates && FindName(fontsArray, name, index)) return false;
  Append(fontsArray, CreateGlyphsureDictionary(name), index);
  return true;
}

Array CreateFontArrayFromFontMatchArray(const Array& fontMatchArray) {
  if (fontMatchArray.Count() == 0) return Array();
  Array matches = Array::Create();
  for (size_t i = 0; i < fontMatchArray.Count(); ++i) {
    const Value match = Dictionary(fontMatchArray.At(i)).Get(kGS_MatchedFontKey);
    if (match) matches.Append(match);
  }
  return matches;
}

Array CreateFontArrayFromVectorOfPostscriptNames(const std::vector<std::string>& names) {
  Array fonts = Array::Create();
  for (const std::string& name : names) {
    const String text = String::FromUTF8(name);
    if (text) fonts.Append(CreateGlyphsureDictionary(text));
  }
  return fonts;
}

}  // namespace GlyphsureSupport
