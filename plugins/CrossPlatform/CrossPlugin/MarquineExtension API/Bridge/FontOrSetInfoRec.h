// The record of one font as the agent returns it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "platform/Value.h"

// The plug-in's activation states.
enum PluginActivationState : int16_t { kStateInactive = 1, kStateActive = 2, kStateTemporarilyActive = 3 };

struct FontOrSetInfoRec {
  uint64_t tag = 0;                            // 1 once the record contains a font
  PluginInterface::FontRecordFields fields{};  // written by the agent; the plug-in reads only nDatabaseID
  int16_t activationState = 0;                 // a PluginActivationState, or 0
  platform::Dictionary fontInfo;               // the font record
};
