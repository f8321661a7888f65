// PostScript names: comparing them, removing what applications add to them, and finding them in a font array.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Identification/FontKeys.h"
#include "platform/Value.h"

namespace GlyphsureSupport {

// True for exactly the names of fonts that are internal to the host and that no font manager could find.
bool IsInternalToHost(std::string_view name);

// Removes what the loose comparison ignores: everything except ASCII letters and digits. The strict form also removes
// "#" with the digits after it, and ends at the second hyphen.
std::string GFontToolUtils_StripCharsAndNormalizeString(std::string_view name, bool strict);
// The strict form of the above.
platform::String StripIllegalPostScriptCharacters(const platform::String& name);
// Removes the characters that a PostScript name must not contain; null if nothing is left.
platform::String CreateStringStrippingIllegalCharsInPostScriptName(const platform::String& name);

// Searches the array in three passes, each looser than the one before: the same bytes, the same after normalising, the
// same after strict normalising. The first match of a pass is the result. outIndex may be null. Linear: loops over many
// names use a FontNameIndex, which gives the same results.
bool DoesArrayContainFontWithPostScriptName(const platform::Array& fontArray, const platform::String& name,
                                            size_t* outIndex = nullptr);
// True if the record's kind is one of the two for Multiple Master fonts.
bool IsMultipleMaster(const platform::Dictionary& record);
// Traces that a name was found as an instance of another.
void TraceMultipleMaster(const platform::String& held, std::string_view wanted);
// Returns the entry with exactly this name, or the Multiple Master font of which it is an instance; null if there is
// none.
platform::Dictionary GetGlyphsureDictionaryFromArrayWithPostscriptName(const platform::Array& fontArray,
                                                                       const platform::String& name,
                                                                       size_t* outIndex = nullptr);

// Proposes a shorter name if an application seems to have added a subset tag or a style; returns false if not. Call it
// repeatedly to shorten step by step. The result is cut to bufferSize - 1 bytes. outName may be the same buffer as
// name.
bool PSNameMightHaveCruftAppended(const char* name, size_t bufferSize, char* outName);

// The base name of a Multiple Master instance; null for any other name.
platform::String CreateResolvedMMFontName(const platform::String& name);
void ResolveMMFontString(std::string& name);
void ResolveDictionaryMMFontName(platform::Dictionary record);

}  // namespace GlyphsureSupport
