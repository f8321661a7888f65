// The record of a font for the socket: a flat object of strings, with the keys of font records.
#pragma once

#include "agent/fonts/FontTable.h"
#include "agent/include/AgentCalls.h"
#include "agent/include/AgentProtocol.h"

namespace agent {

// The name for people: family and style, without a style that says nothing. UTF-8, at most 512 bytes.
// Where a font is, for panels: kDesktopLocation for files of the library, kSystemLocation for those of the operating system.
uint32_t LocationOf(const Font& font);
inline constexpr uint32_t kDesktopLocation = 3, kSystemLocation = 4;
std::string DisplayName(const FontFace& face);
agent_protocol::Record MakeFontRecord(const Font& font, agent_protocol::AgentActivationState state);
// Its numbers and flags are decimal text, as in font records.
agent_protocol::Record MakeWorkgroupRecord(const Workgroup& workgroup);

}  // namespace agent
