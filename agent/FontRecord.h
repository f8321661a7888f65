// A font as its record crosses the wire: a flat object of texts, in the vocabulary of font records.
#pragma once

#include "agent/FontTable.h"
#include "agent/include/AgentCalls.h"
#include "agent/include/AgentProtocol.h"

namespace agent {

agent_protocol::Record MakeFontRecord(const Font& font, agent_protocol::AgentActivationState state);
// Numbers and flags in it are decimal text, as in font records.
agent_protocol::Record MakeWorkgroupRecord(const Workgroup& workgroup);

}  // namespace agent
