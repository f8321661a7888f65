// Divides a document's fonts into those with a chosen database font and those that need the user or are missing, and
// adds database records to fonts for a slug. Main thread only; the calls wait for the agent. Statuses: 0, 1000 without
// a connected font manager, -50 for a bad argument, or that of a look-up.
#pragma once

#include <cstddef>
#include <cstdint>

#include "Identification/FontKeys.h"
#include "platform/Value.h"

class VPFInterface;

namespace GlyphsureSupport {

// Appends the document's records, with a key added, to the result arrays, which must not be null. `progress` may be
// null; it is told to hide at the end.
int ProcessDocumentFontsForAutoActivation(const platform::Array& allDocumentFonts, platform::Array matchedFonts,
                                          platform::Array problemFonts, bool glyphsureEnabled, bool pickBestMatch,
                                          int workgroupID, VPFInterface* progress);

// Replaces each record by the database's best match, in place. With excludeInactiveFonts, only fonts that are active
// now stay. Without bGetAllFontInfo, the records keep only what a document may store. Returns the status of the last
// look-up. hasFailed (may be null) is set if any look-up failed, so that fonts which exist and are active can be
// missing.
int AppendGlyphsureDataToFonts(platform::Array fonts, int workgroupID, bool excludeInactiveFonts, bool bGetAllFontInfo,
                               bool tryFamilyNames, bool* hasFailed = nullptr);

// Looks up by ID only. The array of the last font with IDs wins.
int FindIDsForBestMatches(const platform::Array& documentFonts, platform::Array* outMatchedFonts, int workgroupID);

int CountMissingFonts(const platform::Array& problemFonts);
int CountActiveFonts(const platform::Array& matchedFonts);
int CountFontsWithGlyphsureData(const platform::Array& fonts);
// Moves the fonts that the user resolved to the matched fonts. Returns false if any is left.
bool AllFontsResolved(const platform::Array& problemFonts, platform::Array matchedFonts);
// outIndex may be null.
bool DoesArrayContainFontWithDatabaseID(const platform::Array& fontArray, uint32_t databaseID,
                                        size_t* outIndex = nullptr);
bool IsPostScriptNameOnly(const platform::Dictionary& record);
bool FontRefContainsGlyphsureData(const platform::Dictionary& record);
bool FontRefContainsXMPData(const platform::Dictionary& record);

}  // namespace GlyphsureSupport
