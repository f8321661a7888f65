// The record of a font for the socket: a flat object of strings, with the keys of font records.
#pragma once

#include "agent/FontTable.h"
#include "agent/include/AgentCalls.h"
#include "agent/include/AgentProtocol.h"

namespace agent {

agent_protocol::Record MakeFontRecord(const Font& font, agent_protocol::AgentActivationState state);
// Its numbers and flags are decimal text, as in font records.
agent_protocol::Record MakeWorkgroupRecord(const Workgroup& workgroup);

}  // namespace agent
