// The font data in a document's XMP: the slug, which this program writes, and the font list of Adobe applications,
// which it reads. Accesses document files only through the XMP toolkit. Main thread only. Functions return codes and
// show nothing to the user.
//
// Slug: in the slug namespace the property "slug", an array of structures, one for each font, whose fields are record
// keys. The old form, the property "VelorantGlyphsureSlug" with a property list as text, is recognised and removed on a
// write. Adobe's list: the array xmpTPg:Fonts of structures with stFnt fields (XMP Paged-Text schema).
#pragma once

#include <string>
#include <string_view>

#include "ErrorCodes.h"
#include "platform/Value.h"
#include "platform/XMP.h"

inline constexpr const char* kXMP_VELORANT_GLYPHSURE = "http://www.velorant.com/meta/Glyphsure/";
inline constexpr const char* kXMP_GLYPHSURE_SLUG = "VelorantGlyphsure";
inline constexpr const char* kXMP_ADOBE_FONTDATA = platform::kXMP_NS_PagedText;
inline constexpr const char* kXMP_OLD_PS_GLYPHSURE_SLUG = "VelorantGlyphsureSlug";
inline constexpr const char* kXMP_ADOBE_FONTSTRUCT = "stFnt";

using SXMPMeta = platform::TXMPMeta;
using SXMPFiles = platform::TXMPFiles;
using SXMPUtils = platform::TXMPUtils;

// At the plug-in's start and end. 0 or -1.
int InitializeGlyphsureXMP();
void TerminateGlyphsureXMP();

// Fills each array that is not null. Returns kNotFound for an empty path, a file that cannot be opened, or no array at
// all; kUnknownError if the toolkit fails; otherwise 0, even if nothing was found.
TModuleErrorCode ReadAllXMPFontDataFromFile(const std::string& fullPath, const platform::Array& slugArray,
                                            const platform::Array& adobeArray);
TModuleErrorCode ReadXMPGlyphsureSlugFromFile(const std::string& fullPath, const platform::Array& slugArray);
TModuleErrorCode ReadAdobeXMPFontDataFromFile(const std::string& fullPath, const platform::Array& adobeArray);
// Reads both, merged into one array: Adobe's first, then the slug's.
TModuleErrorCode ReadAllXMPFontDataFromFile(const std::string& fullPath, const platform::Array& fontArray,
                                            bool& hasSlug);

// Read from and write into a toolkit object. Return 0 or -1.
int GetXMPProperties(const SXMPMeta& xmpMeta, platform::Array fontArray);
int GetAdobeXMPFontData(const SXMPMeta& xmpMeta, platform::Array fontArray);
void AddAdobeFontDataToDictionary(const SXMPMeta& xmpMeta, const std::string& path, std::string_view key,
                                  platform::Dictionary record);
TModuleErrorCode SetXMPProperties(const platform::Array& fontArray, SXMPFiles& xmpFiles, SXMPMeta& xmpMeta);

// Writes the fonts as the file's slug and keeps its modification date. The records lose the keys that no document may
// store. A null array writes nothing. Returns kFatalError if there is no room for the last font: the file gets those
// that fit.
TModuleErrorCode WriteXMPGlyphsureSlugToFile(const std::string& fullPath, const platform::Array& fontArray);

// True if this host stores XMP in such a file. The flag has no effect. Not used by the flows: any file that the toolkit
// opens gets its slug.
bool IsXMPAllowedInThisFile(const std::string& path, bool flag);
