// The keys of font records. A record is a dictionary with string keys. Its numbers and flags are decimal text, flags
// "1" and "0". A font array is an ordered array of records, in which the PostScript name identifies a font.
#pragma once

#include <string_view>

namespace GlyphsureSupport {

inline constexpr std::string_view kGS_PostScriptNameKey = "PostScriptName";  // identifies the record
inline constexpr std::string_view kGS_KindKey = "FontKind";
inline constexpr std::string_view kGS_FoundryKey = "Foundry";
inline constexpr std::string_view kGS_VersionKey = "Version";
inline constexpr std::string_view kGS_KerningChecksumKey = "KerningChecksum";        // at most 20 bits
inline constexpr std::string_view kGS_ChecksumKey = "Checksum";                      // the older one, version 1.1
inline constexpr std::string_view kGS_Glyphsure_1_2_Key = "Glyphsure_1.2_Checksum";  // the newer one, version 1.2
inline constexpr std::string_view kGS_OutlineFileSizeKey = "OutlineFileSize";        // compared as text
inline constexpr std::string_view kGS_OutlineFileNameKey = "OutlineFileName";
inline constexpr std::string_view kGS_FamilyKey = "Family";
inline constexpr std::string_view kGS_AssignedFamilyGroupIDKey = "AssignedFamilyID";
inline constexpr std::string_view kGS_AssignedFamilyGroupNameKey = "AssignedFamilyName";
inline constexpr std::string_view kGS_PrinterFontKey = "PrinterFont";
inline constexpr std::string_view kGS_KeywordsKey = "Keywords";
inline constexpr std::string_view kGS_PathKey = "Path";
inline constexpr std::string_view kGS_SourceDocumentName = "SourceDocumentName";
inline constexpr std::string_view kGS_SubDocumentsWithFontKey = "SubDocumentsWithFont";  // array
inline constexpr std::string_view kGS_PossibleReplacementsKey = "PossibleReplacements";  // array of records
inline constexpr std::string_view kGS_DatabaseIDKey = "DatabaseID";
inline constexpr std::string_view kGS_MatchedFontKey = "MatchedFont";  // record
inline constexpr std::string_view kGS_ActivationStateKey = "ActivationStatus";
inline constexpr std::string_view kGS_WorkgroupIDKey = "WorkgroupID";
inline constexpr std::string_view kGS_WorkgroupNameKey = "WorkgroupName";
inline constexpr std::string_view kGS_WorkgroupTypeKey = "WorkgroupType";
inline constexpr std::string_view kGS_IsActiveKey = "IsActive";
inline constexpr std::string_view kGS_IsTempKey = "IsTemp";
inline constexpr std::string_view kGS_IsVaultKey = "IsVault";
inline constexpr std::string_view kGS_IsSystemKey = "IsSystem";
inline constexpr std::string_view kGS_IsLocalKey = "IsLocal";
inline constexpr std::string_view kGS_IsAutoActivatedKey = "IsAutoActivated";
// The style, from the agent only; never stored in a document. Numbers as in the OS/2 table.
inline constexpr std::string_view kGS_WeightKey = "Weight";      // 1 to 1000, 400 is regular
inline constexpr std::string_view kGS_WidthKey = "Width";        // 1 to 9, 5 is normal
inline constexpr std::string_view kGS_IsItalicKey = "IsItalic";  // or oblique

inline constexpr std::string_view kGS_Kind_OpenType = "OpenType";  // contained in the kind of every OpenType font
inline constexpr std::string_view kGS_Kind_Postscript = "Postscript";
inline constexpr std::string_view kGS_Kind_TrueType = "TrueType";

// What Adobe applications wrote into a document's XMP, in their own terms. Never in a slug.
inline constexpr std::string_view kAdobeXMPFontData_FamilyKey = "AdobeXMPFontData_Family";
inline constexpr std::string_view kAdobeXMPFontData_FaceKey = "AdobeXMPFontData_Face";
inline constexpr std::string_view kAdobeXMPFontData_TypeKey = "AdobeXMPFontData_Type";
inline constexpr std::string_view kAdobeXMPFontData_VersionStringKey = "AdobeXMPFontData_VersionString";
inline constexpr std::string_view kAdobeXMPFontData_CompositeKey = "AdobeXMPFontData_Composite";
inline constexpr std::string_view kAdobeXMPFontData_FontFileNameKey = "AdobeXMPFontData_FontFileName";

// The keys that the slug reader asks for, ended by a null view. The last three are kinds, not keys; keep them, because
// readers of old slugs ask for them.
inline constexpr std::string_view kAllGlyphsureCFKeys[] = {
    kGS_PostScriptNameKey,
    kGS_KindKey,
    kGS_FoundryKey,
    kGS_VersionKey,
    kGS_KerningChecksumKey,
    kGS_ChecksumKey,
    kGS_Glyphsure_1_2_Key,
    kGS_OutlineFileSizeKey,
    kGS_OutlineFileNameKey,
    kGS_FamilyKey,
    kGS_AssignedFamilyGroupIDKey,
    kGS_AssignedFamilyGroupNameKey,
    kGS_PrinterFontKey,
    kGS_KeywordsKey,
    kGS_PathKey,
    kGS_SourceDocumentName,
    kGS_SubDocumentsWithFontKey,
    kGS_PossibleReplacementsKey,
    kGS_DatabaseIDKey,
    kGS_MatchedFontKey,
    kGS_ActivationStateKey,
    kGS_WorkgroupIDKey,
    kGS_WorkgroupNameKey,
    kGS_WorkgroupTypeKey,
    kGS_IsActiveKey,
    kGS_IsTempKey,
    kGS_IsVaultKey,
    kGS_IsSystemKey,
    kGS_IsLocalKey,
    kGS_IsAutoActivatedKey,
    kGS_Kind_OpenType,
    kGS_Kind_Postscript,
    kGS_Kind_TrueType,
    std::string_view(),
};

// The kind of name to look up.
enum TypeOfFontName : int { kPostScriptName = 0, kFamilyName = 1 };

// The extent of renaming kinds and foundries: all, or only the mapping that both old and new data need.
enum ExtentOfMapping : int { kFullMapping = 0, kPairMappingOnly = 1 };

// Statuses of the font data operations other than 0.
inline constexpr int kErrorBadArgument = -50;
inline constexpr int kErrorMarquineNotRunning = 1000;

}  // namespace GlyphsureSupport

using GlyphsureSupport::kErrorMarquineNotRunning;
using GlyphsureSupport::TypeOfFontName;
