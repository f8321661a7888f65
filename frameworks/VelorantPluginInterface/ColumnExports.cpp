// The names of columns and rights. The name of a column is its key in a font record.
#include "frameworks/VelorantPluginInterface/Calls.h"
#include "frameworks/VelorantPluginInterface/Exports.h"

using namespace plugin_interface;

#define COLUMN(function, text) \
  uint32_t function(char* buffer, uint32_t size) { return WriteText(text, buffer, size); }

COLUMN(GetActivationStateColumnID, "ActivationStatus")
COLUMN(GetCanActivateAcrossWorkgroupsColumnID, "CanActivateAcrossWorkgroups")
COLUMN(GetExportFontsColumnID, "ExportFonts")
COLUMN(GetFamilyGroupIDColumnID, "AssignedFamilyID")
COLUMN(GetFamilyGroupNameColumnID, "AssignedFamilyName")
COLUMN(GetFamilyNameColumnID, "Family")
COLUMN(GetFileSizeColumnID, "OutlineFileSize")
COLUMN(GetFontFaceIDColumnID, "FontFaceID")
COLUMN(GetFontLocationColumnID, "FontLocation")
COLUMN(GetGlyphsureChecksumColumnID, "Glyphsure_1.2_Checksum")
COLUMN(GetFontTypeColumnID, "FontKind")
COLUMN(GetFontVersionColumnID, "Version")
COLUMN(GetFoundryNameColumnID, "Foundry")
COLUMN(GetIsFontLocalColumnID, "IsLocal")
COLUMN(GetIsMarquineFileColumnID, "IsMarquineFile")
COLUMN(GetKerningChecksumColumnID, "KerningChecksum")
COLUMN(GetLegacyGlyphsureChecksumColumnID, "Checksum")
COLUMN(GetLocalPathColumnID, "Path")
COLUMN(GetPostscriptNameColumnID, "PostScriptName")
COLUMN(GetDisplayNameColumnID, "DisplayName")
COLUMN(GetScannedFoundryColumnID, "ScannedFoundry")
COLUMN(GetWorkgroupIDColumnID, "WorkgroupID")
COLUMN(GetWorkgroupNameColumnID, "WorkgroupName")
COLUMN(GetWorkgroupTypeColumnID, "WorkgroupType")
