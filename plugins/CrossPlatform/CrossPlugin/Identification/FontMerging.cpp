#include "Identification/FontMerging.h"

#include "Identification/FontNames.h"
#include "Identification/FontRecords.h"
#include "Services/DiagnosticLog.h"
#include "platform/TextEncoding.h"

namespace GlyphsureSupport {

using platform::Array;
using platform::Dictionary;
using platform::String;
using platform::Value;

namespace {

bool AreEqualValues(const Value& a, const Value& b) {
  const String textA(a), textB(b);
  if (!textA || !textB) return a.Equals(b);
  return textA.Length() == textB.Length() && platform::EqualCaseless(textA.View(), textB.View());
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

// 1 if the source knows more, -1 if the destination does. Two conflicting records of one size rank 0.
int Rank(const Dictionary& source, const Dictionary& destination) {
  if (source.Count() != destination.Count()) return source.Count() > destination.Count() ? 1 : -1;
  LogPairs(source, destination);
  return 0;
}

void Replace(int index, const char* name, Array& destination, size_t at, const Dictionary& record) {
  OutputIndentedAndFormattedString(0,
                                   "WARNING: replacing entry %d in dstFontArray (for '%s') because srcFontArray has more "
                                   "complete info for that font.",
                                   index, name);
  destination.Set(at, record);
}

void MergeOne(int index, const Dictionary& source, const String& name, Array& destinationArray, size_t at) {
  const Dictionary destination(destinationArray.At(at));
  if (destination == source) return;  // the very same record: nothing to merge
  const Comparison comparison = CompareCommonKeys(source, destination);
  if (comparison.conflicts == 0 && comparison.common < source.Count()) {
    OutputIndentedAndFormattedString(0, "Merging info from srcFontArray for entry %d in dstFontArray (for '%s').", index,
                                     name.CString());
    destinationArray.Set(at, CreateMerged(source, destination));
    return;
  }
  const int rank = comparison.conflicts == 0 ? 0 : Rank(source, destination);
  if (rank > 0) {
    Replace(index, name.CString(), destinationArray, at, source);
    return;
  }
  // The second wording stands for records of one size, also when their values differ.
  OutputIndentedAndFormattedString(0,
                                   rank < 0 ? "Ignoring entry %d in srcFontArray (for '%s') because dstFontArray already "
                                              "has more complete info for that font."
                                            : "Ignoring entry %d in srcFontArray (for '%s') because dstFontArray already "
                                              "has identical info for that font.",
                                   index, name.CString());
}

}  // namespace

int MergeGlyphsureDictionaryIntoArray(Array fontArray, const Dictionary& record) {
  size_t at = 0;
  if (!DoesArrayContainFontWithPostScriptName(fontArray, record.GetString(kGS_PostScriptNameKey), &at)) {
    OutputIndentedAndFormattedString(0, "Appended Glyphsure dictionary 0x%08x", LowBits(record.Ref()));
    fontArray.Append(record);
    return static_cast<int>(fontArray.Count()) - 1;
  }
  const Dictionary entry(fontArray.At(at));
  if (!entry) return kErrorBadArgument;
  if (record.Count() > entry.Count()) fontArray.Set(at, record);
  return static_cast<int>(at);
}

void MergeFontsIntoFontsArray(const Array& srcFontArray, Array dstFontArray) {
  if (!srcFontArray || !dstFontArray) return;
  for (size_t i = 0; i < srcFontArray.Count(); ++i) {
    const Dictionary source(srcFontArray.At(i));
    if (!source) continue;
    const int index = static_cast<int>(i);
    const String name = source.GetString(kGS_PostScriptNameKey);
    size_t at = 0;
    if (!name) {
      OutputIndentedAndFormattedString(
          0, "WARNING: ignoring entry %d in srcFontArray because it does not contain a postscript name.", index);
    } else if (!DoesArrayContainFontWithPostScriptName(dstFontArray, name, &at)) {
      OutputIndentedAndFormattedString(
          0, "Appending entry %d in srcFontArray (for '%s') because dstFontArray has no such postscript name.", index,
          name.CString());
      dstFontArray.Append(source);
    } else {
      MergeOne(index, source, name, dstFontArray, at);
    }
  }
}

Array CreateGlyphsureSlugsWithGlyphsureFontsAndDocumentFonts(const Array& slugArray, const Array& fontArray) {
  if (!slugArray || !fontArray) return Array();
  Array result = Array::Create();
  for (size_t i = 0; i < fontArray.Count(); ++i) {
    const Dictionary font(fontArray.At(i));
    const String name = font.GetString(kGS_PostScriptNameKey);
    if (!name) continue;
    const Dictionary slug = GetGlyphsureDictionaryFromArrayWithPostscriptName(slugArray, name);
    if (slug) OutputIndentedAndFormattedString(0, "Merging in this Glyphsure slug data:");
    result.Append(slug ? slug : font);
  }
  return result;
}

int RemoveUniqueFontsFromFontArray(Array arrayToTrim, const Array& referenceArray) {
  if (!arrayToTrim || !referenceArray) return 0;
  int removed = 0;
  for (size_t i = arrayToTrim.Count(); i-- > 0;) {
    const String name = Dictionary(arrayToTrim.At(i)).GetString(kGS_PostScriptNameKey);
    if (!name) {
      OutputIndentedAndFormattedString(
          0, "WARNING: ignoring entry %d in arrayToTrim because it does not contain a postscript name.",
          static_cast<int>(i));
    } else if (!DoesArrayContainFontWithPostScriptName(referenceArray, name)) {
      arrayToTrim.RemoveAt(i);
      ++removed;
    }
  }
  return removed;
}

bool AddFontToArray(const String& cfPostScriptName, Array fontsArray, bool allowDuplicates) {
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
  if (!allowDuplicates && DoesArrayContainFontWithPostScriptName(fontsArray, name)) return false;
  fontsArray.Append(CreateGlyphsureDictionary(name));
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
