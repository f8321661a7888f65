// Dividing a document's fonts into those for which one database font has been chosen and those that need the user or are
// missing, and enriching fonts by database records for a slug. Main thread only; the calls wait for the agent.
// Statuses: 0, 1000 without a connected font manager, -50 for a bad argument, or that of a look-up.
#pragma once

#include <cstddef>
#include <cstdint>

#include "Identification/FontKeys.h"
#include "platform/Value.h"

class VPFInterface;

namespace GlyphsureSupport {

// The result arrays exist; the document's own records are appended to them, with a key added. progress may be null; it is
// told to hide at the end.
int ProcessDocumentFontsForAutoActivation(const platform::Array& allDocumentFonts, platform::Array matchedFonts,
                                          platform::Array problemFonts, bool glyphsureEnabled, bool pickBestMatch,
                                          int workgroupID, VPFInterface* progress);

// Replaces each record by the database's best match, in place. With excludeInactiveFonts only fonts stay that are active
// now; unless bGetAllFontInfo the records are reduced to what a document may store. The result is the status of the last
// look-up. Whether any look-up failed, so that fonts can be missing that are there and active, goes to hasFailed (may be
// null).
int AppendGlyphsureDataToFonts(platform::Array fonts, int workgroupID, bool excludeInactiveFonts, bool bGetAllFontInfo,
                               bool tryFamilyNames, bool* hasFailed = nullptr);

// Look-up by ID alone; the array of the last font with IDs wins.
int FindIDsForBestMatches(const platform::Array& documentFonts, platform::Array* outMatchedFonts, int workgroupID);

int CountMissingFonts(const platform::Array& problemFonts);
int CountActiveFonts(const platform::Array& matchedFonts);
int CountFontsWithGlyphsureData(const platform::Array& fonts);
// Moves what the user resolved to the matched fonts; false if a font is left.
bool AllFontsResolved(const platform::Array& problemFonts, platform::Array matchedFonts);
// outIndex may be null.
bool DoesArrayContainFontWithDatabaseID(const platform::Array& fontArray, uint32_t databaseID,
                                        size_t* outIndex = nullptr);
bool IsPostScriptNameOnly(const platform::Dictionary& record);
bool FontRefContainsGlyphsureData(const platform::Dictionary& record);
bool FontRefContainsXMPData(const platform::Dictionary& record);

}  // namespace GlyphsureSupport
