// The calls that the agent serves, by subject. Arguments and results of each are listed in docs/PROTOCOL.md.
#pragma once

#include <functional>

#include "agent/Dispatcher.h"
#include "agent/FontLibrary.h"

namespace agent {

// Login, workgroups, rights: the same whether or not there are fonts.
void AddStateCalls(Dispatcher& dispatcher);
// Look-ups and records.
void AddFontCalls(Dispatcher& dispatcher, FontLibrary& library);
void AddActivationCalls(Dispatcher& dispatcher, FontLibrary& library);
// Sets and copies of font files.
void AddSetCalls(Dispatcher& dispatcher, FontLibrary& library);

}  // namespace agent
