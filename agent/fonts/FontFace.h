// The properties of one face of a font file, and what identifies the face on any machine.
#pragma once

#include <cstdint>

#include "agent/fonts/FontCoverage.h"
#include "agent/fonts/FontTraits.h"
#include "agent/fonts/SharedText.h"

namespace agent {

struct FontFace {
  int32_t faceIndex = 0;      // index in a collection, otherwise 0
  SharedText postScriptName;  // never empty
  SharedText family;
  SharedText style;
  // "OpenType - PS": CFF outlines. "OpenType - TT": glyf outlines with one of the layout or signature tables GSUB,
  // GPOS, GDEF, BASE, JSTF, DSIG. "TrueType": glyf outlines without these. "Postscript": Type 1. "PostScript - MM":
  // Type 1 with axes.
  SharedText kind;
  // Name 8; else a maker known from the notice; else the vendor of OS/2; else "--".
  SharedText foundry;
  // Name 5 without a leading "Version " and without the part after its first ";", or the /version of a Type 1 font.
  SharedText version;
  SharedText printerFont;          // Type 1: the file's name
  uint32_t kerningChecksum = 0;    // 20 bits over kern and GPOS; 0 without either
  uint32_t checksum = 0;           // over the outlines, never 0
  uint32_t glyphsureChecksum = 0;  // over the outlines, never 0
  FontTraits traits;
  PackedCoverage coverage;

  bool operator==(const FontFace&) const = default;
};

}  // namespace agent
