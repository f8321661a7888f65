// The names of columns and rights. The name of a column is its key in a font record.
#include "frameworks/VelorantPluginInterface/Calls.h"
#include "frameworks/VelorantPluginInterface/Exports.h"

using namespace plugin_interface;

#define COLUMN(function, text) \
  uint32_t function(char* buffer, uint32_t size) { return WriteText(text, buffer, size); }
// For columns that the agent does not have. Writes an empty name.
#define NO_COLUMN(function)                        \
  uint32_t function(char* buffer, uint32_t size) { \
    WriteText("", buffer, size);                   \
    return PluginInterface::kNotImplemented;       \
  }

COLUMN(GetActivationStateColumnID, "ActivationStatus")
COLUMN(GetCanActivateAcrossWorkgroupsColumnID, "CanActivateAcrossWorkgroups")
COLUMN(GetExportFontsColumnID, "ExportFonts")
COLUMN(GetFamilyGroupIDColumnID, "AssignedFamilyID")
COLUMN(GetFamilyGroupNameColumnID, "AssignedFamilyName")
COLUMN(GetFamilyNameColumnID, "Family")
COLUMN(GetFileSizeColumnID, "OutlineFileSize")
NO_COLUMN(GetFontFaceIDColumnID)
NO_COLUMN(GetFontLocationColumnID)
COLUMN(GetGlyphsureChecksumColumnID, "Glyphsure_1.2_Checksum")
COLUMN(GetFontTypeColumnID, "FontKind")
COLUMN(GetFontVersionColumnID, "Version")
COLUMN(GetFoundryNameColumnID, "Foundry")
COLUMN(GetIsFontLocalColumnID, "IsLocal")
NO_COLUMN(GetIsMarquineFileColumnID)
COLUMN(GetKerningChecksumColumnID, "KerningChecksum")
COLUMN(GetLegacyGlyphsureChecksumColumnID, "Checksum")
COLUMN(GetLocalPathColumnID, "Path")
COLUMN(GetPostscriptNameColumnID, "PostScriptName")
NO_COLUMN(GetDisplayNameColumnID)
NO_COLUMN(GetScannedFoundryColumnID)
COLUMN(GetWorkgroupIDColumnID, "WorkgroupID")
COLUMN(GetWorkgroupNameColumnID, "WorkgroupName")
COLUMN(GetWorkgroupTypeColumnID, "WorkgroupType")
