// The record of one font as the agent gives it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "platform/Value.h"

// Activation of a font as the plug-in sees it.
enum PluginActivationState : int16_t { kStateInactive = 1, kStateActive = 2, kStateTemporarilyActive = 3 };

struct FontOrSetInfoRec {
  uint64_t tag = 0;                            // 1 once the record holds a font
  PluginInterface::FontRecordFields fields{};  // written by the agent; of it the plug-in reads nDatabaseID
  int16_t activationState = 0;                 // PluginActivationState, 0 for none of them
  platform::Dictionary fontInfo;               // the font record
};
