// A cache of the font records that the agent returned, with the activations that it announced since. Main thread only.
//
// The first record of an ID stays. A font counts as active only if both the state beside the record and the
// "ActivationStatus" inside it say so.
#pragma once

#include <string>

#include "Bridge/FontOrSetInfoRec.h"

class FontDataPreviouslyGottenFromDatabase {
 public:
  // Keeps the older record of an ID that is known already.
  static void Add(uint32_t fontID, const FontOrSetInfoRec& record);
  // Follows the agent's notifications. When a font becomes active, all others with its PostScript name become inactive.
  static void SetFontActivationState(uint32_t fontID, bool isActive);
  // Copies the record with the lowest ID that is active and has exactly this name. Returns false, with the out values
  // unchanged, if there is none.
  static bool CreateCopyOfGlyphsureDataForActiveFont(const std::string& postScriptName, platform::Dictionary& record,
                                                     uint32_t& fontID);
  static void DeleteAll();
};
