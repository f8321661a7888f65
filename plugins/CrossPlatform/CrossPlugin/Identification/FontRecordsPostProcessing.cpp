// The function of FontRecords.h that needs to know whether there is a font manager.
#include "Bridge/FontManagerInterface.h"
#include "Identification/FontRecords.h"

bool GlyphsureSupport::PostProcessSingleFontForSlug(platform::Dictionary record) {
  if (!FontManagerInterface::sm_pFontManager) return false;
  bool changed = MapTypecellarFontTypeToMarquineFontType(record, kFullMapping);
  changed = MapTypecellarFoundryNameToMarquineFoundryName(record) || changed;
  return FixGlyphsureChecksumsIfNeeded(record) || changed;
}
