// PostScript names: which are the same name, what applications add to them, and looking them up in a font array.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Identification/FontKeys.h"
#include "platform/Value.h"

namespace GlyphsureSupport {

// The name without what the loose comparison does not look at: all but ASCII letters and digits. The strict form also
// drops "#" with the digits behind it, and ends at the second hyphen.
std::string GFontToolUtils_StripCharsAndNormalizeString(std::string_view name, bool strict);
// The strict form.
platform::String StripIllegalPostScriptCharacters(const platform::String& name);
// Without the characters that no PostScript name may hold; null if nothing is left.
platform::String CreateStringStrippingIllegalCharsInPostScriptName(const platform::String& name);

// Three passes over the array, each looser than the one before: the same bytes, the same after normalising, the same after
// strict normalising. The first entry that satisfies a pass is the result; outIndex may be null. A walk: loops over many
// names use a FontNameIndex, which gives the same answers.
bool DoesArrayContainFontWithPostScriptName(const platform::Array& fontArray, const platform::String& name,
                                            size_t* outIndex = nullptr);
// Whether the record's kind is one of the two that stand for Multiple Master fonts.
bool IsMultipleMaster(const platform::Dictionary& record);
// Traces that a name was found under another one, as an instance of it.
void TraceMultipleMaster(const platform::String& held, std::string_view wanted);
// The entry of exactly this name, or a Multiple Master font for one of its instances; null if there is none.
platform::Dictionary GetGlyphsureDictionaryFromArrayWithPostscriptName(const platform::Array& fontArray,
                                                                       const platform::String& name,
                                                                       size_t* outIndex = nullptr);

// Proposes a shorter name for one to which an application added a subset tag or a style; false if there is none. The
// result is cut to bufferSize - 1 bytes. Repeated calls shorten step by step. outName may be the buffer of name.
bool PSNameMightHaveCruftAppended(const char* name, size_t bufferSize, char* outName);

// The base name of a Multiple Master instance name; null if it is none.
platform::String CreateResolvedMMFontName(const platform::String& name);
void ResolveMMFontString(std::string& name);
void ResolveDictionaryMMFontName(platform::Dictionary record);

}  // namespace GlyphsureSupport
