// Making font records, the XML form of a slug, what of a record may be stored in a document, and the repair and renaming
// that every record passes before it is compared or stored. Main thread only. A null argument gives the neutral answer.
#pragma once

#include <string>
#include <string_view>

#include "Identification/FontKeys.h"
#include "platform/Value.h"

namespace GlyphsureSupport {

// A new record with the name alone; a null name gives an empty record.
platform::Dictionary CreateGlyphsureDictionary(const platform::String& psName);
platform::Dictionary CreateGlyphsureDictionaryWithFamilyName(const platform::String& familyName);

// The array as an XML property list. 0, or -50 if an argument is null.
int CreateXMLGlyphsureSlug(const platform::Array& fontArray, platform::String* outString);

// Whether a key describes the font itself and may therefore be stored in a document.
bool IsSluggableKey(std::string_view key);
// True if anything was removed.
bool RemoveUnsluggableKeysFromDictionary(platform::Dictionary record);
bool RemoveUnsluggableGlyphsureKeys(const platform::Array& fontArray);

// Each is true if the record changed.
bool FixGlyphsureChecksumsIfNeeded(platform::Dictionary record);
bool MapTypecellarFontTypeToMarquineFontType(platform::Dictionary record, ExtentOfMapping extent);
bool MapTypecellarFoundryNameToMarquineFoundryName(platform::Dictionary record);
// Type mapping, foundry mapping, checksum repair. Nothing and false while no font manager exists.
bool PostProcessSingleFontForSlug(platform::Dictionary record);
void PostProcessGlyphsureSlug(const platform::Array& fontArray);
void MapTypecellarNamesToMarquineNames(const platform::Array& fontArray, ExtentOfMapping extent);

// Kinds of the older font server to kinds of the font manager and back; what is in no table comes back unchanged.
platform::String MapTypecellarFontTypeToMarquineFontType(const platform::String& kind, ExtentOfMapping extent);
platform::String MapMarquineFontTypeToTypecellarFontType(const platform::String& kind, ExtentOfMapping extent);
platform::String CreateTypecellarFoundryNameFromMarquineFoundryName(const platform::String& foundry);

// Whether two texts have as many characters and are equal ignoring case, as values of records are compared.
bool AreEqualTexts(std::string_view a, std::string_view b);
// True if the key holds a string that equals the value so.
bool KeyValueIs(const platform::Dictionary& record, std::string_view key, std::string_view value);

}  // namespace GlyphsureSupport
