// Putting font arrays together, so that each PostScript name stands once with the most that is known, and a poorer record
// never overwrites a richer one. Records are kept by reference where they can; a merged record is a new one. A record's
// completeness is its number of keys. Main thread only.
//
// Merging array into array, narrowing and trimming cost about as much as the names they are given, not their square. A loop
// of one's own over many names gives the merges or AddFontToArray an index of the array, which they keep in step; without
// one each call walks the array.
#pragma once

#include <string>
#include <vector>

#include "Identification/FontKeys.h"
#include "Identification/FontNameIndex.h"
#include "platform/Value.h"

namespace GlyphsureSupport {

// The index at which the font stands afterwards, or -50 if the entry found is null.
int MergeGlyphsureDictionaryIntoArray(platform::Array fontArray, const platform::Dictionary& record,
                                      FontNameIndex* index = nullptr);
void MergeFontsIntoFontsArray(const platform::Array& srcFontArray, platform::Array dstFontArray,
                              FontNameIndex* index = nullptr);
// For each named font of fontArray the slug's record, or else its own; null if either is null.
platform::Array CreateGlyphsureSlugsWithGlyphsureFontsAndDocumentFonts(const platform::Array& slugArray,
                                                                       const platform::Array& fontArray);
// Removes what the reference does not contain; how many went.
int RemoveUniqueFontsFromFontArray(platform::Array arrayToTrim, const platform::Array& referenceArray);
// Adds a record with this name; false if nothing is left of the name or, without duplicates, if it is there already.
bool AddFontToArray(const platform::String& psName, platform::Array fontsArray, bool allowDuplicates,
                    FontNameIndex* index = nullptr);
// The matched fonts of the records; null for a null or empty input.
platform::Array CreateFontArrayFromFontMatchArray(const platform::Array& fontMatchArray);
// One record a name, in order, duplicates too; a name that is no valid UTF-8 is skipped.
platform::Array CreateFontArrayFromVectorOfPostscriptNames(const std::vector<std::string>& names);

}  // namespace GlyphsureSupport
