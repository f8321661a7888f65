// A font as its record crosses the wire: a flat object of texts, in the vocabulary of font records.
#pragma once

#include "agent/FontTable.h"
#include "agent/Json.h"
#include "agent/include/AgentProtocol.h"

namespace agent {

Json MakeFontRecord(const Font& font, agent_protocol::AgentActivationState state);
// Numbers and flags in it are decimal text, as in font records.
Json MakeWorkgroupRecord(const Workgroup& workgroup);

}  // namespace agent
