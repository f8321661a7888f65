// Merges font arrays, so that each PostScript name occurs once with the most complete record, and a poorer record never
// overwrites a richer one. A record's completeness is its number of keys. Records are shared where possible; a merged
// record is a new one. Main thread only.
//
// Merging two arrays, narrowing and trimming take time linear in the number of names. A caller that loops over many
// names passes an index of the array to the merges or to AddFontToArray, which keep it up to date; without an index
// each call searches the array.
#pragma once

#include <string>
#include <vector>

#include "Identification/FontKeys.h"
#include "Identification/FontNameIndex.h"
#include "platform/Value.h"

namespace GlyphsureSupport {

// Returns the index of the font in the array, or -50 if the entry found is null.
int MergeGlyphsureDictionaryIntoArray(platform::Array fontArray, const platform::Dictionary& record,
                                      FontNameIndex* index = nullptr);
void MergeFontsIntoFontsArray(const platform::Array& srcFontArray, platform::Array dstFontArray,
                              FontNameIndex* index = nullptr);
// Returns, for each named font of fontArray, the slug's record or else its own. Null if either argument is null.
platform::Array CreateGlyphsureSlugsWithGlyphsureFontsAndDocumentFonts(const platform::Array& slugArray,
                                                                       const platform::Array& fontArray);
// Removes the entries that the reference array does not contain. Returns their number.
int RemoveUniqueFontsFromFontArray(platform::Array arrayToTrim, const platform::Array& referenceArray);
// Adds a record with this name. Returns false if no valid character of the name is left or, without allowDuplicates, if
// the array contains it already.
bool AddFontToArray(const platform::String& psName, platform::Array fontsArray, bool allowDuplicates,
                    FontNameIndex* index = nullptr);
// Returns the matched fonts of the records; null for a null or empty array.
platform::Array CreateFontArrayFromFontMatchArray(const platform::Array& fontMatchArray);
// Returns one record per name, in order and with duplicates. Skips names that are not valid UTF-8.
platform::Array CreateFontArrayFromVectorOfPostscriptNames(const std::vector<std::string>& names);

}  // namespace GlyphsureSupport
