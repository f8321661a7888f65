// What the agent has told of fonts so far, with what has been learned of their activation since. Main thread only.
//
// Always true: the first record of an ID stays. A font counts as active here only if the state kept beside the record and
// the "ActivationStatus" inside it agree.
#pragma once

#include <string>

#include "Bridge/FontOrSetInfoRec.h"

class FontDataPreviouslyGottenFromDatabase {
 public:
  // An ID already known keeps its older record.
  static void Add(uint32_t fontID, const FontOrSetInfoRec& record);
  // Follows the agent's notices. A font that becomes active ends the activity of all others of its PostScript name.
  static void SetFontActivationState(uint32_t fontID, bool isActive);
  // The record with the lowest ID that is active under exactly this name, as a copy; the out values are left alone if
  // there is none.
  static bool CreateCopyOfGlyphsureDataForActiveFont(const std::string& postScriptName, platform::Dictionary& record,
                                                     uint32_t& fontID);
  static void DeleteAll();
};
