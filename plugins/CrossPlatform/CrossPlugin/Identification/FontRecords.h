// Creates font records, writes the XML form of a slug, removes what a document may not store, and repairs and renames
// what records contain before they are compared or stored. Main thread only. A null argument gives a null, false or 0.
#pragma once

#include <string>
#include <string_view>

#include "Identification/FontKeys.h"
#include "platform/Value.h"

namespace GlyphsureSupport {

// Returns a new record with only this name, or an empty record for a null name.
platform::Dictionary CreateGlyphsureDictionary(const platform::String& psName);
platform::Dictionary CreateGlyphsureDictionaryWithFamilyName(const platform::String& familyName);

// Converts the array to an XML property list. Returns 0, or -50 if an argument is null.
int CreateXMLGlyphsureSlug(const platform::Array& fontArray, platform::String* outString);

// True if the key describes the font itself, so that a document may store it.
bool IsSluggableKey(std::string_view key);
// Returns true if anything was removed.
bool RemoveUnsluggableKeysFromDictionary(platform::Dictionary record);
bool RemoveUnsluggableGlyphsureKeys(const platform::Array& fontArray);

// Each returns true if it changed the record.
bool FixGlyphsureChecksumsIfNeeded(platform::Dictionary record);
bool MapTypecellarFontTypeToMarquineFontType(platform::Dictionary record, ExtentOfMapping extent);
bool MapTypecellarFoundryNameToMarquineFoundryName(platform::Dictionary record);
// Maps type and foundry and repairs checksums. Returns false and does nothing without a font manager.
bool PostProcessSingleFontForSlug(platform::Dictionary record);
void PostProcessGlyphsureSlug(const platform::Array& fontArray);
void MapTypecellarNamesToMarquineNames(const platform::Array& fontArray, ExtentOfMapping extent);

// Convert kinds between the older font server and the font manager. Other kinds are returned unchanged.
platform::String MapTypecellarFontTypeToMarquineFontType(const platform::String& kind, ExtentOfMapping extent);
platform::String MapMarquineFontTypeToTypecellarFontType(const platform::String& kind, ExtentOfMapping extent);
platform::String CreateTypecellarFoundryNameFromMarquineFoundryName(const platform::String& foundry);

// Compares values of records: the same number of characters, equal ignoring case.
bool AreEqualTexts(std::string_view a, std::string_view b);
// True if the key has a string value that AreEqualTexts considers equal.
bool KeyValueIs(const platform::Dictionary& record, std::string_view key, std::string_view value);

}  // namespace GlyphsureSupport
