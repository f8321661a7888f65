// The step of FontRecords.h that asks whether a font manager exists.
#include "Bridge/FontManagerInterface.h"
#include "Identification/FontRecords.h"

bool GlyphsureSupport::PostProcessSingleFontForSlug(platform::Dictionary record) {
  if (!FontManagerInterface::sm_pFontManager) return false;
  bool changed = MapTypecellarFontTypeToMarquineFontType(record, kFullMapping);
  changed = MapTypecellarFoundryNameToMarquineFoundryName(record) || changed;
  return FixGlyphsureChecksumsIfNeeded(record) || changed;
}
